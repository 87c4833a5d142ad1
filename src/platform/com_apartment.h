#pragma once

#include <cstdint>
#include <memory>

namespace zt::telemetry::collector::performancesamples::platform {

/// COM on the calling thread for as long as this object lives: initialised multithreaded, and left as found. Outlives
/// everything that is used under it, and goes on the thread that made it.
class ComApartment {
 public:
  ComApartment();
  ~ComApartment();
  ComApartment(const ComApartment&) = delete;
  ComApartment& operator=(const ComApartment&) = delete;

  /// The HRESULT of the initialisation; negative is a failure, also on a thread in a single-threaded apartment.
  std::int32_t Status() const;

 private:
  struct Apartment;
  std::unique_ptr<Apartment> apartment_;
};

}  // namespace zt::telemetry::collector::performancesamples::platform
