#include "zt/telemetry/common/telemetry_sink.h"

#include <mutex>
#include <utility>

namespace zt::telemetry::common {
namespace {

struct Registration {
  std::mutex mutex;
  std::shared_ptr<TelemetrySink> sink;
};

Registration& TheRegistration() {
  static Registration registration;
  return registration;
}

}  // namespace

void RegisterTelemetrySink(std::shared_ptr<TelemetrySink> sink) {
  Registration& registration = TheRegistration();
  const std::scoped_lock lock(registration.mutex);
  registration.sink = std::move(sink);
}

std::shared_ptr<TelemetrySink> RegisteredTelemetrySink() {
  Registration& registration = TheRegistration();
  const std::scoped_lock lock(registration.mutex);
  return registration.sink;
}

}  // namespace zt::telemetry::common
