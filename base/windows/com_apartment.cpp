#include "base/windows/com_apartment.h"

namespace zt::base {

ComApartment::ComApartment() : ComApartment(::CoInitializeEx(nullptr, COINIT_MULTITHREADED), &::CoUninitialize) {}

ComApartment::ComApartment(HRESULT initialisation, Leave* leave) : initialisation_(initialisation), leave_(leave) {}

ComApartment::~ComApartment() {
  // Every success counts, also the one that says "initialised before"; a refusal does not.
  if (SUCCEEDED(initialisation_)) leave_();
}

HRESULT ComApartment::UseStatus() const {
  // The thread chose a single-threaded apartment before: the system's objects serve it there.
  const bool can_be_used = SUCCEEDED(initialisation_) || initialisation_ == RPC_E_CHANGED_MODE;
  return can_be_used ? S_OK : initialisation_;
}

}  // namespace zt::base
