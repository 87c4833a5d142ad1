-- How many machines run short of memory? By tens of percent that are in use on average, as the record counts them.
SELECT
    intDiv(toUInt32(mean_percent), 10) * 10 AS from_percent,
    count() AS machines,
    avg(mean_percent) AS mean
FROM
(
    SELECT machine, avg(utilization_physical_percent) AS mean_percent
    FROM zt.memory FINAL
    WHERE time >= {from:DateTime('UTC')} AND time < {until:DateTime('UTC')}
    GROUP BY machine
)
GROUP BY from_percent
ORDER BY from_percent
