#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "zt/zt_simulation_export.h"

namespace zt::simulation {

/// What the stand-ins of the vendors' libraries saw since `UseMachine`. Kept here, so that it outlives their unloading.
struct VendorRecord {
  /// By the function's name; of a method with its interface ("IADLXGPU::VendorId").
  std::map<std::string, std::uint64_t> calls;
  std::uint64_t interfaces_handed_out = 0;
  /// References that were handed out and not released yet.
  std::int64_t live_references = 0;
  /// What no correct caller does, in words.
  std::vector<std::string> faults;
};

/// The record of the current machine, for the stand-ins to write.
ZT_SIMULATION_EXPORT VendorRecord& CurrentVendorRecord();

}  // namespace zt::simulation
