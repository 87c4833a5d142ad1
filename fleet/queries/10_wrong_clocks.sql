-- Whose clock is wrong? Machines of whom every hourly record lies outside of the time in which the fleet's records do,
-- and how far from its middle: hours of records are in UTC, so that zones make no difference.
SELECT
    machine,
    count() AS records,
    min(time) AS first_hour,
    max(time) AS last_hour,
    dateDiff('hour', {from:DateTime('UTC')}, min(time)) AS hours_off
FROM zt.records FINAL
WHERE kind != 'live'
GROUP BY machine
HAVING max(time) < {from:DateTime('UTC')} OR min(time) >= {until:DateTime('UTC')}
ORDER BY machine
LIMIT 1000
