#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <map>
#include <memory>
#include <string>
#include <utility>

#include "host/seed/sample_schema.h"

namespace zt::tests {

/// Column values as SQL literals, by column name: {"cpu_temp", "51.5"}, {"date_time", "'2026-03-07T12:00:30.000Z'"}.
using Literals = std::map<std::string, std::string>;

using telemetry::host::kNetworkColumns;
using telemetry::host::kThermalColumns;

/// A sample database as the host keeps it, open as a writer. What fails in here fails the test.
class SampleStore {
 public:
  /// Opens `path` (UTF-8), creating the file without tables where there is none.
  explicit SampleStore(const std::string& path) : path_(path) {
    sqlite3* handle = nullptr;
    const int outcome = sqlite3_open(path.c_str(), &handle);
    database_.reset(handle);
    EXPECT_EQ(outcome, SQLITE_OK) << path;
  }

  /// A database with both tables, empty.
  static SampleStore WithTables(const std::string& path) {
    SampleStore store(path);
    store.CreateTables();
    return store;
  }

  void CreateTables(const std::string& thermal_columns = kThermalColumns,
                    const std::string& network_columns = kNetworkColumns) {
    Execute("CREATE TABLE ThermalData(" + thermal_columns + ")");
    Execute("CREATE TABLE NetworkData(" + network_columns + ")");
  }

  void Execute(const std::string& sql) {
    EXPECT_EQ(sqlite3_exec(database_.get(), sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
        << sqlite3_errmsg(database_.get()) << ": " << sql;
  }

  /// One thermal sample: 50, 40 and 30 degrees, fan 1 at 1000 of 1100 with step 20, fan 2 at 2000 of 2200 with step 25,
  /// apart from `values`.
  void AddThermal(const std::string& date_time, Literals values = {}) {
    values.merge(Literals{{"date_time", "'" + date_time + "'"},
                          {"cpu_temp", "50"},
                          {"ext_sensor_temp", "40"},
                          {"loc_sensor_temp", "30"},
                          {"fan1_current_tach_speed", "1000"},
                          {"fan1_target_tach_speed", "1100"},
                          {"fan1_speed_step", "20"},
                          {"fan2_current_tach_speed", "2000"},
                          {"fan2_target_tach_speed", "2200"},
                          {"fan2_speed_step", "25"}});
    Insert("ThermalData", values);
  }

  /// One network sample of a managed interface "{A}" on channel 36 with the profile AB12, apart from `values`.
  void AddNetwork(const std::string& date_time, Literals values = {}) {
    values.merge(Literals{{"date_time", "'" + date_time + "'"},
                          {"interface_device_id", "'{A}'"},
                          {"network_trust_level", "'Private'"},
                          {"is_managed", "1"},
                          {"channel", "36"},
                          {"radio_type", "'802.11ax'"},
                          {"nominal_speed", "1200"},
                          {"tx_rate", "1100"},
                          {"rx_rate", "1000"},
                          {"signal_strength", "-60"},
                          {"bytes_received", "3000"},
                          {"bytes_sent", "700"},
                          {"co_channel_interference_count", "3"},
                          {"adjacent_channel_interference_count", "2"},
                          {"is_vpn_connected", "0"},
                          {"has_network_access", "1"},
                          {"has_internet_access", "1"},
                          {"tcp_ipv4_current_connections", "40"},
                          {"tcp_ipv4_failed_connections", "4"},
                          {"tcp_ipv4_errors_received", "1"},
                          {"tcp_ipv6_failed_connections", "6"},
                          {"profile_name_hash", "x'AB12'"},
                          {"profile_authentication", "'WPA2PSK'"},
                          {"profile_encryption", "'AES'"}});
    Insert("NetworkData", values);
  }

  void Insert(const std::string& table, const Literals& values) {
    std::string columns;
    std::string literals;
    for (const auto& [column, literal] : values) {
      columns += (columns.empty() ? "" : ", ") + column;
      literals += (literals.empty() ? "" : ", ") + literal;
    }
    Execute("INSERT INTO " + table + "(" + columns + ") VALUES(" + literals + ")");
  }

  /// First column of the first row, empty for NULL and for no row.
  std::string Value(const std::string& sql) {
    sqlite3_stmt* handle = nullptr;
    EXPECT_EQ(sqlite3_prepare_v2(database_.get(), sql.c_str(), -1, &handle, nullptr), SQLITE_OK)
        << sqlite3_errmsg(database_.get()) << ": " << sql;
    const std::unique_ptr<sqlite3_stmt, Finalizer> statement(handle);
    if (sqlite3_step(handle) != SQLITE_ROW) return {};
    const unsigned char* text = sqlite3_column_text(handle, 0);
    return text == nullptr ? "" : reinterpret_cast<const char*>(text);
  }

  /// Rows of a table.
  int Count(const std::string& table) { return std::stoi(Value("SELECT COUNT(*) FROM " + table)); }

  const std::string& Path() const { return path_; }
  sqlite3* Handle() const { return database_.get(); }
  /// Lets go of the file.
  void Close() { database_.reset(); }

 private:
  struct Closer {
    void operator()(sqlite3* database) const { sqlite3_close(database); }
  };
  struct Finalizer {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };

  std::string path_;
  std::unique_ptr<sqlite3, Closer> database_;
};

}  // namespace zt::tests
