-- Written by scripts/fleet-tables from contracts/: change that, or what the script says, and run it again.
CREATE TABLE IF NOT EXISTS zt.batteries
(
    machine String COMMENT 'serial number, at most 15 bytes of it' CODEC(ZSTD(1)),
    time DateTime('UTC') COMMENT 'of an hourly record its hour in UTC, else the machine''s wall clock' CODEC(Delta, ZSTD(1)),
    received DateTime('UTC') COMMENT 'when the forwarder gave the record to Kafka' CODEC(ZSTD(1)),
    record_id UInt64 COMMENT 'of its identity and its samples: of a record that is sent again the same' CODEC(ZSTD(1)),
    entry UInt16 COMMENT 'in the record''s list, from 1' CODEC(ZSTD(1)),
    battery_status Array(LowCardinality(String)) COMMENT 'status' CODEC(ZSTD(1)),
    charge_rate_mw Nullable(UInt32) COMMENT 'charging, mW' CODEC(ZSTD(1)),
    cycle_count Nullable(UInt32) COMMENT 'cycles' CODEC(ZSTD(1)),
    discharge_rate_mw Nullable(UInt32) COMMENT 'discharging, mW' CODEC(ZSTD(1)),
    electric_current Nullable(UInt32) COMMENT 'current, mA' CODEC(ZSTD(1)),
    full_charge_capacity Nullable(UInt32) COMMENT 'full, mWh' CODEC(ZSTD(1)),
    max_error_percent Nullable(UInt32) COMMENT 'max. error, %' CODEC(ZSTD(1)),
    remaining_charge_capacity Nullable(UInt32) COMMENT 'remaining, mWh' CODEC(ZSTD(1)),
    voltage Nullable(UInt32) COMMENT 'voltage, mV' CODEC(ZSTD(1)),
    full_charge_capacity_percent Nullable(Float32) COMMENT 'health, %' CODEC(Gorilla, ZSTD(1)),
    remaining_charge_capacity_percent Nullable(Float32) COMMENT 'charge, %' CODEC(Gorilla, ZSTD(1)),
    voltage_percent Nullable(Float32) COMMENT 'of design voltage, times' CODEC(Gorilla, ZSTD(1)),
    battery_ct_number Nullable(String) COMMENT 'tracking number' CODEC(ZSTD(1)),
    battery_serial_number Nullable(String) COMMENT 'serial number' CODEC(ZSTD(1)),
    charge_state LowCardinality(Nullable(String)) COMMENT 'state' CODEC(ZSTD(1))
)
ENGINE = ReplacingMergeTree(received)
PARTITION BY if(time >= '2020-01-01' AND time < '2050-01-01', toMonday(time), toDate('1970-01-01'))
ORDER BY (machine, time, record_id, entry)
TTL received + INTERVAL 90 DAY
COMMENT 'Batteries, of live records';

CREATE TABLE IF NOT EXISTS zt.processors
(
    machine String COMMENT 'serial number, at most 15 bytes of it' CODEC(ZSTD(1)),
    time DateTime('UTC') COMMENT 'of an hourly record its hour in UTC, else the machine''s wall clock' CODEC(Delta, ZSTD(1)),
    received DateTime('UTC') COMMENT 'when the forwarder gave the record to Kafka' CODEC(ZSTD(1)),
    record_id UInt64 COMMENT 'of its identity and its samples: of a record that is sent again the same' CODEC(ZSTD(1)),
    entry UInt16 COMMENT 'in the record''s list, from 1' CODEC(ZSTD(1)),
    utilization_percent Nullable(Float32) COMMENT 'load, %' CODEC(Gorilla, ZSTD(1)),
    device_id LowCardinality(Nullable(String)) COMMENT 'processor' CODEC(ZSTD(1))
)
ENGINE = ReplacingMergeTree(received)
PARTITION BY if(time >= '2020-01-01' AND time < '2050-01-01', toMonday(time), toDate('1970-01-01'))
ORDER BY (machine, time, record_id, entry)
TTL received + INTERVAL 90 DAY
COMMENT 'Processors, of hourly thermal records';

