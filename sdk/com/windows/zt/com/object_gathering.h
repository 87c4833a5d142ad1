#pragma once

#include <wbemidl.h>

#include <chrono>
#include <vector>

#include "zt/com/com_handles.h"

namespace zt::com {

/// How long WMI may take.
struct WaitLimits {
  std::chrono::milliseconds object{5'000};
  std::chrono::milliseconds whole{15'000};
};

/// Adds the objects of `enumerator` to `objects` until its end. Returns S_OK at the end, `base::kTimedOut` when a limit
/// is reached, else the enumerator's error; the objects that came before a failure stay.
HRESULT GatherObjects(IEnumWbemClassObject& enumerator, const WaitLimits& limits,
                      std::vector<ComPtr<IWbemClassObject>>& objects);

}  // namespace zt::com
