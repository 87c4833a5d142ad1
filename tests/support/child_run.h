#pragma once

#include <string>
#include <vector>

namespace zt::tests {

/// Ends this process at once, as somebody else would: nothing of it runs any more.
[[noreturn]] void EndThisProcess();

/// Runs the program that is told by its full path and waits for its end; false when it was ended by `EndThisProcess`.
/// Throws `std::runtime_error` for any other end than that and exit code 0.
bool RunToItsEnd(const std::string& program, const std::vector<std::string>& arguments);

}  // namespace zt::tests
