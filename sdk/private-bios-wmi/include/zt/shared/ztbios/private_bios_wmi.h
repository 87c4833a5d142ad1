#pragma once

#include <cstdint>
#include <memory>

#include "zt/zt_private_bios_wmi_export.h"

namespace zt::shared::ztbios {

class FirmwareInterface;

/// The maker's private firmware interface, reached through WMI. Cheap to construct: the first command connects to WMI.
/// A failure to connect, which may take the system two minutes, is the result of that command and of every other one. A
/// command takes 25 seconds at most, and all of one object a minute together.
/// For one thread from the first command on; COM is joined there as the thread has it, until this object goes.
class ZT_PRIVATE_BIOS_WMI_EXPORT PrivateBiosWmi {
 public:
  PrivateBiosWmi();
  ~PrivateBiosWmi();
  PrivateBiosWmi(const PrivateBiosWmi&) = delete;
  PrivateBiosWmi& operator=(const PrivateBiosWmi&) = delete;

  /// Runs one firmware command. `input`: `input_size` bytes of request. `output`: buffer of `output_size` bytes; what
  /// the firmware answers is copied into it, cut to its size, and the rest of it becomes zero. `return_code`: the
  /// firmware's own code.
  ///
  /// Returns 0 when the firmware answered, else the status of the call that failed (an HRESULT); the buffers are then
  /// left as they were. A machine without the interface fails.
  std::int32_t ExecuteCommand(std::uint32_t command, std::uint32_t command_type, std::uint32_t input_size,
                              const std::uint8_t* input, std::uint32_t output_size, std::uint8_t* output,
                              std::uint32_t* return_code);

 private:
  std::unique_ptr<FirmwareInterface> interface_;
};

}  // namespace zt::shared::ztbios
