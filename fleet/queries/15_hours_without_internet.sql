-- Who loses the internet? Machines with the most hours in which some sample had no access, and how many had no network
-- at all.
SELECT
    machine,
    countIf(has_internet_access = false) AS hours_without_internet,
    countIf(has_network_access = false) AS hours_without_network,
    count() AS hours
FROM zt.networks FINAL
WHERE time >= {from:DateTime('UTC')} AND time < {until:DateTime('UTC')}
GROUP BY machine
HAVING hours_without_internet > 0
ORDER BY hours_without_internet DESC, hours_without_network DESC, machine
LIMIT 100
