#include "zt/shared/ztbios/private_bios_wmi.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <optional>
#include <span>
#include <utility>

#include "base/time_budget.h"
#include "base/time_limit.h"
#include "firmware_limits.h"
#include "simulation/bios_clients.h"
#include "simulation/calls.h"
#include "simulation/firmware_observer.h"
#include "simulation/machine.h"
#include "simulation/waiting.h"

namespace zt::shared::ztbios {

// The machine's facts are the interface; this is how long it takes.
class FirmwareInterface {
 public:
  // What keeps a command from being answered: a failure to connect, which is tried once, and no time left.
  std::int32_t Wait() {
    if (!connected_) connected_ = simulation::WaitFor("Connecting to WMI", base::kConnectionLimit);
    if (!*connected_) return kServerUnavailable;
    if (patience_.IsSpent()) return base::kTimedOut;
    const Patience::Spending spending(patience_);
    const base::TimeLimitBy<Clock> command(std::min(kCommandLimit, patience_.Left()));
    const bool is_found = FindInstance(command);
    return is_found && Call(command) && Call(command) ? 0 : base::kTimedOut;
  }

 private:
  using Clock = simulation::WaitClock;
  using Patience = base::TimeBudgetBy<Clock>;

  static constexpr auto kServerUnavailable = static_cast<std::int32_t>(0x800706BA);

  static bool WaitFor(std::chrono::milliseconds limit) {
    return simulation::WaitFor("Commands to the firmware", limit);
  }

  // The instance comes, and then the end of all instances.
  static bool FindInstance(const base::TimeLimitBy<Clock>& command) {
    base::WaitLimits limits = kInstanceLimits;
    limits.whole = std::min(limits.whole, command.Left());
    bool has_come = false;
    const auto ask = [&has_come](std::chrono::milliseconds wait) -> std::optional<std::int32_t> {
      if (!WaitFor(wait)) return base::kTimedOut;
      return std::exchange(has_come, true) ? std::optional(0) : std::nullopt;
    };
    return base::GatherWithin<Clock>(limits, ask) == 0;
  }

  static bool Call(const base::TimeLimitBy<Clock>& command) { return WaitFor(std::min(kCallLimit, command.Left())); }

  std::optional<bool> connected_;
  Patience patience_{kAllCommandsLimit};
};

namespace {

using simulation::Disturbance;

constexpr std::int32_t kNoSuchCommand = 1;
constexpr auto kRefused = static_cast<std::int32_t>(0x80041003);  // WBEM_E_ACCESS_DENIED
constexpr std::uint32_t kFirmwareRefused = 4;

bool Answers(const simulation::BiosReply& reply, std::uint32_t command, std::uint32_t command_type,
             std::span<const std::uint8_t> input) {
  return reply.command == command && reply.command_type == command_type &&
         std::equal(reply.input.begin(), reply.input.end(), input.begin(), input.end());
}

void CopyPadded(std::span<const std::uint8_t> from, std::span<std::uint8_t> to) {
  const std::size_t copied = std::min(from.size(), to.size());
  std::copy_n(from.begin(), copied, to.begin());
  std::fill(to.begin() + static_cast<std::ptrdiff_t>(copied), to.end(), std::uint8_t{0});
}

}  // namespace

PrivateBiosWmi::PrivateBiosWmi() : interface_(std::make_unique<FirmwareInterface>()) {
  simulation::Announce("PrivateBiosWmi", {Disturbance::kThrows});
  ++simulation::CurrentBiosClients().made;
  ++simulation::CurrentBiosClients().alive;
}

PrivateBiosWmi::~PrivateBiosWmi() {
  --simulation::CurrentBiosClients().alive;
}

std::int32_t PrivateBiosWmi::ExecuteCommand(std::uint32_t command, std::uint32_t command_type, std::uint32_t input_size,
                                            const std::uint8_t* input, std::uint32_t output_size, std::uint8_t* output,
                                            std::uint32_t* return_code) {
  simulation::AnnounceFirmwareCommand();
  const std::span<std::uint8_t> room(output, output_size);
  const Disturbance met = simulation::Announce(
      "firmware command",
      {Disturbance::kFails, Disturbance::kThrows, Disturbance::kNull, Disturbance::kEmpty, Disturbance::kAbsurd});
  if (met == Disturbance::kFails) return kRefused;
  if (met != Disturbance::kNone) {
    std::fill(room.begin(), room.end(), met == Disturbance::kAbsurd ? std::uint8_t{0xFF} : std::uint8_t{0});
    *return_code = met == Disturbance::kNull ? kFirmwareRefused : 0;
    return 0;
  }
  const std::int32_t waited = interface_->Wait();
  if (waited != 0) return waited;
  const std::span<const std::uint8_t> request(input, input_size);
  const auto& replies = simulation::CurrentMachine().private_bios;
  const auto reply = std::find_if(replies.begin(), replies.end(), [&](const simulation::BiosReply& candidate) {
    return Answers(candidate, command, command_type, request);
  });
  if (reply == replies.end()) return kNoSuchCommand;
  if (reply->result != 0) return reply->result;
  CopyPadded(reply->output, room);
  *return_code = reply->return_code;
  return 0;
}

}  // namespace zt::shared::ztbios
