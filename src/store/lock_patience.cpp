#include "store/lock_patience.h"

#include <algorithm>

namespace zt::telemetry::collector::performancesamples {
namespace {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;
using std::chrono::steady_clock;

constexpr milliseconds kStep(5);

}  // namespace

void LockPatience::GiveTo(sqlite3* database) {
  sqlite3_busy_handler(
      database, [](void* patience, int /*calls*/) { return static_cast<LockPatience*>(patience)->Wait() ? 1 : 0; },
      this);
}

bool LockPatience::Wait() {
  const auto step = std::min(kStep, std::chrono::ceil<milliseconds>(left_));
  if (step <= milliseconds::zero()) return false;
  const auto start = steady_clock::now();
  sqlite3_sleep(static_cast<int>(step.count()));
  // The system may sleep for longer than it was asked to.
  left_ -= std::max<nanoseconds>(step, steady_clock::now() - start);
  return true;
}

}  // namespace zt::telemetry::collector::performancesamples