CREATE TABLE IF NOT EXISTS zt.temperatures
(
    machine String COMMENT 'serial number, at most 15 bytes of it' CODEC(ZSTD(1)),
    time DateTime('UTC') COMMENT 'of an hourly record its hour in UTC, else the machine''s wall clock' CODEC(Delta, ZSTD(1)),
    received DateTime('UTC') COMMENT 'when the forwarder gave the record to Kafka' CODEC(ZSTD(1)),
    record_id UInt64 COMMENT 'of its identity and its samples: of a record that is sent again the same' CODEC(ZSTD(1)),
    source LowCardinality(String) CODEC(ZSTD(1)),
    outer_entry UInt16 COMMENT 'of the list around it, from 1' CODEC(ZSTD(1)),
    entry UInt16 COMMENT 'in the record''s list, from 1' CODEC(ZSTD(1)),
    temperature_celsius Nullable(UInt32) COMMENT 'temperature, °C' CODEC(ZSTD(1)),
    sensor_name LowCardinality(Nullable(String)) COMMENT 'sensor' CODEC(ZSTD(1))
)
ENGINE = ReplacingMergeTree(received)
PARTITION BY if(time >= '2020-01-01' AND time < '2050-01-01', toMonday(time), toDate('1970-01-01'))
ORDER BY (machine, time, record_id, source, outer_entry, entry)
TTL received + INTERVAL 90 DAY
COMMENT 'Temperatures of all that has sensors';

CREATE TABLE IF NOT EXISTS zt.postures
(
    machine String COMMENT 'serial number, at most 15 bytes of it' CODEC(ZSTD(1)),
    time DateTime('UTC') COMMENT 'of an hourly record its hour in UTC, else the machine''s wall clock' CODEC(Delta, ZSTD(1)),
    received DateTime('UTC') COMMENT 'when the forwarder gave the record to Kafka' CODEC(ZSTD(1)),
    record_id UInt64 COMMENT 'of its identity and its samples: of a record that is sent again the same' CODEC(ZSTD(1)),
    device_mode LowCardinality(Nullable(String)) COMMENT 'mode' CODEC(ZSTD(1))
)
ENGINE = ReplacingMergeTree(received)
PARTITION BY if(time >= '2020-01-01' AND time < '2050-01-01', toMonday(time), toDate('1970-01-01'))
ORDER BY (machine, time, record_id)
TTL received + INTERVAL 90 DAY
COMMENT 'How machines are held, of live records';

CREATE TABLE IF NOT EXISTS zt.fans
(
    machine String COMMENT 'serial number, at most 15 bytes of it' CODEC(ZSTD(1)),
    time DateTime('UTC') COMMENT 'of an hourly record its hour in UTC, else the machine''s wall clock' CODEC(Delta, ZSTD(1)),
    received DateTime('UTC') COMMENT 'when the forwarder gave the record to Kafka' CODEC(ZSTD(1)),
    record_id UInt64 COMMENT 'of its identity and its samples: of a record that is sent again the same' CODEC(ZSTD(1)),
    outer_entry UInt16 COMMENT 'of the list around it, from 1' CODEC(ZSTD(1)),
    entry UInt16 COMMENT 'in the record''s list, from 1' CODEC(ZSTD(1)),
    fan_id Nullable(UInt32) COMMENT 'fan' CODEC(ZSTD(1)),
    fan_stat_name LowCardinality(Nullable(String)) COMMENT 'figure' CODEC(ZSTD(1)),
    fan_stat_value Nullable(Float32) COMMENT 'average' CODEC(Gorilla, ZSTD(1))
)
ENGINE = ReplacingMergeTree(received)
PARTITION BY if(time >= '2020-01-01' AND time < '2050-01-01', toMonday(time), toDate('1970-01-01'))
ORDER BY (machine, time, record_id, outer_entry, entry)
TTL received + INTERVAL 90 DAY
COMMENT 'Averages of fans, of hourly thermal records';

