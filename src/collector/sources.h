#pragma once

#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "messages/perf_messages.h"
#include "zt/shared/wmi/wmi_client.h"
#include "zt/shared/ztbios/private_bios_wmi.h"

namespace zt::telemetry::collector::performancesamples {

/// What the sources of a cycle ask through, connected when it is asked first. One that cannot be made is logged and
/// absent: what asks through it fails for itself, the other sources answer.
class Clients {
 public:
  Clients();

  /// The client of the system's namespace; null where it could not be made.
  shared::wmi::WMIClient* Wmi() { return wmi_ ? &*wmi_ : nullptr; }
  /// The client of the firmware; null where it could not be made.
  shared::ztbios::PrivateBiosWmi* Bios() { return bios_ ? &*bios_ : nullptr; }

 private:
  std::optional<shared::wmi::WMIClient> wmi_;
  std::optional<shared::ztbios::PrivateBiosWmi> bios_;
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
