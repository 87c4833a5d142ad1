#pragma once

#include <google/protobuf/message.h>

#include <memory>
#include <string>

namespace zt::telemetry::host {

/// A record in protobuf's form; null for bytes that are no record of the type `type`, a full name, and for a type that
/// this program does not know. Texts in it that are no UTF-8, which protobuf refuses, have U+FFFD in place of what is
/// wrong.
std::unique_ptr<google::protobuf::Message> RecordFromBytes(const std::string& type, const std::string& bytes);

/// A new record of the type `type`, a full name; null for a type that this program does not know.
std::unique_ptr<google::protobuf::Message> NewRecord(const std::string& type);

/// `text` with U+FFFD in place of what is no UTF-8.
std::string ValidUtf8(const std::string& text);

}  // namespace zt::telemetry::host
