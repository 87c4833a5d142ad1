#pragma once

#include <string>
#include <vector>

/// The records as agreed with their readers: who changes a line here changes what hosts and analyses see.
namespace zt::tests {

struct AgreedField {
  std::string name;
  /// A scalar type, or the full name of a message below its package.
  std::string type;
  std::string json_name;
  bool repeated = false;
};

struct AgreedMessage {
  /// Full name below the package.
  std::string name;
  std::vector<AgreedField> fields;
};

inline constexpr bool kList = true;

inline const std::vector<AgreedMessage>& UploadMessages() {
  static const std::vector<AgreedMessage> messages = {
      {"PcLogPerformanceSamplesAsCDM",
       {{"collection_id", "string", "collectionId"},
        {"local_time", "string", "localTime"},
        {"sample_points_actual", "uint32", "samplePointsActual"},
        {"hw_info", "PcLogPerformanceSamplesAsCDM.HwInfo", "hwInfo"},
        {"operating_system_info", "PcLogPerformanceSamplesAsCDM.OperatingSystemInfo", "operatingSystemInfo"}}},
      {"PcLogPerformanceSamplesAsCDM.HwInfo",
       {{"batteries_info", "PcLogPerformanceSamplesAsCDM.HwInfo.BatteryInfo", "batteriesInfo", kList},
        {"cpus_info", "PcLogPerformanceSamplesAsCDM.HwInfo.CpuInfo", "cpusInfo", kList},
        {"device_state", "PcLogPerformanceSamplesAsCDM.HwInfo.DeviceStateInfo", "deviceState"},
        {"fans_info", "PcLogPerformanceSamplesAsCDM.HwInfo.Fans", "fansInfo", kList},
        {"gpus_info", "PcLogPerformanceSamplesAsCDM.HwInfo.GraphicsCardInfo", "gpusInfo", kList},
        {"network_info", "PcLogPerformanceSamplesAsCDM.HwInfo.Network", "networkInfo"},
        {"npus_info", "PcLogPerformanceSamplesAsCDM.HwInfo.NpuInfo", "npusInfo", kList},
        {"storage_drives_info", "PcLogPerformanceSamplesAsCDM.HwInfo.StorageDriveInfo", "storageDrivesInfo", kList},
        {"system_board_info", "PcLogPerformanceSamplesAsCDM.HwInfo.SystemBoardInfo", "systemBoardInfo"},
        {"system_memory_info", "PcLogPerformanceSamplesAsCDM.HwInfo.SystemMemoryInfo", "systemMemoryInfo"}}},
      {"PcLogPerformanceSamplesAsCDM.HwInfo.BatteryInfo",
       {{"battery_status", "string", "batteryStatus", kList},
        {"charge_rate_mw", "uint32", "chargeRateMw"},
        {"cycle_count", "uint32", "cycleCount"},
        {"discharge_rate_mw", "uint32", "dischargeRateMw"},
        {"electric_current", "uint32", "electricCurrent"},
        {"full_charge_capacity", "uint32", "fullChargeCapacity"},
        {"max_error_percent", "uint32", "maxErrorPercent"},
        {"remaining_charge_capacity", "uint32", "remainingChargeCapacity"},
        {"voltage", "uint32", "voltage"},
        {"full_charge_capacity_percent", "float", "fullChargeCapacityPercent"},
        {"remaining_charge_capacity_percent", "float", "remainingChargeCapacityPercent"},
        {"voltage_percent", "float", "voltagePercent"},
        {"battery_ct_number", "string", "batteryCTNumber"},
        {"battery_serial_number", "string", "batterySerialNumber"},
        {"charge_state", "string", "chargeState"}}},
      {"PcLogPerformanceSamplesAsCDM.HwInfo.CpuInfo",
       {{"utilization_percent", "float", "utilizationPercent"},
        {"temperature_sensors_info", "TemperatureSensor", "temperatureSensorsInfo", kList},
        {"device_id", "string", "deviceId"}}},
      {"PcLogPerformanceSamplesAsCDM.HwInfo.DeviceStateInfo", {{"device_mode", "string", "deviceMode"}}},
      {"PcLogPerformanceSamplesAsCDM.HwInfo.Fans",
       {{"fan_id", "uint32", "fanId"},
        {"fan_statistics_info", "PcLogPerformanceSamplesAsCDM.HwInfo.Fans.FanStatistics", "fanStatisticsInfo", kList}}},
      {"PcLogPerformanceSamplesAsCDM.HwInfo.Fans.FanStatistics",
       {{"fan_stat_name", "string", "fanStatName"}, {"fan_stat_value", "float", "fanStatValue"}}},
      {"PcLogPerformanceSamplesAsCDM.HwInfo.GraphicsCardInfo",
       {{"decoder_utilization_percent", "float", "decoderUtilizationPercent"},
        {"encoder_utilization_percent", "float", "encoderUtilizationPercent"},
        {"gpus_clock_mhz", "float", "gpusClockMhz"},
        {"gpus_utilization_percent", "float", "gpusUtilizationPercent"},
        {"memory_bandwidth_gb", "float", "memoryBandwidthGb"},
        {"memory_clock_mhz", "float", "memoryClockMhz"},
        {"memory_controller_utilization_percent", "float", "memoryControllerUtilizationPercent"},
        {"memory_used_mb", "float", "memoryUsedMb"},
        {"video_engine_utilization_percent", "float", "videoEngineUtilizationPercent"},
        {"temperature_celsius", "uint32", "temperatureCelsius"},
        {"bus_id", "string", "busId"},
        {"graphics_card_serial_number", "string", "graphicsCardSerialNumber"},
        {"performance_capped_reason", "string", "performanceCappedReason"}}},
      {"PcLogPerformanceSamplesAsCDM.HwInfo.Network",
       {{"interfaces_info", "PcLogPerformanceSamplesAsCDM.HwInfo.Network.Interfaces", "interfacesInfo", kList},
        {"tcp_i_p_v4_stats_info", "PcLogPerformanceSamplesAsCDM.HwInfo.Network.TcpIPV4Stats", "tcpIPV4StatsInfo"},
        {"tcp_i_p_v6_stats_info", "PcLogPerformanceSamplesAsCDM.HwInfo.Network.TcpIPV6Stats", "tcpIPV6StatsInfo"},
        {"has_internet_access", "bool", "hasInternetAccess"},
        {"has_network_access", "bool", "hasNetworkAccess"},
        {"is_vpn_connected", "bool", "isVPNConnected"}}},
      {"PcLogPerformanceSamplesAsCDM.HwInfo.Network.TcpIPV4Stats",
       {{"current_connections", "uint32", "currentConnections"},
        {"failed_connections", "uint32", "failedConnections"},
        {"errors_received", "uint32", "errorsReceived"}}},
      {"PcLogPerformanceSamplesAsCDM.HwInfo.Network.TcpIPV6Stats",
       {{"failed_connections", "uint32", "failedConnections"}}},
      {"PcLogPerformanceSamplesAsCDM.HwInfo.Network.Interfaces",
       {{"adjacent_channel_interference_count", "uint32", "adjacentChannelInterferenceCount"},
        {"channel", "uint32", "channel"},
        {"co_channel_interference_count", "uint32", "coChannelInterferenceCount"},
        {"signal_strength", "uint32", "signalStrength"},
        {"bytes_received", "float", "bytesReceived"},
        {"bytes_sent", "float", "bytesSent"},
        {"nominal_speed", "float", "nominalSpeed"},
        {"receive_rate", "float", "receiveRate"},
        {"transmission_rate", "float", "transmissionRate"},
        {"w_lan_profiles", "PcLogPerformanceSamplesAsCDM.HwInfo.Network.Interfaces.WLanProfiles", "wLanProfiles",
         kList},
        {"device_id", "string", "deviceID"},
        {"network_adapter_name", "string", "networkAdapterName"},
        {"network_adapter_type", "string", "networkAdapterType"},
        {"network_trust_level", "string", "networkTrustLevel"},
        {"is_managed_network", "string", "isManagedNetwork"},
        {"radio_type", "string", "radioType"}}},
      {"PcLogPerformanceSamplesAsCDM.HwInfo.Network.Interfaces.WLanProfiles",
       {{"w_lan_profile_name", "string", "wLanProfileName"},
        {"w_lan_profile_authentication", "string", "wLanProfileAuthentication"},
        {"w_lan_profile_encryption", "string", "wLanProfileEncryption"},
        {"is_active", "bool", "isActive"}}},
      {"PcLogPerformanceSamplesAsCDM.HwInfo.NpuInfo",
       {{"memory_bandwidth_gb", "float", "memoryBandwidthGb"},
        {"memory_clock_mhz", "float", "memoryClockMhz"},
        {"memory_controller_utilization_percent", "float", "memoryControllerUtilizationPercent"},
        {"memory_used_mb", "float", "memoryUsedMb"},
        {"npus_clock_mhz", "float", "npusClockMhz"},
        {"temperature_sensors_info", "TemperatureSensor", "temperatureSensorsInfo", kList},
        {"device_id", "string", "deviceId"}}},
      {"PcLogPerformanceSamplesAsCDM.HwInfo.StorageDriveInfo",
       {{"utilization_percent", "float", "utilizationPercent"},
        {"drive_serial_number", "string", "driveSerialNumber"}}},
      {"PcLogPerformanceSamplesAsCDM.HwInfo.SystemBoardInfo",
       {{"temperature_sensors_info", "TemperatureSensor", "temperatureSensorsInfo", kList}}},
      {"PcLogPerformanceSamplesAsCDM.HwInfo.SystemMemoryInfo",
       {{"total_virtual_memory_kb", "uint32", "totalVirtualMemoryKb"},
        {"used_physical_memory_kb", "uint32", "usedPhysicalMemoryKb"},
        {"used_virtual_memory_kb", "uint32", "usedVirtualMemoryKb"},
        {"utilization_physical_percent", "float", "utilizationPhysicalPercent"}}},
      {"PcLogPerformanceSamplesAsCDM.OperatingSystemInfo",
       {{"operating_session_info", "PcLogPerformanceSamplesAsCDM.OperatingSystemInfo.OperatingSystemSession",
         "operatingSessionInfo"},
        {"resource_intensive_processes_info",
         "PcLogPerformanceSamplesAsCDM.OperatingSystemInfo.OperatingSystemProcessInfo",
         "resourceIntensiveProcessesInfo", kList}}},
      {"PcLogPerformanceSamplesAsCDM.OperatingSystemInfo.OperatingSystemSession",
       {{"max_user_input_delay_ms", "uint32", "maxUserInputDelayMs"},
        {"time_since_last_boot_minutes", "float", "timeSinceLastBootMinutes"},
        {"time_since_last_logon_minutes", "float", "timeSinceLastLogonMinutes"}}},
      {"PcLogPerformanceSamplesAsCDM.OperatingSystemInfo.OperatingSystemProcessInfo",
       {{"has_window_title", "bool", "hasWindowTitle"},
        {"is_elevated", "bool", "isElevated"},
        {"resource_utilization_info", "ProcessResourceUtilizationInfo", "resourceUtilizationInfo"},
        {"base_priority", "uint32", "basePriority"},
        {"executable_file_id", "string", "executableFileId"},
        {"start_time", "string", "startTime"},
        {"status", "string", "status"}}},
      {"TemperatureSensor",
       {{"temperature_celsius", "uint32", "temperatureCelsius"}, {"sensor_name", "string", "sensorName"}}},
      {"ProcessResourceUtilizationInfo",
       {{"io_reads", "uint32", "ioReads"},
        {"io_reads_kb", "uint32", "ioReadsKb"},
        {"io_writes", "uint32", "ioWrites"},
        {"io_writes_kb", "uint32", "ioWritesKb"},
        {"cpu_utilization_percent", "float", "cpuUtilizationPercent"},
        {"memory_utilization_mb", "float", "memoryUtilizationMb"},
        {"memory_utilization_peak_mb", "uint32", "memoryUtilizationPeakMb"},
        {"total_cpu_time_seconds", "uint32", "totalCpuTimeSeconds"}}},
  };
  return messages;
}

inline const std::vector<AgreedMessage>& StorageMessages() {
  static const std::vector<AgreedMessage> messages = {
      {"AmdPmfSamples",
       {{"local_time", "string", "localTime"},
        {"battery_further_capacity_mwh", "int64", "batteryFurtherCapacityMwh"},
        {"battery_full_charge_capacity_mwh", "int64", "batteryFullChargeCapacityMwh"},
        {"battery_charge_rate_mw", "int64", "batteryChargeRateMw"},
        {"battery_remaining_capacity_percent", "uint64", "batteryRemainingCapacityPercent"},
        {"device_mode", "string", "deviceMode"},
        {"memory_clock_mhz", "uint32", "memoryClockMhz"}}},
      {"ThermalZTBiosSamples",
       {{"battery_temperature", "int32", "batteryTemperature"}, {"gpu_temperature", "uint32", "gpuTemperature"}}},
      {"EnergyEMISamples", {}},
  };
  return messages;
}

}  // namespace zt::tests
