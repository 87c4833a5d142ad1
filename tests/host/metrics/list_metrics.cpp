// Writes the metrics as they are built over the table of what is agreed, unless an agreed one would be lost by it.
#include <algorithm>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "tests/host/metrics/metric_rows.h"

namespace {

bool IsRow(const std::string& line) {
  return line.starts_with("| `zt_");
}

std::vector<std::string> LinesOf(const char* path) {
  std::vector<std::string> lines;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  return lines;
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) {
    std::cerr << "usage: list_metrics METRICS_PAGE\n";
    return 2;
  }
  const std::vector<std::string> page = LinesOf(arguments[1]);
  const std::vector<std::string> rows = zt::telemetry::host::MetricRows();
  for (const std::string& line : page) {
    if (!IsRow(line) || std::find(rows.begin(), rows.end(), line) != rows.end()) continue;
    std::cerr << "Agreed, and no longer there: " << line << "\nDashboards and alerts ask for it by its name.\n";
    return 1;
  }
  std::ofstream file(arguments[1], std::ios::trunc);
  for (const std::string& line : page) {
    if (!IsRow(line)) file << line << '\n';
  }
  for (const std::string& row : rows) file << row << '\n';
  if (!file.flush()) {
    std::cerr << arguments[1] << " cannot be written\n";
    return 1;
  }
  return 0;
}
