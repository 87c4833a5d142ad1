#include "platform/com_apartment.h"

#include <optional>

#include "simulation/machine.h"

namespace zt::telemetry::collector::performancesamples::platform {

struct ComApartment::Apartment {
  std::int32_t status;
};

ComApartment::ComApartment()
    : apartment_(std::make_unique<Apartment>(
          Apartment{simulation::CurrentMachine().network.com.value_or(simulation::Failure{}).status})) {}

ComApartment::~ComApartment() = default;

std::int32_t ComApartment::Status() const {
  return apartment_->status;
}

}  // namespace zt::telemetry::collector::performancesamples::platform
