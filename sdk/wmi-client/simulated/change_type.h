#pragma once

#include <cstdint>
#include <string>

#include "simulated/wmi_value.h"

namespace zt::shared::wmi {

/// Converts as the system's `VariantChangeType` (flags 0) does, in an English locale. Returns its HRESULT, 0 on
/// success; on failure `to` is left as it was.
std::int32_t ChangeType(const WmiValue& from, bool& to);
std::int32_t ChangeType(const WmiValue& from, std::uint32_t& to);
std::int32_t ChangeType(const WmiValue& from, std::uint64_t& to);
std::int32_t ChangeType(const WmiValue& from, float& to);
std::int32_t ChangeType(const WmiValue& from, std::wstring& to);

}  // namespace zt::shared::wmi
