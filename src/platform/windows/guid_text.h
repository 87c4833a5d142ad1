#pragma once

#include <objbase.h>

#include <array>
#include <string>

namespace zt::telemetry::collector::performancesamples::platform {

/// "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}", in capitals.
inline std::wstring GuidText(const GUID& guid) {
  constexpr int kLength = 39;  // the end included
  std::array<wchar_t, kLength> buffer{};
  ::StringFromGUID2(guid, buffer.data(), kLength);
  return buffer.data();
}

}  // namespace zt::telemetry::collector::performancesamples::platform
