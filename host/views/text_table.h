#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace zt::telemetry::host {

/// A cell: text to the left, figures to the right of its column.
struct Cell {
  std::string text;
  bool to_the_right = false;
};

/// Characters in a line of the program's tables.
inline constexpr std::size_t kTextWidth = 120;

/// Rows of cells under headings, each line indented by `indent` blanks and ended by a line break; empty headings give
/// no heading line. Columns that do not fit into `width` characters follow in further tables, which repeat the first
/// column.
std::string TableText(const std::vector<std::string>& headings, const std::vector<std::vector<Cell>>& rows,
                      std::size_t indent, std::size_t width);

/// Characters of a UTF-8 text.
std::size_t WidthOf(const std::string& text);

/// `text` on one line of a terminal: control characters become blanks, what is no UTF-8 U+FFFD.
std::string Printable(const std::string& text);

}  // namespace zt::telemetry::host
