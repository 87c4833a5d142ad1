#pragma once

#include <optional>
#include <vector>

#include "npu_report.h"
#include "npu_rules.h"
#include "windows/dxcore.h"

namespace zt::shared::npu {

/// What DXCore tells of an NPU.
struct DxcoreNpu {
  LUID luid{};
  HardwareParts parts;
  std::optional<MemoryBytes> memory_size;
};

/// The NPUs among the adapters, each once.
std::vector<DxcoreNpu> ReadDxcoreNpus(dxcore::IAdapterFactory& factory);

}  // namespace zt::shared::npu
