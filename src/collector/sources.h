#pragma once

#include <memory>
#include <span>
#include <vector>

#include "messages/perf_messages.h"
#include "zt/shared/wmi/wmi_client.h"
#include "zt/shared/ztbios/private_bios_wmi.h"

namespace zt::telemetry::collector::performancesamples {

/// What the sources of a cycle ask through, connected when it is asked first.
struct Clients {
  shared::wmi::WMIClient wmi{shared::wmi::kSystemNamespace};
  shared::ztbios::PrivateBiosWmi bios;
};

/// One source of figures of the live record.
struct Source {
  /// For people, in the words of the documentation.
  const char* name;
  /// Makes its builder, which asks `clients`: they outlive it.
  std::shared_ptr<PerfMessages> (*make)(Clients& clients);
};

/// Every source of a collection, in the order in which they run. Collecting, asking each one alone and measuring it all
/// read this table: a new source is one line of it.
std::span<const Source> Sources();

using BuilderList = std::vector<std::shared_ptr<PerfMessages>>;

/// The builders of one cycle, in the order of their sources.
BuilderList MakeBuilders(Clients& clients);

}  // namespace zt::telemetry::collector::performancesamples
