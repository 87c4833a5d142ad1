#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zt::telemetry::collector::performancesamples {

/// Rows of a table by their row numbers, both ends included.
struct RowRange {
  std::int64_t first = 1;
  std::int64_t last = 0;
};

/// Cuts a table into ranges of rows that hold whole hours: every hour of a range is later than all hours of the ranges
/// before it. Samples that come late, or in no order at all, only make the ranges larger.
class HourWindows {
 public:
  /// Tells that the rows from number `row` on, before which the table has `rows_before` rows, are of `hour` (empty: of
  /// no hour). Rows are told in the order of their numbers.
  void Add(const std::string& hour, std::int64_t row, std::int64_t rows_before);

  /// Ranges that cover the table, each of about `rows` rows or the fewest above it; none for an empty table.
  std::vector<RowRange> Ranges(std::int64_t rows) const;

 private:
  // Rows of whole hours: later ones than those of the block before, earlier ones than those of the next.
  struct Block {
    std::string last_hour;
    std::int64_t first_row;
    std::int64_t rows_before;
  };

  std::vector<Block> blocks_;
};

}  // namespace zt::telemetry::collector::performancesamples
