#pragma once

#include <windows.h>

#include <memory>

namespace zt::telemetry::collector::performancesamples::platform {

struct HandleCloser {
  void operator()(HANDLE handle) const { ::CloseHandle(handle); }
};

/// Owns a handle of a function that tells of failure by a null handle.
using UniqueHandle = std::unique_ptr<void, HandleCloser>;

}  // namespace zt::telemetry::collector::performancesamples::platform
