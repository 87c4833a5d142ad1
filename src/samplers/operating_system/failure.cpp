#include "samplers/operating_system/failure.h"

#include <exception>
#include <map>
#include <memory>
#include <stdexcept>

namespace zt::telemetry::collector::performancesamples {
namespace {

// The exception of this text. Made once: nobody who catches a pointer frees it, so a new one at each failing cycle
// would be lost.
std::exception* FailureOf(const std::string& message) {
  static std::map<std::string, std::unique_ptr<std::exception>> failures;
  std::unique_ptr<std::exception>& failure = failures[message];
  if (failure == nullptr) failure = std::make_unique<std::runtime_error>(message);
  return failure.get();
}

}  // namespace

void FailWith(const std::string& message) {
  throw FailureOf(message);  // NOLINT(misc-throw-by-value-catch-by-reference): hosts know this failure by its form
}

}  // namespace zt::telemetry::collector::performancesamples
