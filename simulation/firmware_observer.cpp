#include "simulation/firmware_observer.h"

#include <utility>

namespace zt::simulation {
namespace {

std::function<void()>& Observer() {
  static std::function<void()> observer;
  return observer;
}

}  // namespace

void ObserveFirmwareCommands(std::function<void()> observer) {
  Observer() = std::move(observer);
}

void AnnounceFirmwareCommand() {
  if (Observer()) Observer()();
}

}  // namespace zt::simulation
