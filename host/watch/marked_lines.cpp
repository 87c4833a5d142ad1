#include "host/watch/marked_lines.h"

#include <algorithm>
#include <map>
#include <optional>
#include <string_view>
#include <utility>

namespace zt::telemetry::host {
namespace {

constexpr std::size_t kTitleIndent = 2;

std::size_t IndentOf(std::string_view line) {
  return std::min(line.find_first_not_of(' '), line.size());
}

std::string_view TextOf(std::string_view line, const LinePart& part) {
  return line.substr(part.begin, part.end - part.begin);
}

// What stands between at least two blanks.
std::vector<LinePart> CellsOf(std::string_view line) {
  std::vector<LinePart> cells;
  for (std::size_t begin = IndentOf(line); begin < line.size();) {
    const std::size_t end = std::min(line.find("  ", begin), line.size());
    cells.push_back({begin, end});
    begin = std::min(line.find_first_not_of(' ', end), line.size());
  }
  return cells;
}

// "SENT PcLogPerformanceSamplesAsCDM", without identity and time.
std::string RecordOf(std::string_view heading) {
  return std::string(heading.substr(0, heading.find("  ")));
}

struct Row {
  std::size_t line = 0;
  std::string name;  // its first cell, and how many before it have the same
};

// The rows of each section, which is named after its record and its title.
std::map<std::string, std::vector<Row>> RowsOf(const std::vector<std::string>& lines) {
  std::map<std::string, std::vector<Row>> sections;
  std::map<std::pair<std::string, std::string>, int> seen;
  std::string record;
  std::string section;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const std::vector<LinePart> cells = CellsOf(lines[i]);
    if (cells.empty()) continue;
    if (cells.front().begin < kTitleIndent) {
      section = record = RecordOf(lines[i]);
    } else if (cells.front().begin == kTitleIndent) {
      section = record;
      section.append("\n").append(lines[i]);
    } else {
      std::string name(TextOf(lines[i], cells.front()));
      const int alike = seen[{section, name}]++;
      name.append("\n").append(std::to_string(alike));
      sections[section].push_back({i, name});
    }
  }
  return sections;
}

std::vector<LinePart> ChangedCells(std::string_view line, std::string_view before) {
  const std::vector<LinePart> cells = CellsOf(line);
  const std::vector<LinePart> cells_before = CellsOf(before);
  std::vector<LinePart> changed;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    const auto is_it = [&](const LinePart& cell) { return TextOf(before, cell) == TextOf(line, cells[i]); };
    const bool same = cells.size() == cells_before.size()
                          ? is_it(cells_before[i])
                          : std::any_of(cells_before.begin(), cells_before.end(), is_it);
    if (!same) changed.push_back(cells[i]);
  }
  return changed;
}

// The row of `before` that row `place` of `now` was.
std::optional<std::size_t> RowBefore(const std::vector<Row>& now, std::size_t place, const std::vector<Row>& before) {
  const auto found =
      std::find_if(before.begin(), before.end(), [&](const Row& row) { return row.name == now[place].name; });
  if (found != before.end()) return found->line;
  if (now.size() == before.size()) return before[place].line;
  return std::nullopt;
}

}  // namespace

std::size_t MarkedLines::Changed() const {
  return static_cast<std::size_t>(
      std::count_if(lines.begin(), lines.end(), [](const MarkedLine& line) { return !line.changed.empty(); }));
}

MarkedLines MarkChanges(const std::vector<std::string>& now, const std::vector<std::string>& before) {
  MarkedLines marked;
  for (const std::string& line : now) marked.lines.push_back({line, {}});
  const auto sections = RowsOf(now);
  const auto sections_before = RowsOf(before);
  const std::vector<Row> none;
  for (const auto& [section, rows] : sections) {
    const auto found = sections_before.find(section);
    const std::vector<Row>& rows_before = found != sections_before.end() ? found->second : none;
    for (std::size_t i = 0; i < rows.size(); ++i) {
      MarkedLine& line = marked.lines[rows[i].line];
      const std::optional<std::size_t> was = RowBefore(rows, i, rows_before);
      line.changed = was.has_value() ? ChangedCells(line.text, before[*was]) : CellsOf(line.text);
    }
    marked.gone += rows_before.size() - std::min(rows_before.size(), rows.size());
  }
  for (const auto& [section, rows] : sections_before) {
    if (!sections.contains(section)) marked.gone += rows.size();
  }
  return marked;
}

}  // namespace zt::telemetry::host
