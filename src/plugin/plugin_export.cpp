#include "plugin/plugin_export.h"

#include "collector/performance_samples.h"

namespace zt::telemetry::collector::performancesamples {

shared::plugin::IDynamicPluginModule* LoadPlugin() {
  return new PerformanceSamples();
}

}  // namespace zt::telemetry::collector::performancesamples

// The plain name, at the same address.
#if defined(_MSC_VER)
#pragma comment( \
    linker,      \
    "/EXPORT:LoadPlugin=?LoadPlugin@performancesamples@collector@telemetry@zt@@YAPEAVIDynamicPluginModule@plugin@shared@4@XZ")
#else
extern "C" ZT_COLLECTOR_EXPORT zt::shared::plugin::IDynamicPluginModule* LoadPlugin()
    __attribute__((alias("_ZN2zt9telemetry9collector18performancesamples10LoadPluginEv")));
#endif
