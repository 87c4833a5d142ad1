#include "host/views/field_place.h"

#include <google/protobuf/text_format.h>

#include <cstdint>

namespace zt::telemetry::host {

using google::protobuf::FieldDescriptor;
using google::protobuf::Message;

FieldPlace PlaceOf(const Message& message, std::string_view path) {
  const std::size_t dot = path.find('.');
  const FieldDescriptor* const field = message.GetDescriptor()->FindFieldByName(std::string(path.substr(0, dot)));
  if (field == nullptr || dot == std::string_view::npos) return {&message, field};
  if (field->cpp_type() != FieldDescriptor::CPPTYPE_MESSAGE || field->is_repeated()) return {};
  return PlaceOf(message.GetReflection()->GetMessage(message, field), path.substr(dot + 1));
}

bool IsSet(const FieldPlace& place) {
  if (place.field == nullptr) return false;
  const auto* const reflection = place.message->GetReflection();
  if (place.field->is_repeated()) return reflection->FieldSize(*place.message, place.field) > 0;
  return reflection->HasField(*place.message, place.field);
}

bool IsNumber(const FieldDescriptor& field) {
  switch (field.cpp_type()) {
    case FieldDescriptor::CPPTYPE_INT32:
    case FieldDescriptor::CPPTYPE_INT64:
    case FieldDescriptor::CPPTYPE_UINT32:
    case FieldDescriptor::CPPTYPE_UINT64:
    case FieldDescriptor::CPPTYPE_FLOAT:
    case FieldDescriptor::CPPTYPE_DOUBLE:
      return true;
    default:
      return false;
  }
}

double NumberAt(const FieldPlace& place) {
  const auto* const reflection = place.message->GetReflection();
  switch (place.field->cpp_type()) {
    case FieldDescriptor::CPPTYPE_INT32:
      return reflection->GetInt32(*place.message, place.field);
    case FieldDescriptor::CPPTYPE_INT64:
      return static_cast<double>(reflection->GetInt64(*place.message, place.field));
    case FieldDescriptor::CPPTYPE_UINT32:
      return reflection->GetUInt32(*place.message, place.field);
    case FieldDescriptor::CPPTYPE_UINT64:
      return static_cast<double>(reflection->GetUInt64(*place.message, place.field));
    case FieldDescriptor::CPPTYPE_FLOAT:
      return reflection->GetFloat(*place.message, place.field);
    default:
      return reflection->GetDouble(*place.message, place.field);
  }
}

std::string PlainText(const FieldPlace& place, int index) {
  const auto* const reflection = place.message->GetReflection();
  if (place.field->cpp_type() == FieldDescriptor::CPPTYPE_STRING) {
    return index < 0 ? reflection->GetString(*place.message, place.field)
                     : reflection->GetRepeatedString(*place.message, place.field, index);
  }
  google::protobuf::TextFormat::Printer printer;
  printer.SetSingleLineMode(true);
  std::string text;
  printer.PrintFieldValueToString(*place.message, place.field, index, &text);
  if (text.ends_with(' ')) text.pop_back();  // the printer parts the fields of a message by blanks
  return text;
}

}  // namespace zt::telemetry::host
