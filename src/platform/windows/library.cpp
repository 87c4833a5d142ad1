#include "platform/library.h"

namespace zt::telemetry::collector::performancesamples::platform {

Library Library::Load(const std::filesystem::path& file) {
  return Library(base::LoadedLibrary::OfFile(file));
}

Library Library::Search(const std::filesystem::path& name, std::uint32_t search_flags) {
  return Library(base::LoadedLibrary::Search(name, search_flags));
}

void* Library::FindAddress(const char* name) const {
  return library_.FindAddress(name);
}

}  // namespace zt::telemetry::collector::performancesamples::platform
