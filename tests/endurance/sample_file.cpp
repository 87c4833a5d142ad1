#include "tests/endurance/sample_file.h"

#include <cstdio>
#include <stdexcept>

#include "host/seed/sample_schema.h"

namespace zt::endurance {
namespace {

using telemetry::host::kNetworkColumns;
using telemetry::host::kThermalColumns;

constexpr std::int64_t kHoursPerDay = 24;
constexpr int kPatienceMs = 10'000;

}  // namespace

std::string SampleTime(std::int64_t minute) {
  char text[64];
  const std::int64_t hour = minute / kMinutesPerHour;
  std::snprintf(text, sizeof text, "2026-03-%02dT%02d:%02d:00.000Z", static_cast<int>(7 + hour / kHoursPerDay),
                static_cast<int>(hour % kHoursPerDay), static_cast<int>(minute % kMinutesPerHour));
  return text;
}

SampleFile::SampleFile(const std::string& path, const std::string& journal_mode) {
  sqlite3* opened = nullptr;
  const int outcome = sqlite3_open(path.c_str(), &opened);
  database_.reset(opened);
  Check(outcome, path);
  sqlite3_busy_timeout(opened, kPatienceMs);
  Execute("PRAGMA journal_mode=" + journal_mode);
  // The kernel keeps what is written: no machine loses its power here.
  Execute("PRAGMA synchronous=OFF");
  Execute(std::string("CREATE TABLE IF NOT EXISTS ThermalData(") + kThermalColumns + ")");
  Execute(std::string("CREATE TABLE IF NOT EXISTS NetworkData(") + kNetworkColumns + ")");
}

void SampleFile::Check(int outcome, const std::string& sql) const {
  if (outcome != SQLITE_OK) throw std::runtime_error(std::string(sqlite3_errmsg(database_.get())) + ": " + sql);
}

void SampleFile::Execute(const std::string& sql) {
  Check(sqlite3_exec(database_.get(), sql.c_str(), nullptr, nullptr, nullptr), sql);
}

void SampleFile::AddMinute(std::int64_t minute) {
  const std::string time = SampleTime(minute);
  const std::int64_t of_hour = minute % kMinutesPerHour;
  char profile[8];
  std::snprintf(profile, sizeof profile, "%02X", static_cast<int>(of_hour));
  Execute(
      "INSERT INTO ThermalData(date_time, cpu_temp, ext_sensor_temp, loc_sensor_temp, fan1_current_tach_speed, "
      "fan1_target_tach_speed, fan1_speed_step, fan2_current_tach_speed, fan2_target_tach_speed, fan2_speed_step) "
      "VALUES('" +
      time + "', 50, 40, 30, 1000, 1100, 20, 2000, 2200, 25)");
  // A record holds 32 profiles of an interface: two halves of an hour, an interface each.
  Execute(
      "INSERT INTO NetworkData(date_time, interface_device_id, network_trust_level, is_managed, channel, "
      "radio_type, nominal_speed, tx_rate, rx_rate, signal_strength, bytes_received, bytes_sent, "
      "co_channel_interference_count, adjacent_channel_interference_count, is_vpn_connected, has_network_access, "
      "has_internet_access, tcp_ipv4_current_connections, tcp_ipv4_failed_connections, tcp_ipv4_errors_received, "
      "tcp_ipv6_failed_connections, profile_name_hash, profile_authentication, profile_encryption) VALUES('" +
      time + "', '{" + std::to_string(of_hour / (kMinutesPerHour / 2)) +
      "}', 'Private', 1, 36, '802.11ax', 1200, 1100, 1000, -60, 3000, 700, 3, 2, 0, 1, 1, 40, 4, 1, 6, x'" + profile +
      "', 'WPA2PSK', 'AES')");
}

std::vector<std::int64_t> SampleFile::Numbers(const std::string& sql) {
  sqlite3_stmt* prepared = nullptr;
  const int outcome = sqlite3_prepare_v2(database_.get(), sql.c_str(), -1, &prepared, nullptr);
  const telemetry::host::Statement statement(prepared);
  Check(outcome, sql);
  std::vector<std::int64_t> numbers;
  int step = SQLITE_ROW;
  while ((step = sqlite3_step(prepared)) == SQLITE_ROW) numbers.push_back(sqlite3_column_int64(prepared, 0));
  if (step != SQLITE_DONE) Check(step, sql);
  return numbers;
}

}  // namespace zt::endurance
