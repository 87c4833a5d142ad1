// The stand-in of AMD's device library: answers from the machine's "adlx" facts.
#include <optional>
#include <string>

#include "samplers/gpu/adlx_api.h"
#include "simulation/calls.h"
#include "simulation/handed_out.h"
#include "simulation/machine.h"
#include "simulation/vendor_record.h"
#include "simulation/vendors/adlx_gpu.h"
#include "simulation/vendors/counted_interface.h"
#include "zt/zt_adlx_export.h"

namespace zt::simulation {

using base::FunctionIn;

std::vector<std::unique_ptr<CountedObject>>& HandedOutObjects() {
  static std::vector<std::unique_ptr<CountedObject>> objects;
  return objects;
}

namespace {

// ADLX 1.2.0.72.
constexpr std::uint64_t kVersion = 0x0001'0002'0000'0048;
constexpr char kVersionText[] = "1.2.0.72";
// The first card's index: what a caller takes from the list, and not for granted.
constexpr std::uint32_t kFirst = 1;

constexpr std::uint32_t kAbsurdCount = 0xFFFF'FFFF;

const HandedOutThing loaded("loaded amdadlx64.dll");

// The result of a call that hands out an interface and was disturbed; absent for one that was not.
template <typename Interface>
std::optional<ADLX_RESULT> Disturbed(const std::string& call, Interface** target) {
  const Disturbance met = AnnounceInterface(call, target);
  if (met == Disturbance::kNone) return std::nullopt;
  return met == Disturbance::kFails ? ADLX_FAIL : ADLX_OK;
}

const std::vector<AdlxGpu>& Gpus() {
  static const std::vector<AdlxGpu> none;
  return CurrentMachine().adlx ? CurrentMachine().adlx->gpus : none;
}

class GpuList final : public CountedInterface<IADLXGPUList> {
 public:
  GpuList() : CountedInterface("IADLXGPUList") {}

  std::uint32_t Begin() override { return Called("Begin") ? kFirst : 0; }
  std::uint32_t End() override {
    if (!Called("End")) return 0;
    const bool absurd = Announce("IADLXGPUList::End", {Disturbance::kAbsurd}) == Disturbance::kAbsurd;
    return absurd ? kAbsurdCount : kFirst + static_cast<std::uint32_t>(Gpus().size());
  }
  ADLX_RESULT At_GPUList(std::uint32_t location, IADLXGPU** gpu) override {
    if (!Called("At_GPUList")) return ADLX_FAIL;
    if (const auto result = Disturbed("IADLXGPUList::At_GPUList", gpu)) return *result;
    if (location < kFirst || location - kFirst >= Gpus().size()) return ADLX_INVALID_ARGS;
    const AdlxGpu& facts = Gpus()[location - kFirst];
    const ADLX_RESULT result = ToResult(facts.open);
    if (Succeeded(result)) HandOut<Gpu>(gpu, facts);
    return result;
  }
};

class PerformanceServices final : public CountedInterface<IADLXPerformanceMonitoringServices> {
 public:
  PerformanceServices() : CountedInterface("IADLXPerformanceMonitoringServices") {}

  ADLX_RESULT GetCurrentGPUMetrics(IADLXGPU* gpu, IADLXGPUMetrics** metrics) override {
    return OfCard<Metrics>("GetCurrentGPUMetrics", gpu, &AdlxGpu::current_metrics, metrics);
  }
  ADLX_RESULT GetSupportedGPUMetrics(IADLXGPU* gpu, IADLXGPUMetricsSupport** support) override {
    return OfCard<MetricsSupport>("GetSupportedGPUMetrics", gpu, &AdlxGpu::metrics_support, support);
  }

 private:
  template <typename Object, typename Interface>
  ADLX_RESULT OfCard(const char* method, IADLXGPU* gpu, std::uint32_t AdlxGpu::*status, Interface** target) {
    if (!Called(method) || !static_cast<Gpu*>(gpu)->CanBeGivenTo(method)) return ADLX_FAIL;
    if (const auto result = Disturbed(std::string("IADLXPerformanceMonitoringServices::") + method, target)) {
      return *result;
    }
    const AdlxGpu& facts = static_cast<Gpu*>(gpu)->Facts();
    const ADLX_RESULT result = ToResult(facts.*status);
    if (Succeeded(result)) HandOut<Object>(target, facts);
    return result;
  }
};

bool is_started = false;

// The interface has no slot for a destructor; nothing ever deletes the system.
class System final : public IADLXSystem {  // NOLINT(cppcoreguidelines-virtual-class-destructor)
 public:
  ADLX_RESULT GetGPUs(IADLXGPUList** gpus) override {
    if (!Called("GetGPUs")) return ADLX_FAIL;
    if (const auto disturbed = Disturbed("IADLXSystem::GetGPUs", gpus)) return *disturbed;
    const ADLX_RESULT result = ToResult(CurrentMachine().adlx->gpu_list);
    if (Succeeded(result)) HandOut<GpuList>(gpus);
    return result;
  }
  ADLX_RESULT GetPerformanceMonitoringServices(IADLXPerformanceMonitoringServices** services) override {
    if (!Called("GetPerformanceMonitoringServices")) return ADLX_FAIL;
    const std::string call = "IADLXSystem::GetPerformanceMonitoringServices";
    if (const auto disturbed = Disturbed(call, services)) return *disturbed;
    const ADLX_RESULT result = ToResult(CurrentMachine().adlx->performance_services);
    if (Succeeded(result)) HandOut<PerformanceServices>(services);
    return result;
  }

