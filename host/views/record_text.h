#pragma once

#include <google/protobuf/message.h>

#include <string>

namespace zt::telemetry::host {

/// What a record holds, as tables: each section of its layout that holds something, then the fields that have no place
/// in the layout, by their names. Without the record's identity and time. Empty when there is nothing.
std::string SectionsText(const google::protobuf::Message& record);

}  // namespace zt::telemetry::host