CREATE TABLE IF NOT EXISTS zt.graphics_cards
(
    machine String COMMENT 'serial number, at most 15 bytes of it' CODEC(ZSTD(1)),
    time DateTime('UTC') COMMENT 'of an hourly record its hour in UTC, else the machine''s wall clock' CODEC(Delta, ZSTD(1)),
    received DateTime('UTC') COMMENT 'when the forwarder gave the record to Kafka' CODEC(ZSTD(1)),
    record_id UInt64 COMMENT 'of its identity and its samples: of a record that is sent again the same' CODEC(ZSTD(1)),
    entry UInt16 COMMENT 'in the record''s list, from 1' CODEC(ZSTD(1)),
    decoder_utilization_percent Nullable(Float32) COMMENT 'decoder, %' CODEC(Gorilla, ZSTD(1)),
    encoder_utilization_percent Nullable(Float32) COMMENT 'encoder, %' CODEC(Gorilla, ZSTD(1)),
    gpus_clock_mhz Nullable(Float32) COMMENT 'clock, MHz' CODEC(Gorilla, ZSTD(1)),
    gpus_utilization_percent Nullable(Float32) COMMENT 'load, %' CODEC(Gorilla, ZSTD(1)),
    memory_bandwidth_gb Nullable(Float32) COMMENT 'memory bus, bits' CODEC(Gorilla, ZSTD(1)),
    memory_clock_mhz Nullable(Float32) COMMENT 'memory clock, MHz' CODEC(Gorilla, ZSTD(1)),
    memory_controller_utilization_percent Nullable(Float32) COMMENT 'memory in use, %' CODEC(Gorilla, ZSTD(1)),
    memory_used_mb Nullable(Float32) COMMENT 'memory used, MB' CODEC(Gorilla, ZSTD(1)),
    video_engine_utilization_percent Nullable(Float32) COMMENT 'video engine, %' CODEC(Gorilla, ZSTD(1)),
    temperature_celsius Nullable(UInt32) COMMENT 'temperature, °C' CODEC(ZSTD(1)),
    bus_id LowCardinality(Nullable(String)) COMMENT 'bus' CODEC(ZSTD(1)),
    graphics_card_serial_number Nullable(String) COMMENT 'identity' CODEC(ZSTD(1)),
    performance_capped_reason LowCardinality(Nullable(String)) COMMENT 'clocks held down by' CODEC(ZSTD(1))
)
ENGINE = ReplacingMergeTree(received)
PARTITION BY if(time >= '2020-01-01' AND time < '2050-01-01', toMonday(time), toDate('1970-01-01'))
ORDER BY (machine, time, record_id, entry)
TTL received + INTERVAL 90 DAY
COMMENT 'Graphics cards, of live records';

CREATE TABLE IF NOT EXISTS zt.networks
(
    machine String COMMENT 'serial number, at most 15 bytes of it' CODEC(ZSTD(1)),
    time DateTime('UTC') COMMENT 'of an hourly record its hour in UTC, else the machine''s wall clock' CODEC(Delta, ZSTD(1)),
    received DateTime('UTC') COMMENT 'when the forwarder gave the record to Kafka' CODEC(ZSTD(1)),
    record_id UInt64 COMMENT 'of its identity and its samples: of a record that is sent again the same' CODEC(ZSTD(1)),
    tcp_ipv4_current_connections Nullable(UInt32) COMMENT 'IPv4 connections' CODEC(ZSTD(1)),
    tcp_ipv4_failed_connections Nullable(UInt32) COMMENT 'IPv4 connections failed' CODEC(ZSTD(1)),
    tcp_ipv4_errors_received Nullable(UInt32) COMMENT 'IPv4 errors received' CODEC(ZSTD(1)),
    tcp_ipv6_failed_connections Nullable(UInt32) COMMENT 'IPv6 connections failed' CODEC(ZSTD(1)),
    has_internet_access Nullable(Bool) COMMENT 'internet access' CODEC(ZSTD(1)),
    has_network_access Nullable(Bool) COMMENT 'network access' CODEC(ZSTD(1)),
    is_vpn_connected Nullable(Bool) COMMENT 'VPN' CODEC(ZSTD(1))
)
ENGINE = ReplacingMergeTree(received)
PARTITION BY if(time >= '2020-01-01' AND time < '2050-01-01', toMonday(time), toDate('1970-01-01'))
ORDER BY (machine, time, record_id)
TTL received + INTERVAL 90 DAY
COMMENT 'The network as a whole, of hourly network records';

