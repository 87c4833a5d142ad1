#include "zt/shared/ztbios/private_bios_wmi.h"

#include <algorithm>
#include <cstddef>
#include <span>

#include "simulation/bios_clients.h"
#include "simulation/calls.h"
#include "simulation/firmware_observer.h"
#include "simulation/machine.h"

namespace zt::shared::ztbios {

// The machine's facts are the interface.
class FirmwareInterface {};

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

PrivateBiosWmi::PrivateBiosWmi() {
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
