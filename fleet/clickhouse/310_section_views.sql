-- Written by scripts/fleet-tables from contracts/: change that, or what the script says, and run it again.
CREATE MATERIALIZED VIEW IF NOT EXISTS zt.to_records TO zt.records AS
SELECT machine, time, received, record_id,
    kind, part, contract_version, topic, partition, place, collection_id, local_time, sample_points_actual
FROM zt.upload_incoming;

CREATE MATERIALIZED VIEW IF NOT EXISTS zt.to_batteries TO zt.batteries AS
SELECT machine, time, received, record_id,
    entry,
    item.battery_status AS battery_status,
    item.charge_rate_mw AS charge_rate_mw,
    item.cycle_count AS cycle_count,
    item.discharge_rate_mw AS discharge_rate_mw,
    item.electric_current AS electric_current,
    item.full_charge_capacity AS full_charge_capacity,
    item.max_error_percent AS max_error_percent,
    item.remaining_charge_capacity AS remaining_charge_capacity,
    item.voltage AS voltage,
    item.full_charge_capacity_percent AS full_charge_capacity_percent,
    item.remaining_charge_capacity_percent AS remaining_charge_capacity_percent,
    item.voltage_percent AS voltage_percent,
    item.battery_ct_number AS battery_ct_number,
    item.battery_serial_number AS battery_serial_number,
    item.charge_state AS charge_state
FROM zt.upload_incoming
ARRAY JOIN batteries_info AS item, arrayEnumerate(batteries_info) AS entry;

CREATE MATERIALIZED VIEW IF NOT EXISTS zt.to_processors TO zt.processors AS
SELECT machine, time, received, record_id,
    entry,
    item.utilization_percent AS utilization_percent,
    item.device_id AS device_id
FROM zt.upload_incoming
ARRAY JOIN cpus_info AS item, arrayEnumerate(cpus_info) AS entry;

CREATE MATERIALIZED VIEW IF NOT EXISTS zt.to_temperatures_processor TO zt.temperatures AS
SELECT machine, time, received, record_id,
    outer_entry,
    entry,
    'processor' AS source,
    item.temperature_celsius AS temperature_celsius,
    item.sensor_name AS sensor_name
FROM (
    SELECT machine, time, received, record_id, outer_item, outer_entry
    FROM zt.upload_incoming
    ARRAY JOIN cpus_info AS outer_item, arrayEnumerate(cpus_info) AS outer_entry
)
ARRAY JOIN outer_item.temperature_sensors_info AS item, arrayEnumerate(outer_item.temperature_sensors_info) AS entry;

CREATE MATERIALIZED VIEW IF NOT EXISTS zt.to_temperatures_board TO zt.temperatures AS
SELECT machine, time, received, record_id,
    1 AS outer_entry,
    entry,
    'board' AS source,
    item.temperature_celsius AS temperature_celsius,
    item.sensor_name AS sensor_name
FROM zt.upload_incoming
ARRAY JOIN system_board_info.temperature_sensors_info AS item, arrayEnumerate(system_board_info.temperature_sensors_info) AS entry;

CREATE MATERIALIZED VIEW IF NOT EXISTS zt.to_temperatures_npu TO zt.temperatures AS
SELECT machine, time, received, record_id,
    outer_entry,
    entry,
    'npu' AS source,
    item.temperature_celsius AS temperature_celsius,
    item.sensor_name AS sensor_name
FROM (
    SELECT machine, time, received, record_id, outer_item, outer_entry
    FROM zt.upload_incoming
    ARRAY JOIN npus_info AS outer_item, arrayEnumerate(npus_info) AS outer_entry
)
ARRAY JOIN outer_item.temperature_sensors_info AS item, arrayEnumerate(outer_item.temperature_sensors_info) AS entry;

CREATE MATERIALIZED VIEW IF NOT EXISTS zt.to_postures TO zt.postures AS
SELECT machine, time, received, record_id,
    item.device_mode AS device_mode
FROM (SELECT machine, time, received, record_id, device_state AS item FROM zt.upload_incoming)
WHERE isNotNull(item.device_mode);

CREATE MATERIALIZED VIEW IF NOT EXISTS zt.to_fans TO zt.fans AS
SELECT machine, time, received, record_id,
    outer_entry,
    entry,
    outer_item.fan_id AS fan_id,
    item.fan_stat_name AS fan_stat_name,
    item.fan_stat_value AS fan_stat_value
