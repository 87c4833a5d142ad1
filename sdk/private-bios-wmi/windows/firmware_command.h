#pragma once

#include <wbemidl.h>

#include <chrono>
#include <cstdint>
#include <span>
#include <vector>

#include "firmware_limits.h"

namespace zt::shared::ztbios {

/// One command to the firmware.
struct FirmwareCommand {
  std::uint32_t command = 0;
  std::uint32_t command_type = 0;
  std::span<const std::uint8_t> input;
  std::uint32_t output_size = 0;  // bytes that the caller has room for
};

/// What the firmware answered: its own code, and as many bytes as it gave.
struct FirmwareReply {
  std::uint32_t return_code = 0;
  std::vector<std::uint8_t> output;
};

/// Runs `command` through the interface's WMI class in the connected namespace. Returns S_OK when the firmware
/// answered, else the status of the call that failed; `reply` is then left as it was. What takes longer than `limit`
/// ends with `base::kTimedOut`.
HRESULT RunFirmwareCommand(IWbemServices& services, const FirmwareCommand& command, FirmwareReply& reply,
                           std::chrono::milliseconds limit = kCommandLimit);

}  // namespace zt::shared::ztbios
