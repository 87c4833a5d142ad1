#include "host/program_environment.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace zt::telemetry::host {

std::vector<std::string> ProgramArguments(int count, char** values) {
  if (count <= 1) return {};
  return {values + 1, values + count};
}

std::filesystem::path ProgramFile() {
  return std::filesystem::read_symlink("/proc/self/exe");
}

std::filesystem::path DefaultConfigurationFile() {
  return "/etc/zt-telemetry/zt-telemetry-host.toml";
}

std::filesystem::path PathFromText(std::string_view text) {
  return std::filesystem::path(text);
}

std::string PathText(const std::filesystem::path& path) {
  return path.string();
}

void Sync(const std::filesystem::path& file) {
  const int descriptor = ::open(file.c_str(), O_WRONLY | O_CLOEXEC);
  // A pipe or a device keeps nothing that could be on a disk.
  const bool done = descriptor >= 0 && (::fsync(descriptor) == 0 || errno == EINVAL || errno == EROFS);
  const std::error_code error(errno, std::generic_category());
  if (descriptor >= 0) ::close(descriptor);
  if (!done) throw std::system_error(error, PathText(file));
}

void PutInPlace(const std::filesystem::path& file, const std::filesystem::path& place) {
  std::filesystem::rename(file, place);
  // A name is on the disk when its folder is.
  const std::filesystem::path folder = std::filesystem::absolute(place).parent_path();
  const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return;  // a folder that may be written to, but not read
  ::fsync(descriptor);         // file systems that keep no folders on a disk refuse it
  ::close(descriptor);
}

bool OutputGoesToTerminal() {
  return ::isatty(STDOUT_FILENO) == 1;
}

bool ErrorsGoToTerminal() {
  return ::isatty(STDERR_FILENO) == 1;
}

Utf8Streams::Utf8Streams() = default;
Utf8Streams::~Utf8Streams() = default;

}  // namespace zt::telemetry::host