CREATE TABLE IF NOT EXISTS zt.interfaces
(
    machine String COMMENT 'serial number, at most 15 bytes of it' CODEC(ZSTD(1)),
    time DateTime('UTC') COMMENT 'of an hourly record its hour in UTC, else the machine''s wall clock' CODEC(Delta, ZSTD(1)),
    received DateTime('UTC') COMMENT 'when the forwarder gave the record to Kafka' CODEC(ZSTD(1)),
    record_id UInt64 COMMENT 'of its identity and its samples: of a record that is sent again the same' CODEC(ZSTD(1)),
    entry UInt16 COMMENT 'in the record''s list, from 1' CODEC(ZSTD(1)),
    adjacent_channel_interference_count Nullable(UInt32) COMMENT 'overlapping channels' CODEC(ZSTD(1)),
    channel Nullable(UInt32) COMMENT 'channel' CODEC(ZSTD(1)),
    co_channel_interference_count Nullable(UInt32) COMMENT 'same channel' CODEC(ZSTD(1)),
    signal_strength Nullable(Int32) COMMENT 'signal, dBm' CODEC(ZSTD(1)),
    bytes_received Nullable(Float32) COMMENT 'received, B' CODEC(Gorilla, ZSTD(1)),
    bytes_sent Nullable(Float32) COMMENT 'sent, B' CODEC(Gorilla, ZSTD(1)),
    nominal_speed Nullable(Float32) COMMENT 'nominal speed' CODEC(Gorilla, ZSTD(1)),
    receive_rate Nullable(Float32) COMMENT 'receive rate' CODEC(Gorilla, ZSTD(1)),
    transmission_rate Nullable(Float32) COMMENT 'transmission rate' CODEC(Gorilla, ZSTD(1)),
    device_id LowCardinality(Nullable(String)) COMMENT 'interface' CODEC(ZSTD(1)),
    network_adapter_name LowCardinality(Nullable(String)) COMMENT 'name' CODEC(ZSTD(1)),
    network_adapter_type LowCardinality(Nullable(String)) COMMENT 'type' CODEC(ZSTD(1)),
    network_trust_level LowCardinality(Nullable(String)) COMMENT 'trust' CODEC(ZSTD(1)),
    is_managed_network LowCardinality(Nullable(String)) COMMENT 'managed' CODEC(ZSTD(1)),
    radio_type LowCardinality(Nullable(String)) COMMENT 'radio' CODEC(ZSTD(1))
)
ENGINE = ReplacingMergeTree(received)
PARTITION BY if(time >= '2020-01-01' AND time < '2050-01-01', toMonday(time), toDate('1970-01-01'))
ORDER BY (machine, time, record_id, entry)
TTL received + INTERVAL 90 DAY
COMMENT 'Network interfaces, of hourly network records';

CREATE TABLE IF NOT EXISTS zt.profiles
(
    machine String COMMENT 'serial number, at most 15 bytes of it' CODEC(ZSTD(1)),
    time DateTime('UTC') COMMENT 'of an hourly record its hour in UTC, else the machine''s wall clock' CODEC(Delta, ZSTD(1)),
    received DateTime('UTC') COMMENT 'when the forwarder gave the record to Kafka' CODEC(ZSTD(1)),
    record_id UInt64 COMMENT 'of its identity and its samples: of a record that is sent again the same' CODEC(ZSTD(1)),
    outer_entry UInt16 COMMENT 'of the list around it, from 1' CODEC(ZSTD(1)),
    entry UInt16 COMMENT 'in the record''s list, from 1' CODEC(ZSTD(1)),
    interface_device_id LowCardinality(Nullable(String)) COMMENT 'interface' CODEC(ZSTD(1)),
    w_lan_profile_name Nullable(String) COMMENT 'name' CODEC(ZSTD(1)),
    w_lan_profile_authentication LowCardinality(Nullable(String)) COMMENT 'authentication' CODEC(ZSTD(1)),
    w_lan_profile_encryption LowCardinality(Nullable(String)) COMMENT 'encryption' CODEC(ZSTD(1)),
    is_active Nullable(Bool) COMMENT 'active' CODEC(ZSTD(1))
)
ENGINE = ReplacingMergeTree(received)
PARTITION BY if(time >= '2020-01-01' AND time < '2050-01-01', toMonday(time), toDate('1970-01-01'))
ORDER BY (machine, time, record_id, outer_entry, entry)
TTL received + INTERVAL 90 DAY
COMMENT 'Wi-Fi profiles that interfaces used, of hourly network records';

