#include "known_drives.h"

#include "base/device_asking.h"
#include "base/time_limit.h"
#include "disk_limits.h"
#include "simulation/calls.h"
#include "simulation/machine.h"
#include "simulation/waiting.h"

namespace zt::shared::storage {
namespace {

constexpr std::size_t kAbsurdlyMany = 1'000;

using AllDisks = base::TimeLimitBy<simulation::WaitClock>;

base::ControlOutcome Wait(std::uint32_t /*code*/, std::span<const std::byte> /*input*/, std::span<std::byte> /*output*/,
                          std::chrono::milliseconds limit) {
  if (simulation::WaitFor("Disks", limit)) return {};
  simulation::WaitFor("Disks", base::kCancelLimit);
  return {base::kRequestTimedOut, 0};
}

// As many requests as reading a disk takes.
bool AnswersInTime(const AllDisks& all) {
  const base::ControlDevice disk = base::AskPatiently(Wait, kAnswerLimit, all);
  return disk(0, {}, {}).error == 0 && disk(0, {}, {}).error == 0;
}

}  // namespace

std::vector<KnownDrive> ReadKnownDrives() {
  using simulation::Disturbance;
  switch (simulation::Announce("storage library", {Disturbance::kThrows, Disturbance::kEmpty, Disturbance::kAbsurd,
                                                   Disturbance::kEndlessText})) {
    case Disturbance::kEmpty:
      return {};
    case Disturbance::kAbsurd:
      return std::vector<KnownDrive>(kAbsurdlyMany);
    case Disturbance::kEndlessText:
      return {{simulation::EndlessText(), simulation::EndlessText()}};
    default:
      break;
  }
  const AllDisks all(kAllDisksLimit);
  std::vector<KnownDrive> drives;
  for (const simulation::LibraryDrive& drive : simulation::CurrentMachine().storage_library) {
    if (AnswersInTime(all)) drives.push_back({drive.name, drive.wmi_serial});
  }
  return drives;
}

}  // namespace zt::shared::storage
