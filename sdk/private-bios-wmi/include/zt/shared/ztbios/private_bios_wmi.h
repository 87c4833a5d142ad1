#pragma once

#include <cstdint>

#include "zt/zt_private_bios_wmi_export.h"

namespace zt::shared::ztbios {

/// The maker's private firmware interface, reached through WMI. Cheap to construct: the firmware is contacted by each
/// command.
class ZT_PRIVATE_BIOS_WMI_EXPORT PrivateBiosWmi {
 public:
  PrivateBiosWmi();
  ~PrivateBiosWmi();

  /// Runs one firmware command. `input`: `input_size` bytes of request. `output`: buffer of `output_size` bytes; what
  /// the firmware answers is copied into it, cut to its size, and the rest of it becomes zero. `return_code`: the
  /// firmware's own code.
  ///
  /// Returns 0 when the firmware answered, else the status of the call that failed (an HRESULT); the buffers are then
  /// left as they were. A machine without the interface fails.
  std::int32_t ExecuteCommand(std::uint32_t command, std::uint32_t command_type, std::uint32_t input_size,
                              const std::uint8_t* input, std::uint32_t output_size, std::uint8_t* output,
                              std::uint32_t* return_code);
};

}  // namespace zt::shared::ztbios
