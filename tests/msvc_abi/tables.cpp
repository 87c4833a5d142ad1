// Uses the table of each class whose order is a contract with programs that MSVC built: that makes the compiler lay it
// out, and print it where it is asked to.
#include "collector/performance_samples.h"
#include "messages/perf_messages.h"
#include "plugin/component_appender.h"
#include "samplers/gpu/abstract_gpu_vendor.h"
#include "zt/shared/battery/zt_batteries.h"
#include "zt/shared/plugin/plugin_module.h"

namespace zt {

namespace performancesamples = telemetry::collector::performancesamples;

template <class Class>
void UseTable(Class* object) {
  delete object;
}

template void UseTable(performancesamples::PerformanceSamples*);
template void UseTable(performancesamples::PerfMessages*);
template void UseTable(performancesamples::AbstractGPUVendor*);
template void UseTable(shared::battery::ZTBatteries*);
template void UseTable(shared::common::logger::ComponentAppender*);
template void UseTable(shared::plugin::PluginBufferAllocator*);

// Cannot be deleted from outside.
void UseTable(shared::battery::ZTBatteryInfo* battery) {
  battery->GetSerialNumber();
}

}  // namespace zt
