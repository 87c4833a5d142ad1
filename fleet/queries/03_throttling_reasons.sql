-- What holds graphics clocks down, on how many machines, and how warm and busy are the cards then?
SELECT
    performance_capped_reason AS reason,
    count() AS readings,
    uniqExact(machine) AS machines,
    avg(temperature_celsius) AS mean_celsius,
    avg(gpus_utilization_percent) AS mean_load
FROM zt.graphics_cards FINAL
WHERE time >= {from:DateTime('UTC')} AND time < {until:DateTime('UTC')} AND performance_capped_reason != 'unknown'
GROUP BY reason
ORDER BY readings DESC, reason
