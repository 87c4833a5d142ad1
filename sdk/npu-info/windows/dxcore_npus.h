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

/// What became of looking for NPUs.
struct DxcoreNpus {
  std::vector<DxcoreNpu> npus;
  HRESULT status = S_OK;  // of the first list of adapters that could not be had
};

/// The NPUs among the adapters, each once.
DxcoreNpus ReadDxcoreNpus(dxcore::IAdapterFactory& factory);

}  // namespace zt::shared::npu
