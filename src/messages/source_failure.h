#pragma once

#include <cstdint>
#include <string>

#include "zt/telemetry/common/error.h"

namespace zt::telemetry::collector::performancesamples {

/// What an exception says that ended a source's pass.
struct SourceFailure {
  /// As the log tells it: of a standard exception it knows nothing ("Unknown exception type.").
  common::Error error;
  /// One line, UTF-8, for those who ask a source about itself: the exception's own words, and a call's status.
  std::string own_words;
};

/// Of the exception that is being handled; call it inside a catch block only.
SourceFailure CurrentSourceFailure();

/// One line about an outcome that failed: its description, and the status where a call gave one.
std::string OutcomeText(const common::Error& outcome);

/// A call's status as documentation lists it: "0x80041010"; small numbers in decimal.
std::string StatusText(std::uint32_t status);

}  // namespace zt::telemetry::collector::performancesamples
