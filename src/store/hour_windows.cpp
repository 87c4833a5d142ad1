#include "store/hour_windows.h"

#include <limits>
#include <utility>

namespace zt::telemetry::collector::performancesamples {

void HourWindows::Add(const std::string& hour, std::int64_t row, std::int64_t rows_before) {
  Block block{hour, row, rows_before};
  // A late sample joins its hour's block and every block since.
  while (!blocks_.empty() && blocks_.back().last_hour >= hour) {
    Block& back = blocks_.back();
    if (back.last_hour > block.last_hour) block.last_hour = std::move(back.last_hour);
    block.first_row = back.first_row;
    block.rows_before = back.rows_before;
    blocks_.pop_back();
  }
  blocks_.push_back(std::move(block));
}

std::vector<RowRange> HourWindows::Ranges(std::int64_t rows) const {
  std::vector<RowRange> ranges;
  std::int64_t rows_before_range = 0;
  for (const Block& block : blocks_) {
    if (!ranges.empty() && block.rows_before - rows_before_range < rows) continue;
    if (!ranges.empty()) ranges.back().last = block.first_row - 1;
    ranges.push_back({block.first_row, std::numeric_limits<std::int64_t>::max()});
    rows_before_range = block.rows_before;
  }
  return ranges;
}

}  // namespace zt::telemetry::collector::performancesamples
