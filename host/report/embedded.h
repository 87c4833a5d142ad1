#pragma once

#include <string_view>

namespace zt::telemetry::host {

/// Of files that the build made, and that the program carries with it: the report's page (page/assemble.py), and the
/// descriptors of the contract with its comments, a google.protobuf.FileDescriptorSet in protobuf's form.
std::string_view EmbeddedPage();
std::string_view EmbeddedContract();

}  // namespace zt::telemetry::host
