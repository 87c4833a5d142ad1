#pragma once

namespace zt::telemetry::collector::performancesamples {

/// Logs the exception that is being handled at severity error, as a line of `function`, as plog captures its name. What
/// keeps the line from being logged, as want of memory does, is no failure of its own.
void LogFailure(const char* function) noexcept;

}  // namespace zt::telemetry::collector::performancesamples
