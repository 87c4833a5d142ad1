-- Which machines have gone silent? Nothing for twelve hours before the end of this time, although they sent before. A
-- machine that sleeps at night is back by then.
SELECT
    machine,
    max(time) AS last_hour,
    count() AS records
FROM zt.records FINAL
WHERE kind != 'live' AND time >= {from:DateTime('UTC')} AND time < {until:DateTime('UTC')}
GROUP BY machine
HAVING last_hour < {until:DateTime('UTC')} - INTERVAL 12 HOUR
ORDER BY last_hour, machine
LIMIT 1000
