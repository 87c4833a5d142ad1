#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace zt::telemetry::host {

/// The whole program: reads `arguments` (UTF-8, without the program's own name), runs the command, and returns the exit
/// code. No exception leaves it. `terminal` shows how far long work is: `err` when a person sees that, else null.
int Run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err,
        std::ostream* terminal = nullptr);

}  // namespace zt::telemetry::host
