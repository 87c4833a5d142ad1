#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "support/sample_store_fixture.h"

// Tables of samples as hosts may define them, made from the usual definition.
namespace zt::telemetry::collector::performancesamples {

inline std::string Replaced(std::string text, const std::string& from, const std::string& to) {
  const std::size_t at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  return text.replace(at, from.size(), to);
}

inline std::vector<std::string> NamesOf(const std::string& columns) {
  std::vector<std::string> names;
  for (std::size_t start = 0; start < columns.size();) {
    const std::size_t end = std::min(columns.find(", ", start), columns.size());
    const std::string column = columns.substr(start, end - start);
    names.push_back(column.substr(0, column.find(' ')));
    start = end + 2;
  }
  return names;
}

/// The same columns, each of `type` and without anything else that is said of it; without a type where it is empty.
inline std::string WithTypes(const std::string& columns, const std::string& type) {
  std::string result;
  for (const std::string& name : NamesOf(columns)) {
    result += (result.empty() ? "" : ", ") + name + (type.empty() ? "" : " " + type);
  }
  return result;
}

inline std::string WithoutTypes(const std::string& columns) {
  return WithTypes(columns, "");
}

inline void CreateWithNetworkColumns(tests::SampleStore& store, const std::string& columns, const char* options = "") {
  store.Execute(std::string("CREATE TABLE ThermalData(") + tests::kThermalColumns + ")");
  store.Execute("CREATE TABLE NetworkData(" + columns + ")" + options);
}

inline const std::string kColumns = tests::kNetworkColumns;
inline const std::string kInterface = "interface_device_id TEXT";
inline const std::string kKey = "id INTEGER PRIMARY KEY AUTOINCREMENT, ";

inline void CreateWithInterface(tests::SampleStore& store, const std::string& type) {
  CreateWithNetworkColumns(store, Replaced(kColumns, kInterface, "interface_device_id " + type));
}

}  // namespace zt::telemetry::collector::performancesamples
