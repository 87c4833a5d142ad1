#pragma once

#include "zt/shared/plugin/plugin_module.h"
#include "zt/zt_collector_export.h"

namespace zt::telemetry::collector::performancesamples {

/// A new collector, independent of earlier ones. The caller owns it and deletes it through its virtual destructor.
/// Exported under this name and, as the same entry point, as plain "LoadPlugin".
ZT_COLLECTOR_EXPORT shared::plugin::IDynamicPluginModule* LoadPlugin();

}  // namespace zt::telemetry::collector::performancesamples
