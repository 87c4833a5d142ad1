#include "host/inspection_library.h"

#include <filesystem>
#include <string>

#include "host/failure.h"
#include "host/program_environment.h"

namespace zt::telemetry::host {
namespace {

constexpr char kName[] = "zt-telemetry-inspection";

std::filesystem::path InspectionFile() {
  return ProgramFile().parent_path() / (std::string(kName) + kLibrarySuffix);
}

template <typename Function>
Function* Require(const LoadedLibrary& library, const char* name) {
  void* const address = library.Find(name);
  if (address == nullptr) throw WrongUsage(PathText(InspectionFile()) + " exports no \"" + name + "\"");
  return reinterpret_cast<Function*>(address);
}

}  // namespace

InspectionLibrary::InspectionLibrary()
    : library_(InspectionFile()),
      inspect_sources_(Require<inspection::InspectSourcesFunction>(library_, inspection::kInspectSourcesName)),
      inspect_network_(Require<inspection::InspectNetworkFunction>(library_, inspection::kInspectNetworkName)) {}

}  // namespace zt::telemetry::host
