#include "tests/endurance/figures.h"

#include <algorithm>
#include <cstddef>
#include <iostream>
#include <utility>

namespace zt::endurance {
namespace {

std::string Line(const std::vector<std::string>& cells, const std::vector<std::size_t>& widths) {
  std::string line = "|";
  for (std::size_t i = 0; i < cells.size(); ++i) {
    line += " " + std::string(widths[i] - cells[i].size(), ' ') + cells[i] + " |";
  }
  return line + "\n";
}

}  // namespace

void FigureTable::Add(const std::string& moment, Snapshot snapshot) {
  rows_.push_back({moment, std::move(snapshot)});
}

std::string FigureTable::Text() const {
  if (rows_.empty()) return {};
  std::vector<std::vector<std::string>> lines = {{""}};
  for (const Figure& figure : rows_.front().snapshot) lines.front().push_back(figure.name);
  for (const Row& row : rows_) {
    lines.push_back({row.moment});
    for (const Figure& figure : row.snapshot) lines.back().push_back(std::to_string(figure.value));
  }
  std::vector<std::size_t> widths(lines.front().size());
  for (const auto& cells : lines) {
    for (std::size_t i = 0; i < cells.size(); ++i) widths[i] = std::max(widths[i], cells[i].size());
  }
  std::string text;
  for (const auto& cells : lines) text += Line(cells, widths);
  return text;
}

std::vector<std::string> FigureTable::Growth() const {
  std::vector<std::string> grown;
  if (rows_.empty()) return grown;
  const Snapshot& last = rows_.back().snapshot;
  for (std::size_t i = 0; i < last.size(); ++i) {
    const Figure& first = rows_.front().snapshot[i];
    const std::int64_t allowed = last[i].allowed_growth;
    if (allowed == kShownOnly || last[i].value - first.value <= allowed) continue;
    grown.push_back(std::string(first.name) + " grew from " + std::to_string(first.value) + " to " +
                    std::to_string(last[i].value));
  }
  return grown;
}

int Report(const FigureTable& table) {
  std::cout << table.Text();
  const std::vector<std::string> grown = table.Growth();
  for (const std::string& sentence : grown) std::cout << sentence << "\n";
  if (grown.empty()) std::cout << "nothing grew\n";
  return grown.empty() ? 0 : 1;
}

}  // namespace zt::endurance
