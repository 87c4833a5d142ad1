-- Where do fans rest although the processor is hot? Hours of 60 °C and more without a fan that turns: a fan, or what
-- drives it, is broken.
SELECT machine, count() AS hours, max(celsius) AS hottest
FROM
(
    SELECT machine, record_id, temperature_celsius AS celsius
    FROM zt.temperatures FINAL
    WHERE source = 'processor' AND temperature_celsius >= 60
      AND time >= {from:DateTime('UTC')} AND time < {until:DateTime('UTC')}
)
WHERE record_id NOT IN
(
    SELECT record_id FROM zt.fans
    WHERE fan_stat_name = 'tach_current' AND fan_stat_value > 0
      AND time >= {from:DateTime('UTC')} AND time < {until:DateTime('UTC')}
)
GROUP BY machine
ORDER BY hours DESC, machine
LIMIT 1000
