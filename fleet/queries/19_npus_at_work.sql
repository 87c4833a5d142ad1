-- Are NPUs used? Machines that have one, how much memory models hold on them, and how warm they get. Readings below 0 are
-- such of 2 GiB and more (the field's oddity), and are left out of the mean.
SELECT
    count() AS readings,
    uniqExact(machine) AS machines,
    avgIf(memory_used_mb, memory_used_mb >= 0) AS mean_mebibytes,
    countIf(memory_used_mb < 0) AS wrapped
FROM zt.npus FINAL
WHERE time >= {from:DateTime('UTC')} AND time < {until:DateTime('UTC')}
