#include "host/views/record_reader.h"

#include <algorithm>

#include "host/views/field_place.h"
#include "host/views/figures.h"

namespace zt::telemetry::host {
namespace {

using google::protobuf::FieldDescriptor;
using google::protobuf::Message;

constexpr std::size_t kLongestListText = 16;  // longer texts of a list (hashes) are shown by their beginning

std::string Shortened(const std::string& text) {
  return text.size() <= kLongestListText ? text : text.substr(0, kLongestListText) + "…";
}

// A flag that is set is told by what it is called.
std::string FlagText(const FieldPlace& place) {
  if (!place.message->GetReflection()->GetBool(*place.message, place.field)) return {};
  const std::string_view label = LabelOf(*place.field);
  return std::string(label.empty() ? std::string_view(place.field->name()) : label);
}

std::string EntryText(const Message& entry) {
  std::string texts;
  std::string numbers;
  std::vector<const FieldDescriptor*> fields;
  entry.GetReflection()->ListFields(entry, &fields);
  for (const FieldDescriptor* field : fields) {
    const FieldPlace place{&entry, field};
    if (IsNumber(*field)) {
      numbers.append(" ").append(NumberText(NumberAt(place))).append(UnitText(*field));
    } else {
      const bool flag = field->cpp_type() == FieldDescriptor::CPPTYPE_BOOL;
      const std::string text = flag ? FlagText(place) : Shortened(PlainText(place, -1));
      if (!text.empty()) texts.append(" ").append(text);
    }
  }
  const std::string text = texts + numbers;
  return text.empty() ? text : text.substr(1);
}

std::string ListText(const FieldPlace& place) {
  std::string text;
  const auto* const reflection = place.message->GetReflection();
  const bool messages = place.field->cpp_type() == FieldDescriptor::CPPTYPE_MESSAGE;
  for (int i = 0; i < reflection->FieldSize(*place.message, place.field); ++i) {
    if (i > 0) text += ", ";
    text += messages ? EntryText(reflection->GetRepeatedMessage(*place.message, place.field, i)) : PlainText(place, i);
  }
  return text;
}

std::string ScalarText(const FieldPlace& place, const Figure& figure) {
  const bool number = IsNumber(*place.field);
  if (number && figure.form == Form::kNumber) return NumberText(NumberAt(place)) + figure.unit;
  if (number && figure.form == Form::kMinutes) return MinutesText(NumberAt(place));
  if (number && figure.form == Form::kKibibytes) return KibibytesText(NumberAt(place));
  if (number && figure.form == Form::kBytes) return BytesText(NumberAt(place));
  const auto* const reflection = place.message->GetReflection();
  if (place.field->cpp_type() == FieldDescriptor::CPPTYPE_UINT32 && figure.form == Form::kSigned) {
    return NumberText(static_cast<std::int32_t>(reflection->GetUInt32(*place.message, place.field))) + figure.unit;
  }
  if (place.field->cpp_type() == FieldDescriptor::CPPTYPE_BOOL && figure.form == Form::kYesNo) {
    return reflection->GetBool(*place.message, place.field) ? "yes" : "no";
  }
  return PlainText(place, -1) + figure.unit;
}

void AddOtherFields(const Message& message, const std::string& prefix, const std::vector<std::string_view>& known,
                    std::vector<std::pair<std::string, std::string>>& others) {
  std::vector<const FieldDescriptor*> fields;
  message.GetReflection()->ListFields(message, &fields);
  for (const FieldDescriptor* field : fields) {
    const std::string path = prefix + std::string(field->name());
    if (std::find(known.begin(), known.end(), path) != known.end()) continue;
    const FieldPlace place{&message, field};
    const bool holds_known =
        std::any_of(known.begin(), known.end(), [&](std::string_view name) { return name.starts_with(path + "."); });
    if (holds_known && !field->is_repeated()) {
      AddOtherFields(message.GetReflection()->GetMessage(message, field), path + ".", known, others);
    } else {
      others.emplace_back(path, field->is_repeated() ? ListText(place) : PlainText(place, -1));
    }
  }
}

}  // namespace

std::optional<std::string> FigureText(const Message& message, const Figure& figure) {
  const FieldPlace place = PlaceOf(message, figure.path);
  if (figure.form == Form::kOmitted || !IsSet(place)) return std::nullopt;
  return place.field->is_repeated() ? ListText(place) : ScalarText(place, figure);
}

std::string TextAt(const Message& message, std::string_view path) {
  return FigureText(message, {path, std::string(path)}).value_or("");
}

std::vector<const Message*> MessagesAt(const Message& message, std::string_view path) {
  if (path.empty()) return {&message};
  const FieldPlace place = PlaceOf(message, path);
  if (!IsSet(place) || place.field->cpp_type() != FieldDescriptor::CPPTYPE_MESSAGE) return {};
  const auto* const reflection = place.message->GetReflection();
  if (!place.field->is_repeated()) return {&reflection->GetMessage(*place.message, place.field)};
  const int size = reflection->FieldSize(*place.message, place.field);
  std::vector<const Message*> messages;
  messages.reserve(static_cast<std::size_t>(size));
  for (int i = 0; i < size; ++i) {
    messages.push_back(&reflection->GetRepeatedMessage(*place.message, place.field, i));
  }
  return messages;
}

std::vector<std::pair<std::string, std::string>> OtherFields(const Message& message,
                                                             const std::vector<std::string_view>& known) {
  std::vector<std::pair<std::string, std::string>> others;
  AddOtherFields(message, "", known, others);
  return others;
}

}  // namespace zt::telemetry::host
