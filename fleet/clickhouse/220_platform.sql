-- Written by scripts/fleet-tables from contracts/: change that, or what the script says, and run it again.
CREATE TABLE IF NOT EXISTS zt.platform
(
    machine String COMMENT 'serial number, at most 15 bytes of it' CODEC(ZSTD(1)),
    time DateTime('UTC') COMMENT 'of an hourly record its hour in UTC, else the machine''s wall clock' CODEC(Delta, ZSTD(1)),
    received DateTime('UTC') COMMENT 'when the forwarder gave the record to Kafka' CODEC(ZSTD(1)),
    record_id UInt64 COMMENT 'of its identity and its samples: of a record that is sent again the same' CODEC(ZSTD(1)),
    contract_version LowCardinality(String) CODEC(ZSTD(1)),
    local_time LowCardinality(Nullable(String)) COMMENT 'local time' CODEC(ZSTD(1)),
    battery_further_capacity_mwh Nullable(Int64) COMMENT 'battery further capacity, mWh' CODEC(ZSTD(1)),
    battery_full_charge_capacity_mwh Nullable(Int64) COMMENT 'battery full charge capacity, mWh' CODEC(ZSTD(1)),
    battery_charge_rate_mw Nullable(Int64) COMMENT 'battery charge rate, mW' CODEC(ZSTD(1)),
    battery_remaining_capacity_percent Nullable(UInt64) COMMENT 'battery charge, %' CODEC(ZSTD(1)),
    device_mode LowCardinality(Nullable(String)) COMMENT 'device mode' CODEC(ZSTD(1)),
    memory_clock_mhz Nullable(UInt32) COMMENT 'smallest memory clock, MHz' CODEC(ZSTD(1))
)
ENGINE = ReplacingMergeTree(received)
PARTITION BY if(time >= '2020-01-01' AND time < '2050-01-01', toMonday(time), toDate('1970-01-01'))
ORDER BY (machine, time, record_id)
TTL received + INTERVAL 90 DAY
COMMENT 'Platform management, as each cycle stores it';
