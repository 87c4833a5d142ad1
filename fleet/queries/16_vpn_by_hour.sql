-- When is the VPN used? By the hour of the day in UTC: the share of machines' hours with a connection.
SELECT
    toHour(time) AS hour,
    count() AS hours,
    countIf(is_vpn_connected = true) / count() AS share_with_vpn
FROM zt.networks FINAL
WHERE time >= {from:DateTime('UTC')} AND time < {until:DateTime('UTC')}
GROUP BY hour
ORDER BY hour
