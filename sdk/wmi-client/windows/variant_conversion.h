#pragma once

#include <zt/com/com_handles.h>

#include "zt/shared/wmi/wmi_value.h"

namespace zt::shared::wmi {

/// `value` as the VARIANT that WMI would give it in. Fails only without memory.
HRESULT ToVariant(const WmiValue& value, com::Variant& variant);

/// The VARIANT of a property. Integers below 32 bits are widened; arrays and whatever else `WmiValue` cannot hold are
/// `kTypeMismatch`, and `value` is left as it was.
HRESULT FromVariant(const VARIANT& variant, WmiValue& value);

}  // namespace zt::shared::wmi
