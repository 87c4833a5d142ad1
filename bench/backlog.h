#pragma once

#include <string>

namespace zt::bench {

/// Creates the sample database `path` (UTF-8) with `days` of samples, each minute one thermal row and one network row
/// of each of three interfaces. Throws `std::runtime_error` on failure.
void WriteBacklog(const std::string& path, int days);

}  // namespace zt::bench
