#include "platform/com_apartment.h"

#include <optional>

#include "simulation/calls.h"
#include "simulation/handed_out.h"
#include "simulation/machine.h"

namespace zt::telemetry::collector::performancesamples::platform {

namespace {

constexpr auto kOutOfMemory = static_cast<std::int32_t>(0x8007000E);  // E_OUTOFMEMORY

std::int32_t JoinCom() {
  if (simulation::Fails("CoInitializeEx")) return kOutOfMemory;
  return simulation::CurrentMachine().network.com.value_or(simulation::Failure{}).status;
}

}  // namespace

struct ComApartment::Apartment {
  std::int32_t status;
  simulation::HandedOutThing counted{"COM apartment"};
};

ComApartment::ComApartment() : apartment_(std::make_unique<Apartment>(Apartment{JoinCom()})) {}

ComApartment::~ComApartment() = default;

std::int32_t ComApartment::Status() const {
  return apartment_->status;
}

}  // namespace zt::telemetry::collector::performancesamples::platform
