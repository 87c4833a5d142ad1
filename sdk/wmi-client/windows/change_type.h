#pragma once

#include <windows.h>
#include <oleauto.h>

#include <cstdint>
#include <string>

namespace zt::shared::wmi {

/// Converts as `VariantChangeType` (flags 0) does. Returns its HRESULT; on failure `to` is left as it was.
HRESULT ChangeType(const VARIANT& from, bool& to);
HRESULT ChangeType(const VARIANT& from, std::uint32_t& to);
HRESULT ChangeType(const VARIANT& from, std::uint64_t& to);
HRESULT ChangeType(const VARIANT& from, float& to);
HRESULT ChangeType(const VARIANT& from, std::wstring& to);

}  // namespace zt::shared::wmi
