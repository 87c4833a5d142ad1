-- Written by scripts/fleet-tables from contracts/: change that, or what the script says, and run it again.
-- What a record comes to before it is unfolded: kept nowhere, each view below takes its section.
CREATE TABLE IF NOT EXISTS zt.upload_incoming
(
    machine String,
    time DateTime('UTC'),
    received DateTime('UTC'),
    record_id UInt64,
    kind Enum8('live' = 0, 'thermal' = 1, 'network' = 2),
    part String,
    contract_version String,
    topic LowCardinality(String),
    partition UInt32,
    place UInt64,
    collection_id String,
    local_time Nullable(String),
    sample_points_actual Nullable(UInt32),
    batteries_info Array(Tuple(battery_status Array(String), charge_rate_mw Nullable(UInt32), cycle_count Nullable(UInt32), discharge_rate_mw Nullable(UInt32), electric_current Nullable(UInt32), full_charge_capacity Nullable(UInt32), max_error_percent Nullable(UInt32), remaining_charge_capacity Nullable(UInt32), voltage Nullable(UInt32), full_charge_capacity_percent Nullable(Float32), remaining_charge_capacity_percent Nullable(Float32), voltage_percent Nullable(Float32), battery_ct_number Nullable(String), battery_serial_number Nullable(String), charge_state Nullable(String))),
    cpus_info Array(Tuple(utilization_percent Nullable(Float32), temperature_sensors_info Array(Tuple(temperature_celsius Nullable(UInt32), sensor_name Nullable(String))), device_id Nullable(String))),
    device_state Tuple(device_mode Nullable(String)),
    fans_info Array(Tuple(fan_id Nullable(UInt32), fan_statistics_info Array(Tuple(fan_stat_name Nullable(String), fan_stat_value Nullable(Float32))))),
    gpus_info Array(Tuple(decoder_utilization_percent Nullable(Float32), encoder_utilization_percent Nullable(Float32), gpus_clock_mhz Nullable(Float32), gpus_utilization_percent Nullable(Float32), memory_bandwidth_gb Nullable(Float32), memory_clock_mhz Nullable(Float32), memory_controller_utilization_percent Nullable(Float32), memory_used_mb Nullable(Float32), video_engine_utilization_percent Nullable(Float32), temperature_celsius Nullable(UInt32), bus_id Nullable(String), graphics_card_serial_number Nullable(String), performance_capped_reason Nullable(String))),
    network_info Tuple(interfaces_info Array(Tuple(adjacent_channel_interference_count Nullable(UInt32), channel Nullable(UInt32), co_channel_interference_count Nullable(UInt32), signal_strength Nullable(UInt32), bytes_received Nullable(Float32), bytes_sent Nullable(Float32), nominal_speed Nullable(Float32), receive_rate Nullable(Float32), transmission_rate Nullable(Float32), w_lan_profiles Array(Tuple(w_lan_profile_name Nullable(String), w_lan_profile_authentication Nullable(String), w_lan_profile_encryption Nullable(String), is_active Nullable(Bool))), device_id Nullable(String), network_adapter_name Nullable(String), network_adapter_type Nullable(String), network_trust_level Nullable(String), is_managed_network Nullable(String), radio_type Nullable(String))), tcp_i_p_v4_stats_info Tuple(current_connections Nullable(UInt32), failed_connections Nullable(UInt32), errors_received Nullable(UInt32)), tcp_i_p_v6_stats_info Tuple(failed_connections Nullable(UInt32)), has_internet_access Nullable(Bool), has_network_access Nullable(Bool), is_vpn_connected Nullable(Bool)),
    npus_info Array(Tuple(memory_bandwidth_gb Nullable(Float32), memory_clock_mhz Nullable(Float32), memory_controller_utilization_percent Nullable(Float32), memory_used_mb Nullable(Float32), npus_clock_mhz Nullable(Float32), temperature_sensors_info Array(Tuple(temperature_celsius Nullable(UInt32), sensor_name Nullable(String))), device_id Nullable(String))),
    storage_drives_info Array(Tuple(utilization_percent Nullable(Float32), drive_serial_number Nullable(String))),
    system_board_info Tuple(temperature_sensors_info Array(Tuple(temperature_celsius Nullable(UInt32), sensor_name Nullable(String)))),
    system_memory_info Tuple(total_virtual_memory_kb Nullable(UInt32), used_physical_memory_kb Nullable(UInt32), used_virtual_memory_kb Nullable(UInt32), utilization_physical_percent Nullable(Float32)),
    operating_session_info Tuple(max_user_input_delay_ms Nullable(UInt32), time_since_last_boot_minutes Nullable(Float32), time_since_last_logon_minutes Nullable(Float32)),
    resource_intensive_processes_info Array(Tuple(has_window_title Nullable(Bool), is_elevated Nullable(Bool), resource_utilization_info Tuple(io_reads Nullable(UInt32), io_reads_kb Nullable(UInt32), io_writes Nullable(UInt32), io_writes_kb Nullable(UInt32), cpu_utilization_percent Nullable(Float32), memory_utilization_mb Nullable(Float32), memory_utilization_peak_mb Nullable(UInt32), total_cpu_time_seconds Nullable(UInt32)), base_priority Nullable(UInt32), executable_file_id Nullable(String), start_time Nullable(String), status Nullable(String)))
)
ENGINE = Null;
