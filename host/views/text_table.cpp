#include "host/views/text_table.h"

#include <utf8.h>

#include <algorithm>
#include <iterator>

namespace zt::telemetry::host {
namespace {

constexpr std::size_t kGap = 2;  // between columns

std::string Blanks(std::size_t count) {
  return std::string(count, ' ');
}

std::vector<std::size_t> ColumnWidths(const std::vector<std::string>& headings,
                                      const std::vector<std::vector<Cell>>& rows) {
  std::vector<std::size_t> widths(headings.size());
  std::transform(headings.begin(), headings.end(), widths.begin(), WidthOf);
  for (const auto& row : rows) {
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], WidthOf(row[i].text));
  }
  return widths;
}

// The columns of each table, by their numbers: as many as fit, the first one always among them.
std::vector<std::vector<std::size_t>> Tables(const std::vector<std::size_t>& widths, std::size_t width) {
  std::vector<std::vector<std::size_t>> tables = {{0}};
  std::size_t used = widths[0];
  for (std::size_t column = 1; column < widths.size(); ++column) {
    if (used + kGap + widths[column] > width && tables.back().size() > 1) {
      tables.push_back({0});
      used = widths[0];
    }
    tables.back().push_back(column);
    used += kGap + widths[column];
  }
  return tables;
}

std::string Line(const std::vector<Cell>& cells, const std::vector<std::size_t>& columns,
                 const std::vector<std::size_t>& widths, std::size_t indent) {
  std::string line = Blanks(indent);
  for (const std::size_t column : columns) {
    const std::string& text = cells[column].text;
    const std::string fill = Blanks(widths[column] - WidthOf(text));
    if (column != columns.front()) line += Blanks(kGap);
    line += cells[column].to_the_right ? fill + text : text + fill;
  }
  while (line.ends_with(' ')) line.pop_back();
  return line + "\n";
}

}  // namespace

std::string TableText(const std::vector<std::string>& headings, const std::vector<std::vector<Cell>>& rows,
                      std::size_t indent, std::size_t width) {
  if (headings.empty() || rows.empty()) return {};
  std::vector<Cell> heading_cells;
  bool headed = false;
  for (std::size_t i = 0; i < headings.size(); ++i) {
    heading_cells.push_back({headings[i], rows.front()[i].to_the_right});
    headed = headed || !headings[i].empty();
  }
  const std::vector<std::size_t> widths = ColumnWidths(headings, rows);
  std::string text;
  for (const std::vector<std::size_t>& columns : Tables(widths, width - std::min(indent, width))) {
    if (headed) text += Line(heading_cells, columns, widths, indent);
    for (const auto& row : rows) text += Line(row, columns, widths, indent);
  }
  return text;
}

std::size_t WidthOf(const std::string& text) {
  return static_cast<std::size_t>(utf8::unchecked::distance(text.begin(), text.end()));
}

std::string Printable(const std::string& text) {
  constexpr char32_t kFirstPrintable = 0x20;
  constexpr char32_t kDelete = 0x7F;
  constexpr char32_t kFirstBehindControl = 0xA0;
  std::string valid;
  utf8::replace_invalid(text.begin(), text.end(), std::back_inserter(valid));
  std::string result;
  for (auto at = valid.begin(); at != valid.end();) {
    const auto begin = at;
    const char32_t character = utf8::unchecked::next(at);
    if (character < kFirstPrintable || (character >= kDelete && character < kFirstBehindControl)) {
      result += ' ';
    } else {
      result.append(begin, at);
    }
  }
  return result;
}

}  // namespace zt::telemetry::host
