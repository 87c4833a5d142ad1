#include "samplers/operating_system/failure.h"

#include <exception>
#include <memory>
#include <stdexcept>

namespace zt::telemetry::collector::performancesamples {

void FailWith(const std::string& message) {
  std::unique_ptr<std::exception> failure = std::make_unique<std::runtime_error>(message);
  throw failure.release();  // NOLINT(misc-throw-by-value-catch-by-reference): hosts know this failure by its form
}

}  // namespace zt::telemetry::collector::performancesamples
