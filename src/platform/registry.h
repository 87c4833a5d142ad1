#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// The registry below HKEY_LOCAL_MACHINE, for reading. Paths and names are in the system's code page, as its "A"
/// functions take them; a path may end with a backslash.
namespace zt::telemetry::collector::performancesamples::platform {

/// What a question to the registry gave.
template <typename T>
struct RegistryAnswer {
  T value{};  // as far as it could be read
  std::uint32_t failure =
      0;  // the error code of the call that failed; that there is no such key or value is no failure
};

/// Names of the subkeys of a key, in the system's order (`RegEnumKeyExA`). None where there is no such key.
RegistryAnswer<std::vector<std::string>> RegistrySubkeys(const std::string& path);

/// A value of the key as text (`RegQueryValueExA`). Absent where there is no such key or value, or the value is no
/// text.
RegistryAnswer<std::optional<std::string>> RegistryText(const std::string& path, const std::string& value);

}  // namespace zt::telemetry::collector::performancesamples::platform
