#pragma once

#include <string>

namespace zt::shared {

/// Character between a folder and a file name on this system.
extern const char kPathSeparator;

/// The folder that databases lie in when the host names none, UTF-8.
std::string DefaultFolder();

}  // namespace zt::shared
