#pragma once

// The tables of the sample database, for everything here that makes one: the seed command, tests and benchmarks. The
// database is the host's, so no file of the collector includes this: it neither makes a table nor relies on a type. The
// temperatures and the speeds of links are declared as numbers with a fraction; whoever writes whole ones may.
namespace zt::telemetry::host {

inline constexpr char kDatabaseName[] = "ssm.db";

inline constexpr char kThermalTable[] = "ThermalData";
inline constexpr char kThermalColumns[] =
    "id INTEGER PRIMARY KEY AUTOINCREMENT, "
    "date_time TEXT NOT NULL, "  // UTC, "2026-03-07T12:00:30.000Z"
    "cpu_temp REAL, "            // degrees Celsius, as the next two
    "ext_sensor_temp REAL, "
    "loc_sensor_temp REAL, "
    "fan1_current_tach_speed INTEGER, "  // revolutions a minute
    "fan1_target_tach_speed INTEGER, "
    "fan1_speed_step INTEGER, "
    "fan2_current_tach_speed INTEGER, "
    "fan2_target_tach_speed INTEGER, "
    "fan2_speed_step INTEGER";

inline constexpr char kNetworkTable[] = "NetworkData";
inline constexpr char kNetworkColumns[] =
    "id INTEGER PRIMARY KEY AUTOINCREMENT, "
    "date_time TEXT NOT NULL, "
    "interface_device_id TEXT, "
    "network_trust_level TEXT, "
    "is_managed INTEGER, "  // 0 or 1, as the other flags
    "channel INTEGER, "
    "radio_type TEXT, "
    "nominal_speed REAL, "
    "tx_rate REAL, "
    "rx_rate REAL, "
    "signal_strength INTEGER, "  // dBm
    "bytes_received INTEGER, "   // since the sample before, as all counts
    "bytes_sent INTEGER, "
    "co_channel_interference_count INTEGER, "
    "adjacent_channel_interference_count INTEGER, "
    "is_vpn_connected INTEGER, "
    "has_network_access INTEGER, "
    "has_internet_access INTEGER, "
    "tcp_ipv4_current_connections INTEGER, "
    "tcp_ipv4_failed_connections INTEGER, "
    "tcp_ipv4_errors_received INTEGER, "
    "tcp_ipv6_failed_connections INTEGER, "
    "profile_name_hash BLOB, "
    "profile_authentication TEXT, "
    "profile_encryption TEXT";

}  // namespace zt::telemetry::host
