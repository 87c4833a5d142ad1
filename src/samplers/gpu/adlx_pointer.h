#pragma once

#include <memory>

#include "samplers/gpu/adlx_api.h"

namespace zt::telemetry::collector::performancesamples {

struct AdlxReleaser {
  void operator()(adlx::IADLXInterface* reference) const { reference->Release(); }
};

/// Owns one reference to an interface.
template <typename Interface>
using AdlxPointer = std::unique_ptr<Interface, AdlxReleaser>;

/// Takes over what `call` hands out through the pointer that it is given. Returns its result; a success that hands out
/// nothing is a failure.
template <typename Interface, typename Call>
ADLX_RESULT Obtain(AdlxPointer<Interface>& pointer, Call call) {
  Interface* reference = nullptr;
  const ADLX_RESULT result = call(&reference);
  // What a failed call leaves there is nobody's reference.
  if (!adlx::Succeeded(result)) return result;
  pointer.reset(reference);
  return reference != nullptr ? result : adlx::ADLX_FAIL;
}

}  // namespace zt::telemetry::collector::performancesamples
