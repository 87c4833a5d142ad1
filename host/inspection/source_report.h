#pragma once

#include <chrono>
#include <string>

#include "performance_samples_upload.pb.h"

namespace zt::telemetry::host::inspection {

enum class SourceState {
  kPresent,
  kAbsent,  // the machine does not have it: nothing is wrong
  kFailed,  // it is there, or should be, and did not answer
};

/// What one source of figures had to say when it was asked once.
struct SourceReport {
  /// For people, in the words of the documentation.
  std::string source;
  SourceState state = SourceState::kPresent;
  /// One line, UTF-8: why the source is absent or failed, or what is there; may be empty.
  std::string remark;
  /// Wall-clock time that asking took.
  std::chrono::nanoseconds time{};
  /// What a collection would get from this source alone: empty where it adds nothing to the upload record. A source
  /// that failed may have added some before.
  contract::upload::log::PcLogPerformanceSamplesAsCDM figures;
};

}  // namespace zt::telemetry::host::inspection
