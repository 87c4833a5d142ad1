#include "fleet/forward/stop_signal.h"

#include <csignal>

namespace zt::telemetry::fleet {
namespace {

volatile std::sig_atomic_t came = 0;

void Note(int /*signal*/) {
  came = 1;
}

}  // namespace

StopSignal::StopSignal() {
  struct sigaction action {};
  action.sa_handler = Note;  // without SA_RESTART: what waits wakes up
  ::sigaction(SIGTERM, &action, nullptr);
  ::sigaction(SIGINT, &action, nullptr);
}

bool StopSignal::Came() {
  return came != 0;
}

}  // namespace zt::telemetry::fleet
