-- Which drives are full within 30 days, if they go on as in this time? A straight line through what each drive has used.
SELECT
    machine,
    drive,
    used_now,
    percent_a_day,
    (100 - used_now) / percent_a_day AS days_left
FROM
(
    SELECT
        machine,
        drive_serial_number AS drive,
        argMax(utilization_percent, time) AS used_now,
        simpleLinearRegression(toUnixTimestamp(time) / 86400 - toUnixTimestamp({from:DateTime('UTC')}) / 86400, utilization_percent).1 AS percent_a_day
    FROM zt.drives FINAL
    WHERE time >= {from:DateTime('UTC')} AND time < {until:DateTime('UTC')}
    GROUP BY machine, drive
    HAVING count() >= 12
)
WHERE percent_a_day > 0.01 AND (100 - used_now) / percent_a_day <= 30
ORDER BY days_left, machine, drive
LIMIT 1000
