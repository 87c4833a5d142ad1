-- Which sources fail, and since which version of the contract? The share of live records without a section.
SELECT
    contract_version,
    count() AS records,
    countIf(record_id NOT IN (SELECT record_id FROM zt.batteries WHERE time >= {from:DateTime('UTC')} AND time < {until:DateTime('UTC')})) / count() AS without_battery,
    countIf(record_id NOT IN (SELECT record_id FROM zt.memory WHERE time >= {from:DateTime('UTC')} AND time < {until:DateTime('UTC')})) / count() AS without_memory,
    countIf(record_id NOT IN (SELECT record_id FROM zt.npus WHERE time >= {from:DateTime('UTC')} AND time < {until:DateTime('UTC')})) / count() AS without_npu
FROM zt.records FINAL
WHERE kind = 'live' AND time >= {from:DateTime('UTC')} AND time < {until:DateTime('UTC')}
GROUP BY contract_version
ORDER BY contract_version
