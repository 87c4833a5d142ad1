#include "zt/com/com_apartment.h"

#include <objbase.h>

namespace zt::com {

ComApartment::ComApartment() : initialisation_(::CoInitializeEx(nullptr, COINIT_MULTITHREADED)) {}

ComApartment::~ComApartment() {
  // Every success counts, also the one that says "initialised before"; a refusal does not.
  if (SUCCEEDED(initialisation_)) ::CoUninitialize();
}

HRESULT ComApartment::Status() const {
  // The thread chose a single-threaded apartment before: WMI's objects serve it there.
  const bool usable = SUCCEEDED(initialisation_) || initialisation_ == RPC_E_CHANGED_MODE;
  return usable ? S_OK : initialisation_;
}

}  // namespace zt::com
