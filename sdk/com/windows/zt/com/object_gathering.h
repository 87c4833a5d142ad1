#pragma once

#include <wbemidl.h>

#include <vector>

#include "base/wmi_waiting.h"
#include "zt/com/com_handles.h"

namespace zt::com {

using base::WaitLimits;

/// Adds the objects of `enumerator` to `objects` until its end. Returns S_OK at the end, `base::kTimedOut` when a limit
/// is reached, else the enumerator's error; the objects that came before a failure stay.
HRESULT GatherObjects(IEnumWbemClassObject& enumerator, const WaitLimits& limits,
                      std::vector<ComPtr<IWbemClassObject>>& objects);

}  // namespace zt::com