FROM (
    SELECT machine, time, received, record_id, outer_item, outer_entry
    FROM zt.upload_incoming
    ARRAY JOIN fans_info AS outer_item, arrayEnumerate(fans_info) AS outer_entry
)
ARRAY JOIN outer_item.fan_statistics_info AS item, arrayEnumerate(outer_item.fan_statistics_info) AS entry;

CREATE MATERIALIZED VIEW IF NOT EXISTS zt.to_graphics_cards TO zt.graphics_cards AS
SELECT machine, time, received, record_id,
    entry,
    item.decoder_utilization_percent AS decoder_utilization_percent,
    item.encoder_utilization_percent AS encoder_utilization_percent,
    item.gpus_clock_mhz AS gpus_clock_mhz,
    item.gpus_utilization_percent AS gpus_utilization_percent,
    item.memory_bandwidth_gb AS memory_bandwidth_gb,
    item.memory_clock_mhz AS memory_clock_mhz,
    item.memory_controller_utilization_percent AS memory_controller_utilization_percent,
    item.memory_used_mb AS memory_used_mb,
    item.video_engine_utilization_percent AS video_engine_utilization_percent,
    item.temperature_celsius AS temperature_celsius,
    item.bus_id AS bus_id,
    item.graphics_card_serial_number AS graphics_card_serial_number,
    item.performance_capped_reason AS performance_capped_reason
FROM zt.upload_incoming
ARRAY JOIN gpus_info AS item, arrayEnumerate(gpus_info) AS entry;

CREATE MATERIALIZED VIEW IF NOT EXISTS zt.to_networks TO zt.networks AS
SELECT machine, time, received, record_id,
    item.tcp_i_p_v4_stats_info.current_connections AS tcp_ipv4_current_connections,
    item.tcp_i_p_v4_stats_info.failed_connections AS tcp_ipv4_failed_connections,
    item.tcp_i_p_v4_stats_info.errors_received AS tcp_ipv4_errors_received,
    item.tcp_i_p_v6_stats_info.failed_connections AS tcp_ipv6_failed_connections,
    item.has_internet_access AS has_internet_access,
    item.has_network_access AS has_network_access,
    item.is_vpn_connected AS is_vpn_connected
FROM (SELECT machine, time, received, record_id, network_info AS item FROM zt.upload_incoming)
WHERE isNotNull(item.tcp_i_p_v4_stats_info.current_connections) OR isNotNull(item.tcp_i_p_v4_stats_info.failed_connections) OR isNotNull(item.tcp_i_p_v4_stats_info.errors_received) OR isNotNull(item.tcp_i_p_v6_stats_info.failed_connections) OR isNotNull(item.has_internet_access) OR isNotNull(item.has_network_access) OR isNotNull(item.is_vpn_connected);

CREATE MATERIALIZED VIEW IF NOT EXISTS zt.to_interfaces TO zt.interfaces AS
SELECT machine, time, received, record_id,
    entry,
    item.adjacent_channel_interference_count AS adjacent_channel_interference_count,
    item.channel AS channel,
    item.co_channel_interference_count AS co_channel_interference_count,
    reinterpretAsInt32(assumeNotNull(item.signal_strength)) + if(isNull(item.signal_strength), NULL, 0) AS signal_strength,
    item.bytes_received AS bytes_received,
    item.bytes_sent AS bytes_sent,
    item.nominal_speed AS nominal_speed,
    item.receive_rate AS receive_rate,
    item.transmission_rate AS transmission_rate,
    item.device_id AS device_id,
    item.network_adapter_name AS network_adapter_name,
    item.network_adapter_type AS network_adapter_type,
    item.network_trust_level AS network_trust_level,
    item.is_managed_network AS is_managed_network,
    item.radio_type AS radio_type
FROM zt.upload_incoming
ARRAY JOIN network_info.interfaces_info AS item, arrayEnumerate(network_info.interfaces_info) AS entry;

CREATE MATERIALIZED VIEW IF NOT EXISTS zt.to_profiles TO zt.profiles AS
SELECT machine, time, received, record_id,
    outer_entry,
    entry,
    outer_item.device_id AS interface_device_id,
    item.w_lan_profile_name AS w_lan_profile_name,
    item.w_lan_profile_authentication AS w_lan_profile_authentication,
    item.w_lan_profile_encryption AS w_lan_profile_encryption,
    item.is_active AS is_active
