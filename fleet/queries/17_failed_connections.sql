-- Where do connections fail? Machines by the failed ones for each hour, both versions of IP.
SELECT
    machine,
    sum(tcp_ipv4_failed_connections) AS failed_ipv4,
    sum(tcp_ipv6_failed_connections) AS failed_ipv6,
    (failed_ipv4 + failed_ipv6) / count() AS failed_an_hour
FROM zt.networks FINAL
WHERE time >= {from:DateTime('UTC')} AND time < {until:DateTime('UTC')}
GROUP BY machine
ORDER BY failed_an_hour DESC, machine
LIMIT 100
