#pragma once

#include "host/loaded_library.h"
#include "zt/inspection/inspect_network.h"
#include "zt/inspection/inspect_sources.h"

namespace zt::telemetry::host {

/// The library beside the program that looks into the collector, loaded when a command needs it: a host that only
/// collects runs without it.
class InspectionLibrary {
 public:
  /// Throws `Failure` when the library, or the collector that it needs, is missing or is of another version.
  InspectionLibrary();

  /// See `ztInspectSources`.
  void InspectSources(plog::Severity log_level, plog::IAppender& log, const inspection::ReportReceiver& receive) const {
    inspect_sources_(log_level, &log, receive);
  }

  /// See `ztInspectNetwork`.
  void InspectNetwork(plog::Severity log_level, plog::IAppender& log, inspection::NetworkReport& report) const {
    inspect_network_(log_level, &log, report);
  }

 private:
  LoadedLibrary library_;
  inspection::InspectSourcesFunction* inspect_sources_;
  inspection::InspectNetworkFunction* inspect_network_;
};

}  // namespace zt::telemetry::host