FROM (
    SELECT machine, time, received, record_id, outer_item, outer_entry
    FROM zt.upload_incoming
    ARRAY JOIN network_info.interfaces_info AS outer_item, arrayEnumerate(network_info.interfaces_info) AS outer_entry
)
ARRAY JOIN outer_item.w_lan_profiles AS item, arrayEnumerate(outer_item.w_lan_profiles) AS entry;

CREATE MATERIALIZED VIEW IF NOT EXISTS zt.to_npus TO zt.npus AS
SELECT machine, time, received, record_id,
    entry,
    item.memory_bandwidth_gb AS memory_bandwidth_gb,
    item.memory_clock_mhz AS memory_clock_mhz,
    item.memory_controller_utilization_percent AS memory_controller_utilization_percent,
    item.memory_used_mb AS memory_used_mb,
    item.npus_clock_mhz AS npus_clock_mhz,
    item.device_id AS device_id
FROM zt.upload_incoming
ARRAY JOIN npus_info AS item, arrayEnumerate(npus_info) AS entry;

CREATE MATERIALIZED VIEW IF NOT EXISTS zt.to_drives TO zt.drives AS
SELECT machine, time, received, record_id,
    entry,
    item.utilization_percent AS utilization_percent,
    item.drive_serial_number AS drive_serial_number
FROM zt.upload_incoming
ARRAY JOIN storage_drives_info AS item, arrayEnumerate(storage_drives_info) AS entry;

CREATE MATERIALIZED VIEW IF NOT EXISTS zt.to_memory TO zt.memory AS
SELECT machine, time, received, record_id,
    item.total_virtual_memory_kb AS total_virtual_memory_kb,
    item.used_physical_memory_kb AS used_physical_memory_kb,
    item.used_virtual_memory_kb AS used_virtual_memory_kb,
    item.utilization_physical_percent AS utilization_physical_percent
FROM (SELECT machine, time, received, record_id, system_memory_info AS item FROM zt.upload_incoming)
WHERE isNotNull(item.total_virtual_memory_kb) OR isNotNull(item.used_physical_memory_kb) OR isNotNull(item.used_virtual_memory_kb) OR isNotNull(item.utilization_physical_percent);

CREATE MATERIALIZED VIEW IF NOT EXISTS zt.to_sessions TO zt.sessions AS
SELECT machine, time, received, record_id,
    item.max_user_input_delay_ms AS max_user_input_delay_ms,
    item.time_since_last_boot_minutes AS time_since_last_boot_minutes,
    item.time_since_last_logon_minutes AS time_since_last_logon_minutes
FROM (SELECT machine, time, received, record_id, operating_session_info AS item FROM zt.upload_incoming)
WHERE isNotNull(item.max_user_input_delay_ms) OR isNotNull(item.time_since_last_boot_minutes) OR isNotNull(item.time_since_last_logon_minutes);

CREATE MATERIALIZED VIEW IF NOT EXISTS zt.to_processes TO zt.processes AS
SELECT machine, time, received, record_id,
    entry,
    item.has_window_title AS has_window_title,
    item.is_elevated AS is_elevated,
    item.resource_utilization_info.io_reads AS io_reads,
    item.resource_utilization_info.io_reads_kb AS io_reads_kb,
    item.resource_utilization_info.io_writes AS io_writes,
    item.resource_utilization_info.io_writes_kb AS io_writes_kb,
    item.resource_utilization_info.cpu_utilization_percent AS cpu_utilization_percent,
    item.resource_utilization_info.memory_utilization_mb AS memory_utilization_mb,
    item.resource_utilization_info.memory_utilization_peak_mb AS memory_utilization_peak_mb,
    item.resource_utilization_info.total_cpu_time_seconds AS total_cpu_time_seconds,
    item.base_priority AS base_priority,
    item.executable_file_id AS executable_file_id,
    item.start_time AS start_time,
    item.status AS status
FROM zt.upload_incoming
ARRAY JOIN resource_intensive_processes_info AS item, arrayEnumerate(resource_intensive_processes_info) AS entry;
