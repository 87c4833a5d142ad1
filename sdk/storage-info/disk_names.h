#pragma once

#include <string_view>
#include <vector>

namespace zt::shared::storage {

/// The numbers of the disks, ascending, from the system's list of device names: each name ended by a NUL, those of
/// disks "PhysicalDrive" and the number. Numbers may have gaps.
std::vector<unsigned> FindDiskNumbers(std::wstring_view device_names);

}  // namespace zt::shared::storage
