-- Which machines run for long without a restart, so that updates wait? Days since the last start at their newest record.
SELECT
    machine,
    argMax(time_since_last_boot_minutes, time) / 1440 AS days_running
FROM zt.sessions FINAL
WHERE time >= {from:DateTime('UTC')} AND time < {until:DateTime('UTC')}
GROUP BY machine
HAVING days_running >= 5
ORDER BY days_running DESC, machine
LIMIT 1000
