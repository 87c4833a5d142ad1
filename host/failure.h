#pragma once

#include <stdexcept>
#include <string>

namespace zt::telemetry::host {

/// What the program tells its caller when it ends.
inline constexpr int kExitDone = 0;
inline constexpr int kExitFailed = 1;
inline constexpr int kExitWrongUsage = 2;

/// Ends a command: the text, UTF-8, is for the person who ran it and says what was wrong, where, and what was expected.
class Failure : public std::runtime_error {
 public:
  Failure(int exit_code, const std::string& text) : std::runtime_error(text), exit_code_(exit_code) {}

  int ExitCode() const { return exit_code_; }

 private:
  int exit_code_;
};

/// The command line asks for something that cannot be: nothing was done.
inline Failure WrongUsage(const std::string& text) {
  return {kExitWrongUsage, text};
}

}  // namespace zt::telemetry::host
