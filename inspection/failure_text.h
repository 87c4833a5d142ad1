#pragma once

#include <cstdint>
#include <string>

#include "zt/telemetry/common/error.h"

namespace zt::telemetry::inspection {

/// A call's status as documentation lists it: "0x80041010"; small numbers in decimal.
std::string StatusText(std::uint32_t status);

/// One line about an outcome that failed.
std::string ErrorText(const common::Error& error);

/// One line about the exception that is being handled; call it inside a catch block only.
std::string CurrentFailureText();

}  // namespace zt::telemetry::inspection
