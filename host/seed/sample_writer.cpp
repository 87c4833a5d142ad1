#include "host/seed/sample_writer.h"

#include <array>
#include <variant>

#include "host/failure.h"
#include "host/files.h"
#include "host/program_environment.h"
#include "host/seed/sample_schema.h"
#include "host/utc_time.h"

namespace zt::telemetry::host {
namespace {

constexpr int kWriterPatienceMs = 5000;

// A column of a table, and the field of a sample that it holds.
template <typename Sample>
struct Column {
  const char* name;
  std::variant<std::chrono::sys_seconds Sample::*, std::int64_t Sample::*, double Sample::*, std::string Sample::*,
               Blob Sample::*>
      field;
};

const std::array kThermalFields = std::to_array<Column<ThermalSample>>({
    {"date_time", &ThermalSample::time},
    {"cpu_temp", &ThermalSample::cpu_temp},
    {"ext_sensor_temp", &ThermalSample::ext_sensor_temp},
    {"loc_sensor_temp", &ThermalSample::loc_sensor_temp},
    {"fan1_current_tach_speed", &ThermalSample::fan1_current_tach_speed},
    {"fan1_target_tach_speed", &ThermalSample::fan1_target_tach_speed},
    {"fan1_speed_step", &ThermalSample::fan1_speed_step},
    {"fan2_current_tach_speed", &ThermalSample::fan2_current_tach_speed},
    {"fan2_target_tach_speed", &ThermalSample::fan2_target_tach_speed},
    {"fan2_speed_step", &ThermalSample::fan2_speed_step},
});

const std::array kNetworkFields = std::to_array<Column<NetworkSample>>({
    {"date_time", &NetworkSample::time},
    {"interface_device_id", &NetworkSample::interface_device_id},
    {"network_trust_level", &NetworkSample::network_trust_level},
    {"is_managed", &NetworkSample::is_managed},
    {"channel", &NetworkSample::channel},
    {"radio_type", &NetworkSample::radio_type},
    {"nominal_speed", &NetworkSample::nominal_speed},
    {"tx_rate", &NetworkSample::tx_rate},
    {"rx_rate", &NetworkSample::rx_rate},
    {"signal_strength", &NetworkSample::signal_strength},
    {"bytes_received", &NetworkSample::bytes_received},
    {"bytes_sent", &NetworkSample::bytes_sent},
    {"co_channel_interference_count", &NetworkSample::co_channel_interference_count},
    {"adjacent_channel_interference_count", &NetworkSample::adjacent_channel_interference_count},
    {"is_vpn_connected", &NetworkSample::is_vpn_connected},
    {"has_network_access", &NetworkSample::has_network_access},
    {"has_internet_access", &NetworkSample::has_internet_access},
    {"tcp_ipv4_current_connections", &NetworkSample::tcp_ipv4_current_connections},
    {"tcp_ipv4_failed_connections", &NetworkSample::tcp_ipv4_failed_connections},
    {"tcp_ipv4_errors_received", &NetworkSample::tcp_ipv4_errors_received},
    {"tcp_ipv6_failed_connections", &NetworkSample::tcp_ipv6_failed_connections},
    {"profile_name_hash", &NetworkSample::profile_name_hash},
    {"profile_authentication", &NetworkSample::profile_authentication},
    {"profile_encryption", &NetworkSample::profile_encryption},
});

std::string CreateTable(const std::string& table, const std::string& columns) {
  return "CREATE TABLE IF NOT EXISTS " + table + " (" + columns + ")";
}

template <typename Columns>
std::string InsertInto(const std::string& table, const Columns& columns) {
  std::string names;
  std::string places;
  for (const auto& column : columns) {
    names += (names.empty() ? "" : ", ") + std::string(column.name);
    places += places.empty() ? "?" : ", ?";
  }
  return "INSERT INTO " + table + " (" + names + ") VALUES (" + places + ")";
}

// Binds one field of a sample. A bound text or blob is the sample's own until the statement has run, but for the time.
template <typename Sample>
struct Binder {
  sqlite3_stmt* statement;
  int index;
  const Sample& sample;

