-- Which batteries are to be replaced? Below 75 % of what they were designed for, or beyond 800 cycles.
SELECT
    machine,
    argMax(battery_ct_number, time) AS tracking_number,
    argMax(full_charge_capacity_percent, time) AS health,
    argMax(cycle_count, time) AS cycles
FROM zt.batteries FINAL
WHERE time >= {from:DateTime('UTC')} AND time < {until:DateTime('UTC')} AND entry = 1
GROUP BY machine
HAVING health < 75 OR cycles > 800
ORDER BY health, machine
LIMIT 1000
