-- Written by scripts/fleet-tables from contracts/: change that, or what the script says, and run it again.
CREATE MATERIALIZED VIEW IF NOT EXISTS zt.to_broken_messages_upload ON CLUSTER '{cluster}' TO zt.broken_messages AS
SELECT ifNull(_timestamp, now('UTC')) AS received, _topic AS topic, _partition AS partition, _offset AS place,
    _key AS machine, _error AS error, _raw_message AS message
FROM zt.upload_queue
WHERE _error != '';

CREATE MATERIALIZED VIEW IF NOT EXISTS zt.to_broken_messages_upload_live ON CLUSTER '{cluster}' TO zt.broken_messages AS
SELECT ifNull(_timestamp, now('UTC')) AS received, _topic AS topic, _partition AS partition, _offset AS place,
    _key AS machine, _error AS error, _raw_message AS message
FROM zt.upload_live_queue
WHERE _error != '';

CREATE MATERIALIZED VIEW IF NOT EXISTS zt.to_broken_messages_upload_thermal ON CLUSTER '{cluster}' TO zt.broken_messages AS
SELECT ifNull(_timestamp, now('UTC')) AS received, _topic AS topic, _partition AS partition, _offset AS place,
    _key AS machine, _error AS error, _raw_message AS message
FROM zt.upload_thermal_queue
WHERE _error != '';

CREATE MATERIALIZED VIEW IF NOT EXISTS zt.to_broken_messages_upload_network ON CLUSTER '{cluster}' TO zt.broken_messages AS
SELECT ifNull(_timestamp, now('UTC')) AS received, _topic AS topic, _partition AS partition, _offset AS place,
    _key AS machine, _error AS error, _raw_message AS message
FROM zt.upload_network_queue
WHERE _error != '';

CREATE MATERIALIZED VIEW IF NOT EXISTS zt.to_broken_messages_storage ON CLUSTER '{cluster}' TO zt.broken_messages AS
SELECT ifNull(_timestamp, now('UTC')) AS received, _topic AS topic, _partition AS partition, _offset AS place,
    _key AS machine, _error AS error, _raw_message AS message
FROM zt.storage_queue
WHERE _error != '';

CREATE MATERIALIZED VIEW IF NOT EXISTS zt.to_dead_letters ON CLUSTER '{cluster}' TO zt.dead_letters AS
SELECT ifNull(_timestamp, now('UTC')) AS received, _partition AS partition, _offset AS place,
    _headers.value[indexOf(_headers.name, 'zt-reason')] AS reason,
    _headers.value[indexOf(_headers.name, 'zt-source')] AS source, message
FROM zt.dead_letter_queue;
