#pragma once

#include <windows.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "base/device_asking.h"
#include "base/windows/unique_handle.h"

namespace zt::base {

/// Opens a device with requests that can be waited for (overlapped). `access`: for reading, or 0 for questions alone.
/// Null when it cannot be opened.
UniqueHandle OpenDevice(const std::wstring& path, DWORD access = GENERIC_READ);

/// Sends one request to a device that was opened for overlapped requests, and waits for its answer at most `limit`. A
/// request that takes longer is cancelled, which may take `kCancelLimit` more; its error is `kRequestTimedOut`.
ControlOutcome SendControl(HANDLE device, std::uint32_t code, std::span<const std::byte> input,
                           std::span<std::byte> output, std::chrono::milliseconds limit);

/// Asks an open device, which outlives what is returned, as `AskPatiently` does.
ControlDevice AskDevice(HANDLE device, std::chrono::milliseconds answer_limit, TimeLimit all);

}  // namespace zt::base
