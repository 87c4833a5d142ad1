-- Written by scripts/fleet-tables from contracts/: change that, or what the script says, and run it again.
CREATE TABLE IF NOT EXISTS zt.upload_queue
(
    collection_id Nullable(String),
    local_time Nullable(String),
    sample_points_actual Nullable(UInt32),
    hw_info Tuple(batteries_info Array(Tuple(battery_status Array(String), charge_rate_mw Nullable(UInt32), cycle_count Nullable(UInt32), discharge_rate_mw Nullable(UInt32), electric_current Nullable(UInt32), full_charge_capacity Nullable(UInt32), max_error_percent Nullable(UInt32), remaining_charge_capacity Nullable(UInt32), voltage Nullable(UInt32), full_charge_capacity_percent Nullable(Float32), remaining_charge_capacity_percent Nullable(Float32), voltage_percent Nullable(Float32), battery_ct_number Nullable(String), battery_serial_number Nullable(String), charge_state Nullable(String))), cpus_info Array(Tuple(utilization_percent Nullable(Float32), temperature_sensors_info Array(Tuple(temperature_celsius Nullable(UInt32), sensor_name Nullable(String))), device_id Nullable(String))), device_state Tuple(device_mode Nullable(String)), fans_info Array(Tuple(fan_id Nullable(UInt32), fan_statistics_info Array(Tuple(fan_stat_name Nullable(String), fan_stat_value Nullable(Float32))))), gpus_info Array(Tuple(decoder_utilization_percent Nullable(Float32), encoder_utilization_percent Nullable(Float32), gpus_clock_mhz Nullable(Float32), gpus_utilization_percent Nullable(Float32), memory_bandwidth_gb Nullable(Float32), memory_clock_mhz Nullable(Float32), memory_controller_utilization_percent Nullable(Float32), memory_used_mb Nullable(Float32), video_engine_utilization_percent Nullable(Float32), temperature_celsius Nullable(UInt32), bus_id Nullable(String), graphics_card_serial_number Nullable(String), performance_capped_reason Nullable(String))), network_info Tuple(interfaces_info Array(Tuple(adjacent_channel_interference_count Nullable(UInt32), channel Nullable(UInt32), co_channel_interference_count Nullable(UInt32), signal_strength Nullable(UInt32), bytes_received Nullable(Float32), bytes_sent Nullable(Float32), nominal_speed Nullable(Float32), receive_rate Nullable(Float32), transmission_rate Nullable(Float32), w_lan_profiles Array(Tuple(w_lan_profile_name Nullable(String), w_lan_profile_authentication Nullable(String), w_lan_profile_encryption Nullable(String), is_active Nullable(Bool))), device_id Nullable(String), network_adapter_name Nullable(String), network_adapter_type Nullable(String), network_trust_level Nullable(String), is_managed_network Nullable(String), radio_type Nullable(String))), tcp_i_p_v4_stats_info Tuple(current_connections Nullable(UInt32), failed_connections Nullable(UInt32), errors_received Nullable(UInt32)), tcp_i_p_v6_stats_info Tuple(failed_connections Nullable(UInt32)), has_internet_access Nullable(Bool), has_network_access Nullable(Bool), is_vpn_connected Nullable(Bool)), npus_info Array(Tuple(memory_bandwidth_gb Nullable(Float32), memory_clock_mhz Nullable(Float32), memory_controller_utilization_percent Nullable(Float32), memory_used_mb Nullable(Float32), npus_clock_mhz Nullable(Float32), temperature_sensors_info Array(Tuple(temperature_celsius Nullable(UInt32), sensor_name Nullable(String))), device_id Nullable(String))), storage_drives_info Array(Tuple(utilization_percent Nullable(Float32), drive_serial_number Nullable(String))), system_board_info Tuple(temperature_sensors_info Array(Tuple(temperature_celsius Nullable(UInt32), sensor_name Nullable(String)))), system_memory_info Tuple(total_virtual_memory_kb Nullable(UInt32), used_physical_memory_kb Nullable(UInt32), used_virtual_memory_kb Nullable(UInt32), utilization_physical_percent Nullable(Float32))),
    operating_system_info Tuple(operating_session_info Tuple(max_user_input_delay_ms Nullable(UInt32), time_since_last_boot_minutes Nullable(Float32), time_since_last_logon_minutes Nullable(Float32)), resource_intensive_processes_info Array(Tuple(has_window_title Nullable(Bool), is_elevated Nullable(Bool), resource_utilization_info Tuple(io_reads Nullable(UInt32), io_reads_kb Nullable(UInt32), io_writes Nullable(UInt32), io_writes_kb Nullable(UInt32), cpu_utilization_percent Nullable(Float32), memory_utilization_mb Nullable(Float32), memory_utilization_peak_mb Nullable(UInt32), total_cpu_time_seconds Nullable(UInt32)), base_priority Nullable(UInt32), executable_file_id Nullable(String), start_time Nullable(String), status Nullable(String))))
)
ENGINE = Kafka
SETTINGS
    kafka_broker_list = '{kafka_brokers}',
    kafka_topic_list = '{upload_topic}',
    kafka_group_name = 'zt-telemetry-upload',
    kafka_format = 'ProtobufSingle',
    kafka_schema = 'performance_samples_upload.proto:PcLogPerformanceSamplesAsCDM',
    kafka_num_consumers = 1,
    kafka_thread_per_consumer = 1,
    kafka_max_block_size = 65536,
    kafka_poll_max_batch_size = 65536,
    kafka_flush_interval_ms = 2000,
    kafka_handle_error_mode = 'stream';

