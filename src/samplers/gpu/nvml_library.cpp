#include "samplers/gpu/nvml_library.h"

#include <optional>
#include <utility>

#include "platform/library.h"
#include "platform/nvml_files.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using platform::Library;

// A library that is found stays loaded: unloading it with the plugin would run its clean-up inside the loader.
std::optional<nvml::Functions> FindLibrary() {
  for (const auto& file : platform::NvmlFiles()) {
    Library library = Library::Load(file);
    const auto functions = nvml::Functions::In(library);
    if (!functions.IsComplete()) continue;
    std::move(library).StayLoaded();
    return functions;
  }
  return std::nullopt;
}

}  // namespace

const nvml::Functions* BindNvml() {
  static std::optional<nvml::Functions> functions;
  if (!functions) functions = FindLibrary();
  return functions ? &*functions : nullptr;
}

}  // namespace zt::telemetry::collector::performancesamples
