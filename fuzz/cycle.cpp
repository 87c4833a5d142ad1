// Whole machines, as their profiles state them: a collection and a look at the network on each.
#include <exception>
#include <memory>
#include <string>

#include "base/loaded_library.h"
#include "checking_sink.h"
#include "collector/performance_samples.h"
#include "json_mutation.h"
#include "network/network_info_msg.h"
#include "simulation/library_folder.h"
#include "simulation/machine.h"
#include "simulation/profile.h"
#include "zt/shared/telemetry_storage.h"
#include "zt/shared/wmi/wmi_client.h"

namespace {

using namespace zt::telemetry::collector::performancesamples;

// libFuzzer goes on looking at the counters of a library that was unloaded.
void KeepVendorsLoaded() {
  using zt::base::LoadedLibrary;
  static const auto* const nvml =
      new LoadedLibrary(LoadedLibrary::OfFile(zt::simulation::LibraryFolder() / "nvml.dll"));
  static const auto* const adlx =
      new LoadedLibrary(LoadedLibrary::OfFile(zt::simulation::LibraryFolder() / "amdadlx64.dll"));
  static_cast<void>(nvml);
  static_cast<void>(adlx);
}

// False for a text that is no profile.
bool UseMachine(std::string_view profile) {
  try {
    zt::simulation::UseMachine(zt::simulation::ParseProfile(profile, "input"));
    return true;
  } catch (const zt::simulation::ProfileError&) {
    return false;
  }
}

void LookAtNetwork() {
  zt::shared::wmi::WMIClient wmi(zt::shared::wmi::kSystemNamespace);
  NetworkInfoMsg network(&wmi, nullptr);
  try {
    auto interfaces = network.PerformNetworkInterfaceQueries();
    network.HandleGeneralConnInfo(interfaces);
    network.HandleWlanInfo(interfaces);
  } catch (const zt::telemetry::common::Error&) {
  } catch (const std::exception&) {
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static PerformanceSamples* const collector = [] {
    zt::telemetry::common::RegisterTelemetrySink(std::make_shared<zt::fuzz::CheckingSink>());
    zt::shared::TelemetryStorage::SetDefaultDBPath("/nonexistent");
    KeepVendorsLoaded();
    return new PerformanceSamples();
  }();
  if (!UseMachine(zt::fuzz::TextOf(data, size))) return 0;
  std::string outcome(PerformanceSamples::kResultCapacity, '\0');
  collector->Execute(R"({"eventType": 20})", outcome.data());
  zt::fuzz::Require(outcome.find("\"kind\":0") != std::string::npos, "a cycle succeeds on every machine");
  LookAtNetwork();
  return 0;
}
