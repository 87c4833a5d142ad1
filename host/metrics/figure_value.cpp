#include "host/metrics/figure_value.h"

#include <google/protobuf/descriptor.h>

#include <array>
#include <charconv>
#include <cmath>
#include <vector>

#include "contract_annotations.pb.h"
#include "host/metrics/base_unit.h"
#include "host/metrics/open_metrics.h"
#include "host/views/record_reader.h"

namespace zt::telemetry::host {
namespace {

using google::protobuf::FieldDescriptor;
using google::protobuf::Message;

const contract::Shown& ShownBy(const FieldDescriptor& field) {
  return field.options().GetExtension(contract::shown);
}

// A field that is set, in the message that holds it.
struct SetField {
  const Message* message = nullptr;
  const FieldDescriptor* field = nullptr;
};

std::optional<SetField> Find(const Message& message, std::string_view path) {
  const std::size_t dot = path.rfind('.');
  const std::string_view around = dot == std::string_view::npos ? std::string_view() : path.substr(0, dot);
  const std::string name(dot == std::string_view::npos ? path : path.substr(dot + 1));
  const std::vector<const Message*> holders = MessagesAt(message, around);
  if (holders.empty()) return std::nullopt;
  const Message& holder = *holders.front();
  const FieldDescriptor* const field = holder.GetDescriptor()->FindFieldByName(name);
  const auto* const reflection = holder.GetReflection();
  const bool set =
      field->is_repeated() ? reflection->FieldSize(holder, field) > 0 : reflection->HasField(holder, field);
  return set ? std::optional(SetField{&holder, field}) : std::nullopt;
}

// 75.41 as a float is 75.4100036… as a double: what is meant is the shortest decimal that gives the float.
double Widened(float value) {
  if (!std::isfinite(value)) return value;
  constexpr std::size_t kLongest = 64;
  std::array<char, kLongest> text{};
  const auto written = std::to_chars(text.data(), text.data() + text.size(), value);
  double widened = 0;
  std::from_chars(text.data(), written.ptr, widened);
  return widened;
}

double Unsigned32(const SetField& place) {
  const std::uint32_t bits = place.message->GetReflection()->GetUInt32(*place.message, place.field);
  return ShownBy(*place.field).signed_bits() ? static_cast<double>(static_cast<std::int32_t>(bits)) : bits;
}

double Number(const SetField& place) {
  const auto& [message, field] = place;
  const auto* const reflection = message->GetReflection();
  switch (field->cpp_type()) {
    case FieldDescriptor::CPPTYPE_BOOL:
      return reflection->GetBool(*message, field) ? 1 : 0;
    case FieldDescriptor::CPPTYPE_INT32:
      return reflection->GetInt32(*message, field);
    case FieldDescriptor::CPPTYPE_INT64:
      return static_cast<double>(reflection->GetInt64(*message, field));
    case FieldDescriptor::CPPTYPE_UINT32:
      return Unsigned32(place);
    case FieldDescriptor::CPPTYPE_UINT64:
      return static_cast<double>(reflection->GetUInt64(*message, field));
    case FieldDescriptor::CPPTYPE_FLOAT:
      return Widened(reflection->GetFloat(*message, field));
    default:
      return reflection->GetDouble(*message, field);
  }
}

std::string Words(const SetField& place) {
  const auto* const reflection = place.message->GetReflection();
  if (!place.field->is_repeated()) return reflection->GetString(*place.message, place.field);
  std::string words;
  for (int i = 0; i < reflection->FieldSize(*place.message, place.field); ++i) {
    if (i > 0) words += ',';
    words += reflection->GetRepeatedString(*place.message, place.field, i);
  }
  return words;
}

}  // namespace

std::string MetricUnitOf(const FieldDescriptor& field) {
  const std::string& unit = ShownBy(field).unit();
  const std::optional<BaseUnit> base = BaseUnitOf(unit);
  return base.has_value() ? std::string(base->name) : MetricWord(unit);
}

std::optional<double> FigureValue(const Message& message, std::string_view path) {
  const std::optional<SetField> place = Find(message, path);
  if (!place.has_value()) return std::nullopt;
  const BaseUnit base = BaseUnitOf(ShownBy(*place->field).unit()).value_or(BaseUnit{});
  return Number(*place) * base.times / base.divided_by;
}

std::optional<std::string> FigureWords(const Message& message, std::string_view path) {
  const std::optional<SetField> place = Find(message, path);
  if (!place.has_value()) return std::nullopt;
  if (place->field->cpp_type() == FieldDescriptor::CPPTYPE_STRING) return Words(*place);
  return std::to_string(static_cast<std::int64_t>(Number(*place)));
}

}  // namespace zt::telemetry::host
