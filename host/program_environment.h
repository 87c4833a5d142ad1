#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace zt::telemetry::host {

/// The command line without the program's own name, UTF-8. `count` and `values` are those of `main`.
std::vector<std::string> ProgramArguments(int count, char** values);

/// The file of the running program, absolute.
std::filesystem::path ProgramFile();

/// Where the configuration lies unless the command line names another file.
std::filesystem::path DefaultConfigurationFile();

/// A path as a person wrote it, UTF-8. Where the program runs on another system's file names (a Windows program on a
/// Unix machine), rooted paths are that system's.
std::filesystem::path PathFromText(std::string_view text);

/// A path as the person would write it, UTF-8: for messages.
std::string PathText(const std::filesystem::path& path);

/// Has what was written to `file` arrive on the disk. Throws `std::system_error`.
void Sync(const std::filesystem::path& file);

/// Makes `file` the one of the name `place`, in the same folder, in one step: whoever opens `place` meanwhile gets the
/// one or the other. The change is on the disk then. Throws `std::system_error`.
void PutInPlace(const std::filesystem::path& file, const std::filesystem::path& place);

/// Whether a person sees what goes to standard output or to standard error: it is a terminal, and no file or pipe.
bool OutputGoesToTerminal();
bool ErrorsGoToTerminal();

/// As long as it lives, what the program writes to its standard streams arrives byte for byte, and a console shows it
/// as UTF-8.
class Utf8Streams {
 public:
  Utf8Streams();
  ~Utf8Streams();
  Utf8Streams(const Utf8Streams&) = delete;
  Utf8Streams& operator=(const Utf8Streams&) = delete;

 private:
  [[maybe_unused]] unsigned int previous_code_page_ = 0;  // of the console, where consoles have them
};

}  // namespace zt::telemetry::host
