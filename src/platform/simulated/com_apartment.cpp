#include "platform/com_apartment.h"

#include <optional>

#include "simulation/machine.h"

namespace zt::telemetry::collector::performancesamples::platform {

ComApartment::ComApartment()
    : status_(simulation::CurrentMachine().network.com.value_or(simulation::Failure{}).status) {}

ComApartment::~ComApartment() = default;

}  // namespace zt::telemetry::collector::performancesamples::platform
