#pragma once

#include <google/protobuf/message.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/views/record_layout.h"

namespace zt::telemetry::host {

/// The figure's value in `message` as people read it; nothing when the field is unset, the list empty or the figure not
/// to be shown. A path that the message type does not have counts as unset.
std::optional<std::string> FigureText(const google::protobuf::Message& message, const Figure& figure);

/// The text at `path`, empty when unset.
std::string TextAt(const google::protobuf::Message& message, std::string_view path);

/// The messages at `path`: the entries of a repeated field, the one message of a singular field that is set, or
/// `message` itself for an empty path.
std::vector<const google::protobuf::Message*> MessagesAt(const google::protobuf::Message& message,
                                                         std::string_view path);

/// The fields of `message` that are set and whose paths `known` does not hold, each with its value: what a layout
/// leaves out. A message that holds a known field is looked into.
std::vector<std::pair<std::string, std::string>> OtherFields(const google::protobuf::Message& message,
                                                             const std::vector<std::string_view>& known);

}  // namespace zt::telemetry::host
