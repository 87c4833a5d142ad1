#pragma once

#include <windows.h>

#include <chrono>
#include <cstddef>
#include <span>
#include <string>

#include "base/windows/unique_handle.h"
#include "battery_reading.h"
#include "patient_asking.h"

namespace zt::shared::battery {

/// Opens a device for reading, with requests that can be waited for (overlapped). Null when it cannot be opened.
base::UniqueHandle OpenDevice(const std::wstring& path);

/// Sends one request to a device that was opened for overlapped requests, and waits for its answer at most `limit`. A
/// request that takes longer is cancelled, which may take `kCancelLimit` more; its error is ERROR_TIMEOUT.
ControlOutcome SendControl(HANDLE device, std::uint32_t code, std::span<const std::byte> input,
                           std::span<std::byte> output, std::chrono::milliseconds limit);

}  // namespace zt::shared::battery