CREATE TABLE IF NOT EXISTS zt.upload_live_queue
(
    collection_id Nullable(String),
    local_time Nullable(String),
    sample_points_actual Nullable(UInt32),
    hw_info Tuple(batteries_info Array(Tuple(battery_status Array(String), charge_rate_mw Nullable(UInt32), cycle_count Nullable(UInt32), discharge_rate_mw Nullable(UInt32), electric_current Nullable(UInt32), full_charge_capacity Nullable(UInt32), max_error_percent Nullable(UInt32), remaining_charge_capacity Nullable(UInt32), voltage Nullable(UInt32), full_charge_capacity_percent Nullable(Float32), remaining_charge_capacity_percent Nullable(Float32), voltage_percent Nullable(Float32), battery_ct_number Nullable(String), battery_serial_number Nullable(String), charge_state Nullable(String))), device_state Tuple(device_mode Nullable(String)), gpus_info Array(Tuple(decoder_utilization_percent Nullable(Float32), encoder_utilization_percent Nullable(Float32), gpus_clock_mhz Nullable(Float32), gpus_utilization_percent Nullable(Float32), memory_bandwidth_gb Nullable(Float32), memory_clock_mhz Nullable(Float32), memory_controller_utilization_percent Nullable(Float32), memory_used_mb Nullable(Float32), video_engine_utilization_percent Nullable(Float32), temperature_celsius Nullable(UInt32), bus_id Nullable(String), graphics_card_serial_number Nullable(String), performance_capped_reason Nullable(String))), npus_info Array(Tuple(memory_bandwidth_gb Nullable(Float32), memory_clock_mhz Nullable(Float32), memory_controller_utilization_percent Nullable(Float32), memory_used_mb Nullable(Float32), npus_clock_mhz Nullable(Float32), temperature_sensors_info Array(Tuple(temperature_celsius Nullable(UInt32), sensor_name Nullable(String))), device_id Nullable(String))), storage_drives_info Array(Tuple(utilization_percent Nullable(Float32), drive_serial_number Nullable(String))), system_memory_info Tuple(total_virtual_memory_kb Nullable(UInt32), used_physical_memory_kb Nullable(UInt32), used_virtual_memory_kb Nullable(UInt32), utilization_physical_percent Nullable(Float32))),
    operating_system_info Tuple(operating_session_info Tuple(max_user_input_delay_ms Nullable(UInt32), time_since_last_boot_minutes Nullable(Float32), time_since_last_logon_minutes Nullable(Float32)), resource_intensive_processes_info Array(Tuple(has_window_title Nullable(Bool), is_elevated Nullable(Bool), resource_utilization_info Tuple(io_reads Nullable(UInt32), io_reads_kb Nullable(UInt32), io_writes Nullable(UInt32), io_writes_kb Nullable(UInt32), cpu_utilization_percent Nullable(Float32), memory_utilization_mb Nullable(Float32), memory_utilization_peak_mb Nullable(UInt32), total_cpu_time_seconds Nullable(UInt32)), base_priority Nullable(UInt32), executable_file_id Nullable(String), start_time Nullable(String), status Nullable(String))))
)
ENGINE = Kafka
SETTINGS
    kafka_broker_list = '{kafka_brokers}',
    kafka_topic_list = '{upload_topic}.live',
    kafka_group_name = 'zt-telemetry-upload-live',
    kafka_format = 'ProtobufSingle',
    kafka_schema = 'performance_samples_upload.proto:PcLogPerformanceSamplesAsCDM',
    kafka_num_consumers = 1,
    kafka_thread_per_consumer = 1,
    kafka_max_block_size = 65536,
    kafka_poll_max_batch_size = 65536,
    kafka_flush_interval_ms = 2000,
    kafka_handle_error_mode = 'stream';

