#include <sqlite3.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>

#include "host/seed/network_simulation.h"
#include "host/seed/sample_writer.h"
#include "host/seed/thermal_simulation.h"
#include "sample_script.h"
#include "seed_folder.h"
#include "store/sample_database.h"
#include "store/sqlite_handles.h"
#include "store/summary_query.h"
#include "support/temporary_folder.h"

namespace zt::fuzz {
namespace {

namespace host = telemetry::host;
namespace store = telemetry::collector::performancesamples;

constexpr std::chrono::sys_seconds kFirstSample = std::chrono::sys_days{std::chrono::year(2026) / 3 / 7};
constexpr int kHours = 30;
constexpr std::uint64_t kRandomSeed = 7;
constexpr std::uint32_t kInterfaces = 2;

void WriteSamples(const std::string& path) {
  host::SampleWriter writer(path);
  host::ThermalSimulation thermal(kRandomSeed);
  host::NetworkSimulation network(kRandomSeed, kInterfaces);
  for (int minute = 0; minute < kHours * 60; ++minute) {
    const auto time = kFirstSample + std::chrono::minutes(minute);
    writer.Add(thermal.Next(time));
    for (const host::NetworkSample& sample : network.Next(time)) writer.Add(sample);
  }
  writer.Commit();
}

void AddRows(const std::string& path, SeedFolder& seeds) {
  store::SummaryRowsBySource rows;
  store::QuerySampleSummaries(path, store::kSummaryQuery, &rows);
  for (const store::SummaryRow& row : rows["network"]) seeds.Add("summary_rows", row.at("network_info"));
  for (const store::SummaryRow& row : rows["thermal"]) {
    std::string lines;
    for (const auto& [name, text] : row) lines += name + " " + text + "\n";
    seeds.Add("thermal_rows", lines);
  }
}

template <typename Number>
void AppendNumber(std::string& script, Value kind, Number number) {
  script += static_cast<char>(kind);
  script.append(reinterpret_cast<const char*>(&number), sizeof number);
}

void AppendBytes(std::string& script, Value kind, const void* bytes, int size) {
  script += static_cast<char>(kind);
  script += static_cast<char>(size);
  if (size > 0) script.append(static_cast<const char*>(bytes), static_cast<std::size_t>(size));
}

void AppendValue(std::string& script, sqlite3_stmt* row, int column) {
  const int size = sqlite3_column_bytes(row, column);
  switch (sqlite3_column_type(row, column)) {
    case SQLITE_INTEGER: {
      const sqlite3_int64 number = sqlite3_column_int64(row, column);
      if (number == static_cast<std::int8_t>(number)) {
        AppendNumber(script, Value::kSmallInteger, static_cast<std::int8_t>(number));
      } else {
        AppendNumber(script, Value::kInteger, number);
      }
      break;
    }
    case SQLITE_FLOAT:
      AppendNumber(script, Value::kReal, sqlite3_column_double(row, column));
      break;
    case SQLITE_TEXT:
      AppendBytes(script, Value::kText, sqlite3_column_text(row, column), size);
      break;
    case SQLITE_BLOB:
      AppendBytes(script, Value::kBlob, sqlite3_column_blob(row, column), size);
      break;
    default:
      script += static_cast<char>(Value::kNull);
  }
}

// Rows of one table in the words of a script, every column of them.
void AppendRows(sqlite3* database, Table table, int first, int rows, int step, std::string& script) {
  const std::string text = std::string("SELECT * FROM ") + kTableNames[table] +
                           " WHERE id >= " + std::to_string(first) + " AND id % " + std::to_string(step) +
                           " = 0 LIMIT " + std::to_string(rows) + ";";
  const store::Statement samples = store::Prepare(database, text);
  while (sqlite3_step(samples.get()) == SQLITE_ROW) {
    const int columns = sqlite3_column_count(samples.get()) - 1;
    script += static_cast<char>(columns * kTables + table);
    for (int column = 0; column < columns; ++column) {
      script += static_cast<char>(column);
      AppendValue(script, samples.get(), column + 1);
    }
  }
}

std::string Begin(Shape thermal, Shape network, std::size_t chosen_types = 0) {
  std::string script(1, static_cast<char>(thermal));
  if (thermal == Shape::kChosenTypes) script.append(chosen_types, static_cast<char>(1));
  script += static_cast<char>(network);
  if (network == Shape::kChosenTypes) script.append(chosen_types, static_cast<char>(3));
  return script;
}

void AddDatabases(const std::string& path, SeedFolder& seeds) {
  sqlite3* handle = nullptr;
  sqlite3_open(path.c_str(), &handle);
  const store::Database database(handle);
  for (int hours = 1; hours <= 3; ++hours) {
    std::string script = Begin(Shape::kOrdinary, Shape::kOrdinary);
    AppendRows(handle, kThermal, hours * 60, 3 * hours, 29, script);
    AppendRows(handle, kNetwork, hours * 120, 3 * hours, 43, script);
    seeds.Add("database", script);
  }
  // A few samples in tables of every make, those in two hours that follow one another.
  for (int shape = 0; shape <= static_cast<int>(Shape::kOrdinary); ++shape) {
    for (const bool both : {false, true}) {
      const auto made = static_cast<Shape>(shape);
      std::string script = Begin(both ? made : Shape::kOrdinary, made, ColumnsOf(kNetwork).size());
      AppendRows(handle, kThermal, 58, 2, 5, script);
      AppendRows(handle, kNetwork, 115, 4, 5, script);
      seeds.Add("database", script);
    }
  }
}

}  // namespace

void AddSampleSeeds(SeedFolder& seeds) {
  const tests::TemporaryFolder folder;
  const std::string path = folder.File("ssm.db");
  WriteSamples(path);
  AddRows(path, seeds);
  AddDatabases(path, seeds);
}

}  // namespace zt::fuzz
