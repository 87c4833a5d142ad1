-- How fast do fans turn at which temperature? By fives of degrees of the processor: what people hear.
SELECT
    intDiv(celsius, 5) * 5 AS from_celsius,
    fan_id AS fan,
    count() AS hours,
    avg(fan_stat_value) AS mean_speed
FROM (SELECT record_id, fan_id, fan_stat_value FROM zt.fans FINAL
      WHERE fan_stat_name = 'tach_current' AND time >= {from:DateTime('UTC')} AND time < {until:DateTime('UTC')}) AS fans
INNER JOIN (SELECT record_id, assumeNotNull(temperature_celsius) AS celsius FROM zt.temperatures FINAL
            WHERE source = 'processor' AND time >= {from:DateTime('UTC')} AND time < {until:DateTime('UTC')}) AS temperatures
    USING (record_id)
GROUP BY from_celsius, fan
ORDER BY from_celsius, fan
