#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zt::endurance {

/// One figure of what is held at a moment.
struct Figure {
  const char* name = "";
  std::int64_t value = 0;
  /// By how much it may be larger at the end than at the beginning; `kShownOnly` for one that may be anything.
  std::int64_t allowed_growth = 0;
};

/// The growth of a figure that is only shown.
inline constexpr std::int64_t kShownOnly = INT64_MAX;

/// All figures of one moment, the same ones in the same order at each.
using Snapshot = std::vector<Figure>;

/// The figures of several moments, as a table of text.
class FigureTable {
 public:
  /// `moment`: for people ("after 100").
  void Add(const std::string& moment, Snapshot snapshot);

  /// A line for each moment, a column for each figure.
  std::string Text() const;

  /// A sentence for each figure that is larger at the last moment than at the first by more than it may be.
  std::vector<std::string> Growth() const;

 private:
  struct Row {
    std::string moment;
    Snapshot snapshot;
  };

  std::vector<Row> rows_;
};

/// Prints a table and what grew. Returns the exit status of a program: 0 where nothing did.
int Report(const FigureTable& table);

}  // namespace zt::endurance
