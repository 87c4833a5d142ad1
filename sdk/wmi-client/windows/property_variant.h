#pragma once

#include <windows.h>
#include <oleauto.h>

namespace zt::shared::wmi {

/// Makes the VARIANT of a property one of those that are converted: integers below 32 bits are widened, true is all
/// bits set, a text is never null. It stays the one box that the value is in from WMI to its reader. Arrays and
/// whatever else no reader asks for are `kTypeMismatch`; without memory for an empty text E_OUTOFMEMORY. The VARIANT is
/// then left as it was.
HRESULT Normalise(VARIANT& property);

}  // namespace zt::shared::wmi
