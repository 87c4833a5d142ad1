// The pass over the graphics cards, and what of it is the loading of the vendors' libraries. The stand-ins of these
// answer at once: what is measured is the collector's own share and that of the system's loader, not a driver's.
#include <benchmark/benchmark.h>

#include <vector>

#include "messages/perf_messages.h"
#include "platform/library.h"
#include "platform/nvml_files.h"
#include "samplers/gpu/adlx_helper.h"
#include "samplers/gpu/gpu_info_msg.h"
#include "samplers/gpu/nvidia_card_info.h"
#include "samplers/gpu/nvml_api.h"
#include "simulation/profile.h"

namespace zt::bench {
namespace {

namespace samples = telemetry::collector::performancesamples;

// Two NVIDIA cards, one of AMD and Intel's graphics: 4 cards, 9 entries.
constexpr const char* kFourCards = "workstation";

// What keeping NVIDIA's library saves in each pass. Stands first: once a pass has kept it, nothing is loaded any more.
void LoadingAndUnloadingNvml(benchmark::State& state) {
  simulation::UseMachine(simulation::ReadShippedProfile(kFourCards));
  for (auto unused : state) {
    const auto library = samples::platform::Library::Load(samples::platform::NvmlFiles().back());
    if (!samples::nvml::Functions::In(library).IsComplete()) state.SkipWithError("the library was not loaded");
  }
}
BENCHMARK(LoadingAndUnloadingNvml)->Unit(benchmark::kMicrosecond);

void GpuPassOver(benchmark::State& state, const char* profile) {
  simulation::UseMachine(simulation::ReadShippedProfile(profile));
  samples::PerfMessages::Init(&state, 50);
  shared::wmi::WMIClient wmi(shared::wmi::kSystemNamespace);
  shared::ztbios::PrivateBiosWmi bios;
  samples::GPUInfoMsg sampler(&wmi, &bios);
  int entries = 0;
  for (auto unused : state) {
    sampler.PopulateStorageAndUploadProtos();
    entries = samples::PerfMessages::static_cdm_->hw_info().gpus_info_size();
    samples::PerfMessages::static_cdm_->Clear();
  }
  state.counters["entries"] = entries;
}

void PassOverFourCards(benchmark::State& state) {
  GpuPassOver(state, kFourCards);
}
BENCHMARK(PassOverFourCards)->Unit(benchmark::kMicrosecond);

void PassWithoutAnyCard(benchmark::State& state) {
  GpuPassOver(state, "bare");
}
BENCHMARK(PassWithoutAnyCard)->Unit(benchmark::kMicrosecond);

// The library is found once and kept.
void NvidiaWithTheLibraryKept(benchmark::State& state) {
  simulation::UseMachine(simulation::ReadShippedProfile(kFourCards));
  for (auto unused : state) {
    std::vector<samples::types::GraphicCardInfo> cards;
    samples::NvidiaCardInfo nvidia;
    nvidia.QueryValues(&cards);
    if (cards.size() != 2) state.SkipWithError("the cards were not read");
  }
}
BENCHMARK(NvidiaWithTheLibraryKept)->Unit(benchmark::kMicrosecond);

// Once a pass: the library's own rules want it stopped before it is unloaded.
void LoadingStartingAndStoppingAdlx(benchmark::State& state) {
  simulation::UseMachine(simulation::ReadShippedProfile(kFourCards));
  for (auto unused : state) {
    samples::ADLXHelper adlx;
    if (adlx.Start().Failed()) state.SkipWithError("the library did not start");
  }
}
BENCHMARK(LoadingStartingAndStoppingAdlx)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace zt::bench
