#include "platform/com_apartment.h"

#include "base/windows/com_apartment.h"

namespace zt::telemetry::collector::performancesamples::platform {

struct ComApartment::Apartment {
  base::ComApartment com;
};

ComApartment::ComApartment() : apartment_(std::make_unique<Apartment>()) {}

ComApartment::~ComApartment() = default;

std::int32_t ComApartment::Status() const {
  return apartment_->com.Status();
}

}  // namespace zt::telemetry::collector::performancesamples::platform
