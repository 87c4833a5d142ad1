-- Which machines are the hottest hundredth? By the temperature that their processors reach in one hour out of ten; dust,
-- dried paste and blocked air come first here.
SELECT machine, high, hours
FROM
(
    SELECT machine, quantileExact(0.9)(temperature_celsius) AS high, count() AS hours
    FROM zt.temperatures FINAL
    WHERE source = 'processor' AND time >= {from:DateTime('UTC')} AND time < {until:DateTime('UTC')}
    GROUP BY machine
)
ORDER BY high DESC, machine
LIMIT (SELECT toUInt64(ceil(uniqExact(machine) / 100)) FROM zt.temperatures
       WHERE source = 'processor' AND time >= {from:DateTime('UTC')} AND time < {until:DateTime('UTC')})