CREATE TABLE IF NOT EXISTS zt.npus
(
    machine String COMMENT 'serial number, at most 15 bytes of it' CODEC(ZSTD(1)),
    time DateTime('UTC') COMMENT 'of an hourly record its hour in UTC, else the machine''s wall clock' CODEC(Delta, ZSTD(1)),
    received DateTime('UTC') COMMENT 'when the forwarder gave the record to Kafka' CODEC(ZSTD(1)),
    record_id UInt64 COMMENT 'of its identity and its samples: of a record that is sent again the same' CODEC(ZSTD(1)),
    entry UInt16 COMMENT 'in the record''s list, from 1' CODEC(ZSTD(1)),
    memory_bandwidth_gb Nullable(Float32) COMMENT 'memory, GiB' CODEC(Gorilla, ZSTD(1)),
    memory_clock_mhz Nullable(Float32) COMMENT 'memory clock, Hz' CODEC(Gorilla, ZSTD(1)),
    memory_controller_utilization_percent Nullable(Float32) COMMENT 'memory full, %' CODEC(Gorilla, ZSTD(1)),
    memory_used_mb Nullable(Float32) COMMENT 'memory used, MiB' CODEC(Gorilla, ZSTD(1)),
    npus_clock_mhz Nullable(Float32) COMMENT 'clock, Hz' CODEC(Gorilla, ZSTD(1)),
    device_id LowCardinality(Nullable(String)) COMMENT 'device' CODEC(ZSTD(1))
)
ENGINE = ReplacingMergeTree(received)
PARTITION BY if(time >= '2020-01-01' AND time < '2050-01-01', toMonday(time), toDate('1970-01-01'))
ORDER BY (machine, time, record_id, entry)
TTL received + INTERVAL 90 DAY
COMMENT 'NPUs, of live records';

CREATE TABLE IF NOT EXISTS zt.drives
(
    machine String COMMENT 'serial number, at most 15 bytes of it' CODEC(ZSTD(1)),
    time DateTime('UTC') COMMENT 'of an hourly record its hour in UTC, else the machine''s wall clock' CODEC(Delta, ZSTD(1)),
    received DateTime('UTC') COMMENT 'when the forwarder gave the record to Kafka' CODEC(ZSTD(1)),
    record_id UInt64 COMMENT 'of its identity and its samples: of a record that is sent again the same' CODEC(ZSTD(1)),
    entry UInt16 COMMENT 'in the record''s list, from 1' CODEC(ZSTD(1)),
    utilization_percent Nullable(Float32) COMMENT 'used, %' CODEC(Gorilla, ZSTD(1)),
    drive_serial_number Nullable(String) COMMENT 'drive' CODEC(ZSTD(1))
)
ENGINE = ReplacingMergeTree(received)
PARTITION BY if(time >= '2020-01-01' AND time < '2050-01-01', toMonday(time), toDate('1970-01-01'))
ORDER BY (machine, time, record_id, entry)
TTL received + INTERVAL 90 DAY
COMMENT 'Storage drives, of live records';

CREATE TABLE IF NOT EXISTS zt.memory
(
    machine String COMMENT 'serial number, at most 15 bytes of it' CODEC(ZSTD(1)),
    time DateTime('UTC') COMMENT 'of an hourly record its hour in UTC, else the machine''s wall clock' CODEC(Delta, ZSTD(1)),
    received DateTime('UTC') COMMENT 'when the forwarder gave the record to Kafka' CODEC(ZSTD(1)),
    record_id UInt64 COMMENT 'of its identity and its samples: of a record that is sent again the same' CODEC(ZSTD(1)),
    total_virtual_memory_kb Nullable(UInt32) COMMENT 'virtual memory, KiB' CODEC(ZSTD(1)),
    used_physical_memory_kb Nullable(UInt32) COMMENT 'physical memory in use, kB' CODEC(ZSTD(1)),
    used_virtual_memory_kb Nullable(UInt32) COMMENT 'virtual memory in use, KiB' CODEC(ZSTD(1)),
    utilization_physical_percent Nullable(Float32) COMMENT 'share of physical memory, %' CODEC(Gorilla, ZSTD(1))
)
ENGINE = ReplacingMergeTree(received)
PARTITION BY if(time >= '2020-01-01' AND time < '2050-01-01', toMonday(time), toDate('1970-01-01'))
ORDER BY (machine, time, record_id)
TTL received + INTERVAL 90 DAY
COMMENT 'Memory, of live records';

