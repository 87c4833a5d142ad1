#pragma once

#include <string_view>

namespace zt::telemetry::host {

/// The report's page, which the build puts together (page/assemble.py) and the program carries with it.
std::string_view EmbeddedPage();

}  // namespace zt::telemetry::host
