#pragma once

#include <string>
#include <vector>

namespace zt::shared::storage {

/// A drive: its own identity, and the serial number in the form that WMI reports it. UTF-8.
struct KnownDrive {
  std::string name;
  std::string wmi_serial;
  bool operator==(const KnownDrive&) const = default;
};

/// The fixed drives of this machine, in the order of their numbers.
std::vector<KnownDrive> ReadKnownDrives();

}  // namespace zt::shared::storage
