#pragma once

#include <cstdint>
#include <vector>

#include "base/windows/device_control.h"
#include "disk_limits.h"

namespace zt::shared::storage {

/// What a disk's driver can be asked for; numbers of the system.
enum class DiskProperty : std::uint32_t { kDescriptor = 0, kAdapterSerialNumber = 57 };

/// A disk of this machine, opened for questions: without access to its data, which no user lacks the right to.
class DiskDevice {
 public:
  /// `number`: that of "\\.\PhysicalDrive..." . The disk may be gone; then every answer is empty. `all`: the time of
  /// all disks.
  explicit DiskDevice(unsigned number, base::TimeLimit all = base::TimeLimit(kAllDisksLimit));

  bool IsOpen() const { return handle_ != nullptr; }

  /// The driver's answer (IOCTL_STORAGE_QUERY_PROPERTY); empty when it has none, or not in time.
  std::vector<std::uint8_t> Read(DiskProperty property) const;

 private:
  base::UniqueHandle handle_;
  base::ControlDevice ask_;
};

}  // namespace zt::shared::storage
