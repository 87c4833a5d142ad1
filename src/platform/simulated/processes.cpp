#include "platform/processes.h"

#include <algorithm>
#include <utility>

#include "platform/simulated/answers.h"
#include "simulation/machine.h"

namespace zt::telemetry::collector::performancesamples::platform {
namespace {

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
};

Process::Process(std::unique_ptr<Handle> handle) : handle_(std::move(handle)) {}

Process::~Process() = default;
Process::Process(Process&&) noexcept = default;
Process& Process::operator=(Process&&) noexcept = default;

std::optional<Process> Process::Open(std::uint32_t id, ProcessAccess access) {
  const simulation::Process* const process = Find(id);
  if (process == nullptr || RefusesToOpen(*process, access)) return std::nullopt;
  return Process(std::make_unique<Handle>(Handle{*process}));
}

std::optional<ProcessTimes> Process::Times() const {
  const simulation::Process& process = handle_->process;
  if (process.times) return std::nullopt;
  return ProcessTimes{process.created_100ns, process.kernel_100ns, process.user_100ns};
}

std::optional<ProcessMemory> Process::Memory() const {
  const simulation::Process& process = handle_->process;
  if (process.memory) return std::nullopt;
  return ProcessMemory{process.working_set_bytes, process.peak_working_set_bytes};
}

std::optional<std::uint32_t> Process::ExitCode() const {
  return simulation::Given(handle_->process.exit_code);
}

std::uint32_t Process::PollEnd() const {
  return simulation::Given(handle_->process.wait).value_or(kWaitFailed);
}

std::optional<bool> Process::IsElevated() const {
  return handle_->process.token ? std::nullopt : simulation::Given(handle_->process.elevated);
}

}  // namespace zt::telemetry::collector::performancesamples::platform
