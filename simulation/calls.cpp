#include "simulation/calls.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace zt::simulation {
namespace {

struct Watch {
  CallWatcher watcher;
  std::size_t calls = 0;
};

Watch& CurrentWatch() {
  static Watch watch;
  return watch;
}

Disturbance Ask(std::string name, std::initializer_list<Disturbance> kinds) {
  Watch& watch = CurrentWatch();
  const Call call{++watch.calls, std::move(name), kinds};
  const Disturbance chosen = watch.watcher(call);
  if (std::find(kinds.begin(), kinds.end(), chosen) == kinds.end()) return Disturbance::kNone;
  if (chosen != Disturbance::kThrows) return chosen;
  throw std::system_error(std::make_error_code(std::errc::io_error), "the client gave up");
}

}  // namespace

void WatchCalls(CallWatcher watcher) {
  CurrentWatch() = {std::move(watcher), 0};
}

Disturbance Announce(std::string_view name, std::initializer_list<Disturbance> kinds) {
  return CurrentWatch().watcher ? Ask(std::string(name), kinds) : Disturbance::kNone;
}

Disturbance Announce(std::string_view name, std::string_view of, std::initializer_list<Disturbance> kinds) {
  if (!CurrentWatch().watcher) return Disturbance::kNone;
  return Ask(std::string(name) + " of " + std::string(of), kinds);
}

const std::string& EndlessText() {
  constexpr std::size_t kLength = 1 << 18;
  static const std::string text(kLength, 'x');
  return text;
}

}  // namespace zt::simulation
