#include "store/summary_query.h"

namespace zt::telemetry::collector::performancesamples {

const char kSummaryQuery[] =
    R"(SELECT
    strftime('%Y-%m-%dT%H:00:00.000Z', substr(date_time, 1, 19)) AS hour_window,
    'thermal' AS source,
    NULL AS network_info,
    AVG(cpu_temp) AS cpu_temp_avg,
    AVG(ext_sensor_temp) AS ext_sensor_avg,
    AVG(loc_sensor_temp) AS loc_sensor_avg,
    AVG(fan1_current_tach_speed) AS fan1_current_tach_speed_avg,
    AVG(fan1_target_tach_speed) AS fan1_target_tach_speed_avg,
    AVG(fan1_speed_step) AS fan1_speed_step_avg,
    AVG(fan2_current_tach_speed) AS fan2_current_tach_speed_avg,
    AVG(fan2_target_tach_speed) AS fan2_target_tach_speed_avg,
    AVG(fan2_speed_step) AS fan2_speed_step_avg,
    COUNT(*) AS num_samples
FROM ThermalData
GROUP BY hour_window

UNION ALL

SELECT
    hour_window,
    'network' AS source,
    json_object(
        'has_internet_access', MIN(has_internet_access),
        'has_network_access', MIN(has_network_access),
        'is_vpn_connected', MIN(is_vpn_connected),
        'tcp_ipv4_stats_info', json_object(
            'current_connections', MAX(tcp_ipv4_current_connections),
            'failed_connections', SUM(tcp_ipv4_failed_connections),
            'errors_received', SUM(tcp_ipv4_errors_received)
        ),
        'tcp_ipv6_stats_info', json_object(
            'failed_connections', SUM(tcp_ipv6_failed_connections)
        ),
        'interfaces_info', json_group_array(
            json_object(
                'interface_device_id', interface_device_id,
                'network_trust_level', network_trust_level,
                'is_managed', is_managed,
                'channel', channel,
                'radio_type', radio_type,
                'speed_avg', speed_avg,
                'tx_avg', tx_avg,
                'rx_avg', rx_avg,
                'rssi_avg', rssi_avg,
                'bytes_received', bytes_received,
                'bytes_sent', bytes_sent,
                'co_channel_interference_count', co_channel_interference_count,
                'adjacent_channel_interference_count', adjacent_channel_interference_count,
                'w_lan_profiles', json(wlan_profiles)
            )
        ),
        'num_samples', SUM(num_samples)
    ) AS network_info,
    NULL AS cpu_temp_avg,
    NULL AS ext_sensor_avg,
    NULL AS loc_sensor_avg,
    NULL AS fan1_current_tach_speed_avg,
    NULL AS fan1_target_tach_speed_avg,
    NULL AS fan1_speed_step_avg,
    NULL AS fan2_current_tach_speed_avg,
    NULL AS fan2_target_tach_speed_avg,
    NULL AS fan2_speed_step_avg,
    NULL AS num_samples
FROM (
    SELECT
        strftime('%Y-%m-%dT%H:00:00.000Z', substr(date_time, 1, 19)) AS hour_window,
        interface_device_id,
        network_trust_level,
        is_managed,
        MAX(channel) AS channel,
        radio_type,
        AVG(nominal_speed) AS speed_avg,
        AVG(tx_rate) AS tx_avg,
        AVG(rx_rate) AS rx_avg,
        AVG(signal_strength) AS rssi_avg,
        SUM(bytes_received) AS bytes_received,
        SUM(bytes_sent) AS bytes_sent,
        SUM(co_channel_interference_count) AS co_channel_interference_count,
        SUM(adjacent_channel_interference_count) AS adjacent_channel_interference_count,
        MAX(is_vpn_connected) AS is_vpn_connected,
        MIN(has_network_access) AS has_network_access,
        MIN(has_internet_access) AS has_internet_access,
        MAX(tcp_ipv4_current_connections) AS tcp_ipv4_current_connections,
        SUM(tcp_ipv4_failed_connections) AS tcp_ipv4_failed_connections,
        SUM(tcp_ipv4_errors_received) AS tcp_ipv4_errors_received,
        SUM(tcp_ipv6_failed_connections) AS tcp_ipv6_failed_connections,
        (
            SELECT json_group_array(
                json_object(
                    'profile_name_hash', hex(profile_name_hash),
                    'profile_authentication', profile_authentication,
                    'profile_encryption', profile_encryption
                )
            )
            FROM (
                SELECT DISTINCT profile_name_hash, profile_authentication, profile_encryption
                FROM NetworkData np
                WHERE
                    strftime('%Y-%m-%dT%H:00:00.000Z', substr(np.date_time, 1, 19)) = strftime('%Y-%m-%dT%H:00:00.000Z', substr(NetworkData.date_time, 1, 19))
                    AND np.interface_device_id = NetworkData.interface_device_id
            )
        ) AS wlan_profiles,
        COUNT(*) AS num_samples
    FROM NetworkData
    GROUP BY hour_window, interface_device_id
) AS per_interface
GROUP BY hour_window
ORDER BY hour_window, source;)";

}  // namespace zt::telemetry::collector::performancesamples
