#pragma once

#include <google/protobuf/message.h>

#include <memory>
#include <string>

#include "host/outbox/outbox.h"

namespace zt::telemetry::host {

inline constexpr char kStoreKind[] = "store";
inline constexpr char kSendKind[] = "send";
inline constexpr char kTextMessage[] = "text";

/// A record that was handed over, as it is kept.
HandOver Kept(const std::string& kind, const google::protobuf::Message& record);
/// A text that was handed over, as it is kept.
HandOver KeptText(const std::string& text);

/// The record of a kept hand-over; null for a text, for a type that this program does not know, and for bytes that are
/// no record of the type.
std::unique_ptr<google::protobuf::Message> RecordOf(const HandOver& hand_over);

}  // namespace zt::telemetry::host
