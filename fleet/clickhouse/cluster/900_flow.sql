-- Written by scripts/fleet-tables from contracts/: change that, or what the script says, and run it again.
CREATE MATERIALIZED VIEW IF NOT EXISTS zt.to_upload_incoming ON CLUSTER '{cluster}' TO zt.upload_incoming AS
SELECT
    _key AS machine,
    ifNull(if(match(collection_id, '^[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}H_'), parseDateTimeOrNull(concat(substring(collection_id, 1, 13), ':00:00'), '%Y-%m-%dT%H:%i:%s', 'UTC'), parseDateTimeOrNull(substring(ifNull(queue.local_time, ''), 1, 19), '%Y-%m-%dT%H:%i:%s', 'UTC')), toDateTime(0, 'UTC')) AS time,
    ifNull(_timestamp, now('UTC')) AS received,
    cityHash64(_key, collection_id, part) AS record_id,
    multiIf(NOT match(collection_id, '^[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}H_'), 'live', notEmpty(hw_info.network_info.interfaces_info) OR isNotNull(hw_info.network_info.has_internet_access), 'network', 'thermal') AS kind,
    _headers.value[indexOf(_headers.name, 'zt-part')] AS part,
    _headers.value[indexOf(_headers.name, 'zt-contract-version')] AS contract_version,
    _topic AS topic,
    _partition AS partition,
    _offset AS place,
    ifNull(queue.collection_id, '') AS collection_id,
    local_time,
    sample_points_actual,
    hw_info.batteries_info AS batteries_info,
    hw_info.cpus_info AS cpus_info,
    hw_info.device_state AS device_state,
    hw_info.fans_info AS fans_info,
    hw_info.gpus_info AS gpus_info,
    hw_info.network_info AS network_info,
    hw_info.npus_info AS npus_info,
    hw_info.storage_drives_info AS storage_drives_info,
    hw_info.system_board_info AS system_board_info,
    hw_info.system_memory_info AS system_memory_info,
    operating_system_info.operating_session_info AS operating_session_info,
    operating_system_info.resource_intensive_processes_info AS resource_intensive_processes_info
FROM zt.upload_queue AS queue
WHERE _error = '';

CREATE MATERIALIZED VIEW IF NOT EXISTS zt.to_upload_live_incoming ON CLUSTER '{cluster}' TO zt.upload_incoming AS
SELECT
    _key AS machine,
    ifNull(if(match(collection_id, '^[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}H_'), parseDateTimeOrNull(concat(substring(collection_id, 1, 13), ':00:00'), '%Y-%m-%dT%H:%i:%s', 'UTC'), parseDateTimeOrNull(substring(ifNull(queue.local_time, ''), 1, 19), '%Y-%m-%dT%H:%i:%s', 'UTC')), toDateTime(0, 'UTC')) AS time,
    ifNull(_timestamp, now('UTC')) AS received,
    cityHash64(_key, collection_id, part) AS record_id,
    multiIf(NOT match(collection_id, '^[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}H_'), 'live', 'thermal') AS kind,
    _headers.value[indexOf(_headers.name, 'zt-part')] AS part,
    _headers.value[indexOf(_headers.name, 'zt-contract-version')] AS contract_version,
    _topic AS topic,
    _partition AS partition,
    _offset AS place,
    ifNull(queue.collection_id, '') AS collection_id,
    local_time,
    sample_points_actual,
    hw_info.batteries_info AS batteries_info,
    hw_info.device_state AS device_state,
    hw_info.gpus_info AS gpus_info,
    hw_info.npus_info AS npus_info,
    hw_info.storage_drives_info AS storage_drives_info,
    hw_info.system_memory_info AS system_memory_info,
    operating_system_info.operating_session_info AS operating_session_info,
    operating_system_info.resource_intensive_processes_info AS resource_intensive_processes_info
FROM zt.upload_live_queue AS queue
WHERE _error = '';

CREATE MATERIALIZED VIEW IF NOT EXISTS zt.to_upload_thermal_incoming ON CLUSTER '{cluster}' TO zt.upload_incoming AS
SELECT
    _key AS machine,
    ifNull(if(match(collection_id, '^[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}H_'), parseDateTimeOrNull(concat(substring(collection_id, 1, 13), ':00:00'), '%Y-%m-%dT%H:%i:%s', 'UTC'), parseDateTimeOrNull(substring(ifNull(queue.local_time, ''), 1, 19), '%Y-%m-%dT%H:%i:%s', 'UTC')), toDateTime(0, 'UTC')) AS time,
    ifNull(_timestamp, now('UTC')) AS received,
    cityHash64(_key, collection_id, part) AS record_id,
    multiIf(NOT match(collection_id, '^[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}H_'), 'live', 'thermal') AS kind,
    _headers.value[indexOf(_headers.name, 'zt-part')] AS part,
    _headers.value[indexOf(_headers.name, 'zt-contract-version')] AS contract_version,
    _topic AS topic,
    _partition AS partition,
    _offset AS place,
    ifNull(queue.collection_id, '') AS collection_id,
    local_time,
    sample_points_actual,
    hw_info.cpus_info AS cpus_info,
    hw_info.fans_info AS fans_info,
    hw_info.system_board_info AS system_board_info
FROM zt.upload_thermal_queue AS queue
WHERE _error = '';

CREATE MATERIALIZED VIEW IF NOT EXISTS zt.to_upload_network_incoming ON CLUSTER '{cluster}' TO zt.upload_incoming AS
SELECT
    _key AS machine,
    ifNull(if(match(collection_id, '^[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}H_'), parseDateTimeOrNull(concat(substring(collection_id, 1, 13), ':00:00'), '%Y-%m-%dT%H:%i:%s', 'UTC'), parseDateTimeOrNull(substring(ifNull(queue.local_time, ''), 1, 19), '%Y-%m-%dT%H:%i:%s', 'UTC')), toDateTime(0, 'UTC')) AS time,
    ifNull(_timestamp, now('UTC')) AS received,
    cityHash64(_key, collection_id, part) AS record_id,
    multiIf(NOT match(collection_id, '^[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}H_'), 'live', notEmpty(hw_info.network_info.interfaces_info) OR isNotNull(hw_info.network_info.has_internet_access), 'network', 'thermal') AS kind,
    _headers.value[indexOf(_headers.name, 'zt-part')] AS part,
    _headers.value[indexOf(_headers.name, 'zt-contract-version')] AS contract_version,
    _topic AS topic,
    _partition AS partition,
    _offset AS place,
    ifNull(queue.collection_id, '') AS collection_id,
    local_time,
    sample_points_actual,
    hw_info.network_info AS network_info
FROM zt.upload_network_queue AS queue
WHERE _error = '';

CREATE MATERIALIZED VIEW IF NOT EXISTS zt.to_platform ON CLUSTER '{cluster}' TO zt_all.platform AS
SELECT
    _key AS machine,
    ifNull(parseDateTimeOrNull(substring(ifNull(local_time, ''), 1, 19), '%Y-%m-%dT%H:%i:%s', 'UTC'), toDateTime(0, 'UTC')) AS time,
    ifNull(_timestamp, now('UTC')) AS received,
    cityHash64(_key, _headers.value[indexOf(_headers.name, 'zt-part')]) AS record_id,
    _headers.value[indexOf(_headers.name, 'zt-contract-version')] AS contract_version,
    local_time, battery_further_capacity_mwh, battery_full_charge_capacity_mwh, battery_charge_rate_mw, battery_remaining_capacity_percent, device_mode, memory_clock_mhz
FROM zt.storage_queue
WHERE _error = '';