CREATE TABLE IF NOT EXISTS zt.upload_thermal_queue
(
    collection_id Nullable(String),
    local_time Nullable(String),
    sample_points_actual Nullable(UInt32),
    hw_info Tuple(cpus_info Array(Tuple(utilization_percent Nullable(Float32), temperature_sensors_info Array(Tuple(temperature_celsius Nullable(UInt32), sensor_name Nullable(String))), device_id Nullable(String))), fans_info Array(Tuple(fan_id Nullable(UInt32), fan_statistics_info Array(Tuple(fan_stat_name Nullable(String), fan_stat_value Nullable(Float32))))), system_board_info Tuple(temperature_sensors_info Array(Tuple(temperature_celsius Nullable(UInt32), sensor_name Nullable(String)))))
)
ENGINE = Kafka
SETTINGS
    kafka_broker_list = '{kafka_brokers}',
    kafka_topic_list = '{upload_topic}.thermal',
    kafka_group_name = 'zt-telemetry-upload-thermal',
    kafka_format = 'ProtobufSingle',
    kafka_schema = 'performance_samples_upload.proto:PcLogPerformanceSamplesAsCDM',
    kafka_num_consumers = 1,
    kafka_thread_per_consumer = 1,
    kafka_max_block_size = 65536,
    kafka_poll_max_batch_size = 65536,
    kafka_flush_interval_ms = 2000,
    kafka_handle_error_mode = 'stream';

CREATE TABLE IF NOT EXISTS zt.upload_network_queue
(
    collection_id Nullable(String),
    local_time Nullable(String),
    sample_points_actual Nullable(UInt32),
    hw_info Tuple(network_info Tuple(interfaces_info Array(Tuple(adjacent_channel_interference_count Nullable(UInt32), channel Nullable(UInt32), co_channel_interference_count Nullable(UInt32), signal_strength Nullable(UInt32), bytes_received Nullable(Float32), bytes_sent Nullable(Float32), nominal_speed Nullable(Float32), receive_rate Nullable(Float32), transmission_rate Nullable(Float32), w_lan_profiles Array(Tuple(w_lan_profile_name Nullable(String), w_lan_profile_authentication Nullable(String), w_lan_profile_encryption Nullable(String), is_active Nullable(Bool))), device_id Nullable(String), network_adapter_name Nullable(String), network_adapter_type Nullable(String), network_trust_level Nullable(String), is_managed_network Nullable(String), radio_type Nullable(String))), tcp_i_p_v4_stats_info Tuple(current_connections Nullable(UInt32), failed_connections Nullable(UInt32), errors_received Nullable(UInt32)), tcp_i_p_v6_stats_info Tuple(failed_connections Nullable(UInt32)), has_internet_access Nullable(Bool), has_network_access Nullable(Bool), is_vpn_connected Nullable(Bool)))
)
ENGINE = Kafka
SETTINGS
    kafka_broker_list = '{kafka_brokers}',
    kafka_topic_list = '{upload_topic}.network',
    kafka_group_name = 'zt-telemetry-upload-network',
    kafka_format = 'ProtobufSingle',
    kafka_schema = 'performance_samples_upload.proto:PcLogPerformanceSamplesAsCDM',
    kafka_num_consumers = 1,
    kafka_thread_per_consumer = 1,
    kafka_max_block_size = 65536,
    kafka_poll_max_batch_size = 65536,
    kafka_flush_interval_ms = 2000,
    kafka_handle_error_mode = 'stream';

CREATE TABLE IF NOT EXISTS zt.storage_queue
(
    local_time Nullable(String),
    battery_further_capacity_mwh Nullable(Int64),
    battery_full_charge_capacity_mwh Nullable(Int64),
    battery_charge_rate_mw Nullable(Int64),
    battery_remaining_capacity_percent Nullable(UInt64),
    device_mode Nullable(String),
    memory_clock_mhz Nullable(UInt32)
)
ENGINE = Kafka
SETTINGS
    kafka_broker_list = '{kafka_brokers}',
    kafka_topic_list = '{storage_topic}',
    kafka_group_name = 'zt-telemetry-storage',
    kafka_format = 'ProtobufSingle',
    kafka_schema = 'device_performance_storage.proto:AmdPmfSamples',
    kafka_num_consumers = 1,
    kafka_thread_per_consumer = 1,
    kafka_max_block_size = 65536,
    kafka_poll_max_batch_size = 65536,
    kafka_flush_interval_ms = 2000,
    kafka_handle_error_mode = 'stream';
