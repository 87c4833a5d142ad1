#include "platform/processes.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "platform/simulated/answers.h"
#include "platform/simulated/disturbed.h"
#include "simulation/calls.h"
#include "simulation/handed_out.h"
#include "simulation/machine.h"

namespace zt::telemetry::collector::performancesamples::platform {
namespace {

constexpr std::uint64_t kMostOf64Bits = std::numeric_limits<std::uint64_t>::max();

Disturbance Announce(const char* call) {
  return simulation::Announce(call, {Disturbance::kFails, Disturbance::kAbsurd});
}

const simulation::Process* Find(std::uint32_t id) {
  const auto& processes = simulation::CurrentMachine().processes;
  const auto found =
      std::find_if(processes.begin(), processes.end(), [id](const auto& process) { return process.id == id; });
  return found != processes.end() ? &*found : nullptr;
}

bool RefusesToOpen(const simulation::Process& process, ProcessAccess access) {
  return access == ProcessAccess::kReading ? process.open_for_reading.has_value() : process.open_for_query.has_value();
}

}  // namespace

// What was true of the process when it was opened.
struct Process::Handle {
  simulation::Process process;
  simulation::HandedOutThing counted{"process"};
};

Process::Process(std::unique_ptr<Handle> handle) : handle_(std::move(handle)) {}

Process::~Process() = default;
Process::Process(Process&&) noexcept = default;
Process& Process::operator=(Process&&) noexcept = default;

std::optional<Process> Process::Open(std::uint32_t id, ProcessAccess access) {
  const simulation::Process* const process = Find(id);
  if (simulation::Fails("OpenProcess")) return std::nullopt;
  if (process == nullptr || RefusesToOpen(*process, access)) return std::nullopt;
  return Process(std::make_unique<Handle>(Handle{*process}));
}

std::optional<ProcessTimes> Process::Times() const {
  const simulation::Process& process = handle_->process;
  const Disturbance met = Announce("GetProcessTimes");
  if (met == Disturbance::kAbsurd) return ProcessTimes{std::numeric_limits<std::int64_t>::max(), kMostOf64Bits, 1};
  if (met == Disturbance::kFails || process.times) return std::nullopt;
  return ProcessTimes{process.created_100ns, process.kernel_100ns, process.user_100ns};
}

std::optional<ProcessMemory> Process::Memory() const {
  const simulation::Process& process = handle_->process;
  const Disturbance met = Announce("GetProcessMemoryInfo");
  if (met == Disturbance::kAbsurd) return ProcessMemory{kMostOf64Bits, kMostOf64Bits};
  if (met == Disturbance::kFails || process.memory) return std::nullopt;
  return ProcessMemory{process.working_set_bytes, process.peak_working_set_bytes};
}

std::optional<std::uint32_t> Process::ExitCode() const {
  const Disturbance met = Announce("GetExitCodeProcess");
  if (met == Disturbance::kFails) return std::nullopt;
  return met == Disturbance::kAbsurd ? kAbsurdFigure : simulation::Given(handle_->process.exit_code);
}

std::uint32_t Process::PollEnd() const {
  const Disturbance met = Announce("WaitForSingleObject");
  if (met == Disturbance::kFails) return kWaitFailed;
  if (met == Disturbance::kAbsurd) return kAbsurdFigure - 1;
  return simulation::Given(handle_->process.wait).value_or(kWaitFailed);
}

std::optional<bool> Process::IsElevated() const {
  if (simulation::Fails("GetTokenInformation")) return std::nullopt;
  return handle_->process.token ? std::nullopt : simulation::Given(handle_->process.elevated);
}

}  // namespace zt::telemetry::collector::performancesamples::platform
