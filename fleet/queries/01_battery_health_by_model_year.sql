-- How do batteries age? By the year in the serial number: machines, mean health, the tenth of them that is worst, and the
-- share below 80 %, where a battery counts as worn.
SELECT
    substring(machine, 4, 1) AS year_digit,
    count() AS machines,
    avg(health) AS mean_health,
    quantileExact(0.1)(health) AS worst_tenth,
    avg(cycles) AS mean_cycles,
    countIf(health < 80) / count() AS share_worn
FROM
(
    SELECT
        machine,
        argMax(full_charge_capacity_percent, time) AS health,
        argMax(cycle_count, time) AS cycles
    FROM zt.batteries FINAL
    WHERE time >= {from:DateTime('UTC')} AND time < {until:DateTime('UTC')} AND entry = 1
    GROUP BY machine
)
GROUP BY year_digit
ORDER BY year_digit
