#include "simulation/waiting.h"

#include <algorithm>
#include <utility>

namespace zt::simulation {
namespace {

struct Waiting {
  Slowness slowness;
  WaitClock::time_point now;
};

Waiting& Current() {
  static Waiting waiting;
  return waiting;
}

}  // namespace

WaitClock::time_point WaitClock::now() {
  return Current().now;
}

void BeSlow(Slowness slowness) {
  Current().slowness = std::move(slowness);
}

bool WaitFor(const char* what, std::chrono::milliseconds limit) {
  Waiting& waiting = Current();
  if (!waiting.slowness) return true;
  const std::chrono::milliseconds taken = waiting.slowness(what, limit);
  waiting.now += std::min(taken, limit);
  return taken <= limit;
}

}  // namespace zt::simulation
