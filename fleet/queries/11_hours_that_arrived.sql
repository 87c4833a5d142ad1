-- How complete is what arrives? By kind: machines, records, and the share of the hours of this time of which machines that
-- sent anything sent a record.
SELECT
    kind,
    uniqExact(machine) AS machines,
    count() AS records,
    count() / uniqExact(machine) / dateDiff('hour', {from:DateTime('UTC')}, {until:DateTime('UTC')}) AS share_of_hours
FROM zt.records FINAL
WHERE kind != 'live' AND time >= {from:DateTime('UTC')} AND time < {until:DateTime('UTC')}
GROUP BY kind
ORDER BY kind
