#pragma once

#include <cstddef>
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
  /// The first calls in their order. Where one function reads several figures its entry says which: "name(2)".
  std::vector<std::string> first_calls;
  /// Where each library that was asked for by its name was to be looked for, as `LoadLibraryExW` takes it.
  std::map<std::string, std::uint32_t> search_flags;
  std::uint64_t interfaces_handed_out = 0;
  /// References that were handed out and not released yet.
  std::int64_t live_references = 0;
  /// What no correct caller does, in words.
  std::vector<std::string> faults;

  void Note(const std::string& function, const std::string& which = {}) {
    constexpr std::size_t kMostCallsInOrder = 200;  // a host that samples for days calls without end
    ++calls[function];
    if (first_calls.size() < kMostCallsInOrder) first_calls.push_back(function + which);
  }
};

/// The record of the current machine, for the stand-ins to write.
ZT_SIMULATION_EXPORT VendorRecord& CurrentVendorRecord();

}  // namespace zt::simulation
