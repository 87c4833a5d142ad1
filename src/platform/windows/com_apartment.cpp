#include "platform/com_apartment.h"

#include <objbase.h>

namespace zt::telemetry::collector::performancesamples::platform {

ComApartment::ComApartment() : status_(::CoInitializeEx(nullptr, COINIT_MULTITHREADED)) {}

ComApartment::~ComApartment() {
  // Every success counts, also the one that says "initialised before"; a refusal does not.
  if (SUCCEEDED(status_)) ::CoUninitialize();
}

}  // namespace zt::telemetry::collector::performancesamples::platform
