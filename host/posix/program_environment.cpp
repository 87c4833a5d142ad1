#include "host/program_environment.h"

namespace zt::telemetry::host {

std::vector<std::string> ProgramArguments(int count, char** values) {
  if (count <= 1) return {};
  return {values + 1, values + count};
}

std::filesystem::path ProgramFile() {
  return std::filesystem::read_symlink("/proc/self/exe");
}

std::filesystem::path PathFromText(std::string_view text) {
  return std::filesystem::path(text);
}

std::string PathText(const std::filesystem::path& path) {
  return path.string();
}

Utf8Streams::Utf8Streams() = default;
Utf8Streams::~Utf8Streams() = default;

}  // namespace zt::telemetry::host
