#include "platform/library.h"

#include <algorithm>
#include <string>
#include <vector>

#include "simulation/calls.h"
#include "simulation/library_folder.h"
#include "simulation/machine.h"
#include "simulation/vendor_record.h"

// The stand-ins of the vendors' libraries are real ones, loaded by the real loader. What the machine states is whether
// they are there, and which of their functions are.
namespace zt::telemetry::collector::performancesamples::platform {
namespace {

const simulation::Machine& Machine() {
  return simulation::CurrentMachine();
}

bool IsInstalled(const std::filesystem::path& file) {
  if (file.filename() == "nvml.dll") return Machine().nvml.has_value();
  if (file.filename() == "amdadlx64.dll") return Machine().adlx.has_value();
  return false;
}

bool Names(const std::vector<std::string>& functions, const char* name) {
  return std::find(functions.begin(), functions.end(), name) != functions.end();
}

// No function of one vendor has the name of another's.
bool IsMissing(const char* name) {
  return (Machine().nvml && Names(Machine().nvml->missing_functions, name)) ||
         (Machine().adlx && Names(Machine().adlx->missing_functions, name));
}

}  // namespace

Library Library::Load(const std::filesystem::path& file) {
  if (!IsInstalled(file) || simulation::Fails("LoadLibrary " + file.filename().string())) return {};
  return Library(base::LoadedLibrary::OfFile(file));
}

Library Library::Search(const std::filesystem::path& name, std::uint32_t search_flags) {
  simulation::CurrentVendorRecord().search_flags[name.string()] = search_flags;
  return Load(simulation::LibraryFolder() / name);
}

void* Library::FindAddress(const char* name) const {
  if (IsMissing(name) || simulation::Fails(std::string("GetProcAddress ") + name)) return nullptr;
  return library_.FindAddress(name);
}

}  // namespace zt::telemetry::collector::performancesamples::platform
