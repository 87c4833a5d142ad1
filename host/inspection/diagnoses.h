#pragma once

#include <span>
#include <string_view>

#include "host/inspection/check.h"

namespace zt::telemetry::host::inspection {

/// What the doctor knows of one source beyond what its builder's pass tells. A source without one is asked all the
/// same.
struct Diagnosis {
  /// Its name in the collector's table.
  std::string_view source;
  /// What a machine lacks on which the builder adds nothing.
  const char* none = "no figures";
  /// Looks for what the builder leaves unsaid, behind its pass: makes the final answer of the pass's own. May be null.
  Answer (*look_behind)(Answer answer) = nullptr;
  /// What is asked for itself before the source.
  std::span<const Check> checks_before = {};
};

std::span<const Diagnosis> Diagnoses();

/// The one of `source`, or one that has nothing special.
Diagnosis DiagnosisOf(std::string_view source);

}  // namespace zt::telemetry::host::inspection
