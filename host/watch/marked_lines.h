#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace zt::telemetry::host {

/// A part of a line, in bytes.
struct LinePart {
  std::size_t begin = 0;
  std::size_t end = 0;

  bool operator==(const LinePart&) const = default;
};

/// A line of the text view, and which of its cells are not as they were.
struct MarkedLine {
  std::string text;
  std::vector<LinePart> changed;
};

struct MarkedLines {
  std::vector<MarkedLine> lines;
  /// Rows that were there before and are no more.
  std::size_t gone = 0;

  /// Lines with a changed cell.
  std::size_t Changed() const;
};

/// Compares what the text view (`TextReport`) shows with what it has shown before. A row is the one that began alike in
/// the same section of the same kind of record, else, where the section has as many rows as before, the one in its
/// place; a row that was not there is changed as a whole. Headings, which hold the time, and titles are never changed.
MarkedLines MarkChanges(const std::vector<std::string>& now, const std::vector<std::string>& before);

}  // namespace zt::telemetry::host
