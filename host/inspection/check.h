#pragma once

#include <cstdint>
#include <string>

#include "collector/sources.h"
#include "host/inspection/source_report.h"

namespace zt::telemetry::host::inspection {

namespace samples = collector::performancesamples;

/// What asking gave.
struct Answer {
  SourceState state = SourceState::kPresent;
  /// As in `SourceReport`.
  std::string remark;
};

/// `what`, with the status of the call that failed.
Answer FailedWith(const std::string& what, std::uint32_t status);

/// Something that is asked for itself beside the collector's sources, since the record does not tell it apart.
struct Check {
  /// For people, in the words of the documentation.
  const char* name;
  /// What it throws is a failure.
  Answer (*ask)(samples::Clients& clients);
};

}  // namespace zt::telemetry::host::inspection
