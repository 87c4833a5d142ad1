#pragma once

#include <string>

namespace zt::telemetry::collector::performancesamples::platform {

/// File name, without folder, of the module that holds `address`, found without touching the module's reference count.
/// Empty when the module or its path (up to 260 characters) cannot be found, or the path has no folder.
std::wstring ModuleFileName(const void* address);

}  // namespace zt::telemetry::collector::performancesamples::platform
