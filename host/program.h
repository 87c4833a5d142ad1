#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace zt::telemetry::host {

/// The whole program: reads `arguments` (UTF-8, without the program's own name), runs the command, and returns the exit
/// code. No exception leaves it.
int Run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err);

}  // namespace zt::telemetry::host