 private:
  static bool Called(const char* method) {
    const std::string call = std::string("IADLXSystem::") + method;
    CurrentVendorRecord().Note(call);
    if (is_started) return true;
    CurrentVendorRecord().faults.push_back(call + " of a stopped library");
    return false;
  }
};

ADLX_RESULT Start(const char* function, std::uint64_t version, IADLXSystem** system) {
  static System the_system;
  CurrentVendorRecord().Note(function);
  if (version != kVersion) CurrentVendorRecord().faults.emplace_back("started with an unknown version");
  if (!CurrentMachine().adlx) return ADLX_FAIL;
  const Disturbance met = AnnounceInterface(function, system);
  if (met == Disturbance::kFails) return ADLX_FAIL;
  const ADLX_RESULT result = ToResult(CurrentMachine().adlx->initialize);
  if (!Succeeded(result)) return result;
  is_started = true;
  if (met != Disturbance::kNull) *system = &the_system;
  return result;
}

}  // namespace

bool IsLibraryStarted() {
  return is_started;
}

extern "C" {

// Each function is of the type by which the collector calls it: one of another type does not compile.
ZT_ADLX_EXPORT FunctionIn<adlx::Functions, "ADLXQueryFullVersion"> ADLXQueryFullVersion;
ZT_ADLX_EXPORT FunctionIn<adlx::Functions, "ADLXQueryVersion"> ADLXQueryVersion;
ZT_ADLX_EXPORT FunctionIn<adlx::Functions, "ADLXInitialize"> ADLXInitialize;
ZT_ADLX_EXPORT FunctionIn<adlx::Functions, "ADLXInitializeWithIncompatibleDriver"> ADLXInitializeWithIncompatibleDriver;
ZT_ADLX_EXPORT FunctionIn<adlx::Functions, "ADLXInitializeWithCallerAdl"> ADLXInitializeWithCallerAdl;
ZT_ADLX_EXPORT FunctionIn<adlx::Functions, "ADLXTerminate"> ADLXTerminate;

ADLX_RESULT ADLXQueryFullVersion(std::uint64_t* version) {
  CurrentVendorRecord().Note("ADLXQueryFullVersion");
  if (Fails("ADLXQueryFullVersion")) return ADLX_FAIL;
  *version = kVersion;
  return ADLX_OK;
}

ADLX_RESULT ADLXQueryVersion(const char** version) {
  CurrentVendorRecord().Note("ADLXQueryVersion");
  if (Fails("ADLXQueryVersion")) return ADLX_FAIL;
  *version = kVersionText;
  return ADLX_OK;
}

ADLX_RESULT ADLXInitialize(std::uint64_t version, IADLXSystem** system) {
  return Start("ADLXInitialize", version, system);
}

ADLX_RESULT ADLXInitializeWithIncompatibleDriver(std::uint64_t version, IADLXSystem** system) {
  return Start("ADLXInitializeWithIncompatibleDriver", version, system);
}

ADLX_RESULT ADLXInitializeWithCallerAdl(std::uint64_t version, IADLXSystem** system, void** /*adl_mapping*/,
                                        void* /*adl_context*/, void (* /*free_adl_memory*/)(void** buffer)) {
  return Start("ADLXInitializeWithCallerAdl", version, system);
}

ADLX_RESULT ADLXTerminate() {
  CurrentVendorRecord().Note("ADLXTerminate");
  is_started = false;
  if (CurrentVendorRecord().live_references != 0) {
    CurrentVendorRecord().faults.emplace_back("terminated before every interface was released");
  }
  return Fails("ADLXTerminate") ? ADLX_FAIL : ADLX_OK;
}

}  // extern "C"

}  // namespace zt::simulation
