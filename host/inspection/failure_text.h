#pragma once

#include <cstdint>
#include <string>

#include "zt/telemetry/common/error.h"

namespace zt::telemetry::host::inspection {

/// One line, UTF-8, about the exception that is being handled: its own words, and a call's status. The collector's log
/// tells less: of a standard exception it knows nothing ("Unknown exception type."). Call it inside a catch block only.
std::string CurrentFailureText();

/// One line about an outcome that failed: its description, and the status where a call gave one.
std::string OutcomeText(const common::Error& outcome);

/// A call's status as documentation lists it: "0x80041010"; small numbers in decimal.
std::string StatusText(std::uint32_t status);

}  // namespace zt::telemetry::host::inspection
