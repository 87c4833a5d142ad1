#pragma once

#include <string_view>

namespace zt::telemetry::contract {

/// The `.proto` files of the records with their comments, as bytes of a `google.protobuf.FileDescriptorSet`.
std::string_view ContractFiles();

}  // namespace zt::telemetry::contract