  int Text(const std::string& text, sqlite3_destructor_type lifetime) const {
    return sqlite3_bind_text(statement, index, text.data(), static_cast<int>(text.size()), lifetime);
  }
  int operator()(std::chrono::sys_seconds Sample::*field) const {
    return Text(FormatUtcTime(sample.*field), SQLITE_TRANSIENT);
  }
  int operator()(std::int64_t Sample::*field) const { return sqlite3_bind_int64(statement, index, sample.*field); }
  int operator()(double Sample::*field) const { return sqlite3_bind_double(statement, index, sample.*field); }
  int operator()(std::string Sample::*field) const { return Text(sample.*field, SQLITE_STATIC); }
  // An empty blob, unlike the null that its null address would bind.
  int operator()(Blob Sample::*field) const {
    const Blob& blob = sample.*field;
    if (blob.empty()) return sqlite3_bind_zeroblob(statement, index, 0);
    return sqlite3_bind_blob(statement, index, blob.data(), static_cast<int>(blob.size()), SQLITE_STATIC);
  }
};

}  // namespace

SampleWriter::SampleWriter(const std::filesystem::path& database) : file_(database), database_(Open()) {
  sqlite3_busy_timeout(database_.get(), kWriterPatienceMs);
  Execute("BEGIN IMMEDIATE");
  Execute(CreateTable(kThermalTable, kThermalColumns));
  Execute(CreateTable(kNetworkTable, kNetworkColumns));
  insert_thermal_ = Prepare(InsertInto(kThermalTable, kThermalFields));
  insert_network_ = Prepare(InsertInto(kNetworkTable, kNetworkFields));
}

void SampleWriter::Add(const ThermalSample& sample) {
  Insert(insert_thermal_.get(), kThermalFields, sample);
}

void SampleWriter::Add(const NetworkSample& sample) {
  Insert(insert_network_.get(), kNetworkFields, sample);
}

void SampleWriter::Commit() {
  if (sqlite3_exec(database_.get(), "COMMIT", nullptr, nullptr, nullptr) != SQLITE_OK) {
    throw Failure(kExitFailed, "cannot write the samples: " + Complaint());
  }
}

Database SampleWriter::Open() const {
  sqlite3* opened = nullptr;
  const int result = sqlite3_open(ToText(file_).c_str(), &opened);
  Database database(opened);
  if (result != SQLITE_OK) throw WrongUsage("cannot open " + PathText(file_) + ": " + sqlite3_errstr(result));
  return database;
}

Statement SampleWriter::Prepare(const std::string& sql) const {
  sqlite3_stmt* prepared = nullptr;
  const int result = sqlite3_prepare_v2(database_.get(), sql.c_str(), -1, &prepared, nullptr);
  Statement statement(prepared);
  if (result != SQLITE_OK) throw WrongUsage("cannot add samples: " + Complaint());
  return statement;
}

void SampleWriter::Execute(const std::string& sql) const {
  if (sqlite3_exec(database_.get(), sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
    throw WrongUsage("cannot add samples: " + Complaint());
  }
}

std::string SampleWriter::Complaint() const {
  return PathText(file_) + ": " + sqlite3_errmsg(database_.get());
}

template <typename Sample, typename Columns>
void SampleWriter::Insert(sqlite3_stmt* statement, const Columns& columns, const Sample& sample) const {
  int index = 1;
  int result = SQLITE_OK;
  for (const auto& column : columns) {
    if (result == SQLITE_OK) result = std::visit(Binder<Sample>{statement, index++, sample}, column.field);
  }
  if (result == SQLITE_OK) result = sqlite3_step(statement);
  if (result != SQLITE_DONE) throw Failure(kExitFailed, "cannot write a sample: " + Complaint());
  sqlite3_reset(statement);
}

}  // namespace zt::telemetry::host
