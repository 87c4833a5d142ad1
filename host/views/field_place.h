#pragma once

#include <google/protobuf/descriptor.h>
#include <google/protobuf/message.h>

#include <string>
#include <string_view>

namespace zt::telemetry::host {

/// A field in the message that directly holds it; null descriptor when there is none.
struct FieldPlace {
  const google::protobuf::Message* message = nullptr;
  const google::protobuf::FieldDescriptor* field = nullptr;
};

/// The field at `path`: names joined by dots, from `message` on. None when a name is unknown, or one before the last is
/// no single message.
FieldPlace PlaceOf(const google::protobuf::Message& message, std::string_view path);

/// Whether there is a field, and it is set; a list is set when it has entries.
bool IsSet(const FieldPlace& place);

bool IsNumber(const google::protobuf::FieldDescriptor& field);

/// The value of a singular field of numbers.
double NumberAt(const FieldPlace& place);

/// A value in the contract's own notation; `index` is -1 for a singular field.
std::string PlainText(const FieldPlace& place, int index);

}  // namespace zt::telemetry::host
