-- Written by scripts/fleet-tables from contracts/: change that, or what the script says, and run it again.
-- Messages of the topics that are no records: nothing is lost, and none of them stops the rest.
CREATE TABLE IF NOT EXISTS zt.broken_messages ON CLUSTER '{cluster}'
(
    received DateTime('UTC') CODEC(Delta, ZSTD(1)),
    topic LowCardinality(String),
    partition UInt32,
    place UInt64,
    machine String,
    error String COMMENT 'its bytes' CODEC(ZSTD(3)),
    message String CODEC(ZSTD(3))
)
ENGINE = ReplicatedReplacingMergeTree('/clickhouse/tables/{shard}/zt/broken_messages', '{replica}')
PARTITION BY toYYYYMM(received)
ORDER BY (topic, partition, place)
TTL received + INTERVAL 90 DAY
COMMENT 'Messages that are no records';

-- What forwarders took for no record, with their reason.
CREATE TABLE IF NOT EXISTS zt.dead_letters ON CLUSTER '{cluster}'
(
    received DateTime('UTC') CODEC(Delta, ZSTD(1)),
    partition UInt32,
    place UInt64,
    reason String CODEC(ZSTD(3)),
    source String COMMENT 'file and line, or record' CODEC(ZSTD(3)),
    message String COMMENT 'its bytes' CODEC(ZSTD(3))
)
ENGINE = ReplicatedReplacingMergeTree('/clickhouse/tables/{shard}/zt/dead_letters', '{replica}')
PARTITION BY toYYYYMM(received)
ORDER BY (partition, place)
TTL received + INTERVAL 90 DAY
COMMENT 'What forwarders could not read';

CREATE TABLE IF NOT EXISTS zt.dead_letter_queue ON CLUSTER '{cluster}'
(
    message String
)
ENGINE = Kafka
SETTINGS
    kafka_broker_list = '{kafka_brokers}',
    kafka_topic_list = '{dead_letter_topic}',
    kafka_group_name = 'zt-telemetry-dead-letter',
    kafka_format = 'RawBLOB',
    kafka_handle_error_mode = 'stream';
