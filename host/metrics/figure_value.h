#pragma once

#include <google/protobuf/message.h>

#include <optional>
#include <string>
#include <string_view>

namespace zt::telemetry::host {

/// The base unit of a field's figure, the contract's own unit where that is not known, empty where it has none.
std::string MetricUnitOf(const google::protobuf::FieldDescriptor& field);

/// The number or flag (1 or 0) at `path` of `message`, in its base unit; nothing where it is unset.
std::optional<double> FigureValue(const google::protobuf::Message& message, std::string_view path);

/// The text at `path`, a list's texts joined by commas, or the number as a text; nothing where it is unset.
std::optional<std::string> FigureWords(const google::protobuf::Message& message, std::string_view path);

}  // namespace zt::telemetry::host
