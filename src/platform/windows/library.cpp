#include "platform/library.h"

namespace zt::telemetry::collector::performancesamples::platform {

Library Library::Load(const std::filesystem::path& file) {
  return Library(LoadModule(file));
}

Library Library::Search(const std::filesystem::path& name, std::uint32_t search_flags) {
  return Library(SearchModule(name, search_flags));
}

void* Library::FindAddress(const char* name) const {
  return module_ != nullptr ? FindExport(module_.get(), name) : nullptr;
}

}  // namespace zt::telemetry::collector::performancesamples::platform
