-- Written by scripts/fleet-tables from contracts/: change that, or what the script says, and run it again.
CREATE TABLE IF NOT EXISTS zt.records ON CLUSTER '{cluster}'
(
    machine String COMMENT 'serial number, at most 15 bytes of it' CODEC(ZSTD(1)),
    time DateTime('UTC') COMMENT 'of an hourly record its hour in UTC, else the machine''s wall clock' CODEC(Delta, ZSTD(1)),
    received DateTime('UTC') COMMENT 'when the forwarder gave the record to Kafka' CODEC(ZSTD(1)),
    record_id UInt64 COMMENT 'of its identity and its samples: of a record that is sent again the same' CODEC(ZSTD(1)),
    collection_id String COMMENT 'identity' CODEC(ZSTD(1)),
    kind Enum8('live' = 0, 'thermal' = 1, 'network' = 2) CODEC(ZSTD(1)),
    part String COMMENT 'of the samples that it is made of' CODEC(ZSTD(1)),
    contract_version LowCardinality(String) CODEC(ZSTD(1)),
    topic LowCardinality(String) COMMENT 'that the forwarder gave it to' CODEC(ZSTD(1)),
    partition UInt32 COMMENT 'of the topic' CODEC(ZSTD(1)),
    place UInt64 COMMENT 'in that partition' CODEC(Delta, ZSTD(1)),
    local_time LowCardinality(Nullable(String)) COMMENT 'local time' CODEC(ZSTD(1)),
    sample_points_actual Nullable(UInt32) COMMENT 'samples' CODEC(ZSTD(1))
)
ENGINE = ReplicatedReplacingMergeTree('/clickhouse/tables/{shard}/zt/records', '{replica}', received)
PARTITION BY if(time >= '2020-01-01' AND time < '2050-01-01', toMonday(time), toDate('1970-01-01'))
ORDER BY (machine, time, record_id)
TTL received + INTERVAL 90 DAY
COMMENT 'Records: one row for each, however often it was sent';

CREATE TABLE IF NOT EXISTS zt_all.records ON CLUSTER '{cluster}' AS zt.records
ENGINE = Distributed('{cluster}', zt, records, cityHash64(machine));
