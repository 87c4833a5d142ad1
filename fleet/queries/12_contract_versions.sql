-- Which versions of the contract are out there? Machines by the version of their newest record.
SELECT contract_version, count() AS machines
FROM
(
    SELECT machine, argMax(contract_version, time) AS contract_version
    FROM zt.records FINAL
    GROUP BY machine
)
GROUP BY contract_version
ORDER BY contract_version
