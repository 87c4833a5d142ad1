#include "store/work_limit.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

// Between two looks at the clock: well under a millisecond of work, and so many looks cost nothing.
constexpr int kInstructionsBetweenLooks = 10'000;

}  // namespace

void WorkLimit::GiveTo(sqlite3* database) {
  sqlite3_progress_handler(
      database, kInstructionsBetweenLooks,
      [](void* limit) { return static_cast<const WorkLimit*>(limit)->left_.IsOver() ? 1 : 0; }, this);
}

}  // namespace zt::telemetry::collector::performancesamples