CREATE TABLE IF NOT EXISTS zt.sessions
(
    machine String COMMENT 'serial number, at most 15 bytes of it' CODEC(ZSTD(1)),
    time DateTime('UTC') COMMENT 'of an hourly record its hour in UTC, else the machine''s wall clock' CODEC(Delta, ZSTD(1)),
    received DateTime('UTC') COMMENT 'when the forwarder gave the record to Kafka' CODEC(ZSTD(1)),
    record_id UInt64 COMMENT 'of its identity and its samples: of a record that is sent again the same' CODEC(ZSTD(1)),
    max_user_input_delay_ms Nullable(UInt32) COMMENT 'touch contacts' CODEC(ZSTD(1)),
    time_since_last_boot_minutes Nullable(Float32) COMMENT 'since the last start, min' CODEC(Gorilla, ZSTD(1)),
    time_since_last_logon_minutes Nullable(Float32) COMMENT 'since the last input, min' CODEC(Gorilla, ZSTD(1))
)
ENGINE = ReplacingMergeTree(received)
PARTITION BY if(time >= '2020-01-01' AND time < '2050-01-01', toMonday(time), toDate('1970-01-01'))
ORDER BY (machine, time, record_id)
TTL received + INTERVAL 90 DAY
COMMENT 'Sessions, of live records';

CREATE TABLE IF NOT EXISTS zt.processes
(
    machine String COMMENT 'serial number, at most 15 bytes of it' CODEC(ZSTD(1)),
    time DateTime('UTC') COMMENT 'of an hourly record its hour in UTC, else the machine''s wall clock' CODEC(Delta, ZSTD(1)),
    received DateTime('UTC') COMMENT 'when the forwarder gave the record to Kafka' CODEC(ZSTD(1)),
    record_id UInt64 COMMENT 'of its identity and its samples: of a record that is sent again the same' CODEC(ZSTD(1)),
    entry UInt16 COMMENT 'in the record''s list, from 1' CODEC(ZSTD(1)),
    has_window_title Nullable(Bool) COMMENT 'window' CODEC(ZSTD(1)),
    is_elevated Nullable(Bool) COMMENT 'elevated' CODEC(ZSTD(1)),
    io_reads Nullable(UInt32) COMMENT 'reads' CODEC(ZSTD(1)),
    io_reads_kb Nullable(UInt32) COMMENT 'reads/1024' CODEC(ZSTD(1)),
    io_writes Nullable(UInt32) COMMENT 'writes' CODEC(ZSTD(1)),
    io_writes_kb Nullable(UInt32) COMMENT 'writes/1024' CODEC(ZSTD(1)),
    cpu_utilization_percent Nullable(Float32) COMMENT 'CPU, %' CODEC(Gorilla, ZSTD(1)),
    memory_utilization_mb Nullable(Float32) COMMENT 'memory, MiB' CODEC(Gorilla, ZSTD(1)),
    memory_utilization_peak_mb Nullable(UInt32) COMMENT 'peak, MiB' CODEC(ZSTD(1)),
    total_cpu_time_seconds Nullable(UInt32) COMMENT 'CPU time, s' CODEC(ZSTD(1)),
    base_priority Nullable(UInt32) COMMENT 'priority' CODEC(ZSTD(1)),
    executable_file_id LowCardinality(Nullable(String)) COMMENT 'process' CODEC(ZSTD(1)),
    start_time Nullable(String) COMMENT 'started' CODEC(ZSTD(1)),
    status LowCardinality(Nullable(String)) COMMENT 'status' CODEC(ZSTD(1))
)
ENGINE = ReplacingMergeTree(received)
PARTITION BY if(time >= '2020-01-01' AND time < '2050-01-01', toMonday(time), toDate('1970-01-01'))
ORDER BY (machine, time, record_id, entry)
TTL received + INTERVAL 90 DAY
COMMENT 'The busiest processes, of live records';
