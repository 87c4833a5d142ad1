#pragma once

#include <optional>
#include <string>
#include <vector>

/// The registry below HKEY_LOCAL_MACHINE, for reading. Paths and names are in the system's code page, as its "A"
/// functions take them; a path may end with a backslash.
namespace zt::telemetry::collector::performancesamples::platform {

/// Names of the subkeys of a key, in the system's order (`RegEnumKeyExA`). Empty when the key cannot be opened or has
/// none.
std::vector<std::string> RegistrySubkeys(const std::string& path);

/// A value of the key as text (`RegQueryValueExA`). Absent when the key cannot be opened, or has no such value, or the
/// value is no text.
std::optional<std::string> RegistryText(const std::string& path, const std::string& value);

}  // namespace zt::telemetry::collector::performancesamples::platform
