#include "outcome.h"

#include <google/protobuf/io/coded_stream.h>
#include <google/protobuf/io/zero_copy_stream_impl_lite.h>
#include <google/protobuf/text_format.h>

#include <algorithm>
#include <iterator>
#include <set>
#include <string_view>
#include <utility>

namespace zt::tests {
namespace {

using google::protobuf::FieldDescriptor;
using google::protobuf::Message;
using google::protobuf::Reflection;

using Values = std::multimap<std::string, std::string>;

std::string Bytes(const Message& message) {
  std::string bytes;
  {
    google::protobuf::io::StringOutputStream stream(&bytes);
    google::protobuf::io::CodedOutputStream coded(&stream);
    coded.SetSerializationDeterministic(true);
    message.SerializePartialToCodedStream(&coded);
  }
  return bytes;
}

std::vector<const FieldDescriptor*> FieldsOf(const Message& message) {
  std::vector<const FieldDescriptor*> fields;
  message.GetReflection()->ListFields(message, &fields);
  return fields;
}

int ElementsOf(const Message& parent, const FieldDescriptor& field) {
  return field.is_repeated() ? parent.GetReflection()->FieldSize(parent, &field) : 1;
}

const Message& ElementOf(const Message& parent, const FieldDescriptor& field, int index) {
  const Reflection& reflection = *parent.GetReflection();
  return field.is_repeated() ? reflection.GetRepeatedMessage(parent, &field, index)
                             : reflection.GetMessage(parent, &field);
}

std::string ValueText(const Message& parent, const FieldDescriptor& field, int index) {
  std::string text;
  google::protobuf::TextFormat::PrintFieldValueToString(parent, &field, field.is_repeated() ? index : -1, &text);
  return text;
}

// What the field holds, so that two fields that hold the same give the same, and only those.
std::string FieldBytes(const Message& parent, const FieldDescriptor& field) {
  std::string bytes;
  for (int i = 0; i < ElementsOf(parent, field); ++i) {
    const bool is_message = field.cpp_type() == FieldDescriptor::CPPTYPE_MESSAGE;
    const std::string element = is_message ? Bytes(ElementOf(parent, field, i)) : ValueText(parent, field, i);
    bytes += std::to_string(element.size()) + ':' + element;
  }
  return bytes;
}

void AddValues(const Message& parent, const FieldDescriptor& field, const std::string& prefix, Values& values) {
  const std::string name = prefix + std::string(field.name());
  for (int i = 0; i < ElementsOf(parent, field); ++i) {
    if (field.cpp_type() != FieldDescriptor::CPPTYPE_MESSAGE) {
      values.emplace(name, ValueText(parent, field, i));
      continue;
    }
    const Message& element = ElementOf(parent, field, i);
    for (const FieldDescriptor* const inner : FieldsOf(element)) AddValues(element, *inner, name + '.', values);
  }
}

Values ValuesOf(const Section& section) {
  Values values;
  if (section.field == nullptr) return {section.fields.begin(), section.fields.end()};
  AddValues(*section.parent, *section.field, "", values);
  return values;
}

void AddSection(const std::string& name, const Message& parent, const FieldDescriptor& field, Outcome& outcome) {
  outcome.sections[name] = {FieldBytes(parent, field), {}, &parent, &field, &parent};
}

// The names whose values are not the same on both sides.
std::set<std::string> DifferentFields(const Values& left, const Values& right) {
  std::vector<Values::value_type> different;
  const auto sorted = [](const Values& values) {
    std::vector<std::pair<std::string, std::string>> list(values.begin(), values.end());
    std::sort(list.begin(), list.end());
    return list;
  };
  const auto ours = sorted(left);
  const auto theirs = sorted(right);
  std::vector<std::pair<std::string, std::string>> unmatched;
  std::set_symmetric_difference(ours.begin(), ours.end(), theirs.begin(), theirs.end(), std::back_inserter(unmatched));
  std::set<std::string> names;
  for (const auto& [name, value] : unmatched) names.insert(name);
  return names;
}

std::string HowMany(const Section& undisturbed, const Section& section) {
  if (section.field == nullptr || !section.field->is_repeated()) return {};
  const int before = ElementsOf(*undisturbed.parent, *undisturbed.field);
  const int now = ElementsOf(*section.parent, *section.field);
  return before == now ? "" : std::to_string(now) + " of " + std::to_string(before) + ": ";
}

// Without the section's own name, which stands in front.
std::string ShortName(const Section& section, const std::string& name) {
  const std::size_t own = section.field != nullptr ? name.find('.') : std::string::npos;
  return own == std::string::npos ? name : name.substr(own + 1);
}

std::string Difference(const Section& undisturbed, const Section& section) {
  constexpr std::size_t kMostNames = 6;
  const std::string how_many = HowMany(undisturbed, section);
  const std::set<std::string> names = DifferentFields(ValuesOf(undisturbed), ValuesOf(section));
  if (names.empty()) return how_many + "other order";
  if (names.size() > kMostNames) return how_many + std::to_string(names.size()) + " fields";
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : ", ") + ShortName(section, name);
  return how_many + text;
}

// "thermal hour 1" of "thermal hour 1 cpus_info"; empty for a section that is no record's.
std::string RecordOf(const std::string& section_name, const Section& section) {
  return section.field != nullptr ? section_name.substr(0, section_name.rfind(' ')) : "";
}

std::vector<std::string> AbsentRecords(const Outcome& undisturbed, const Outcome& outcome) {
  std::map<std::string, bool> absent;
  for (const auto& [name, section] : undisturbed.sections) {
    const std::string record = RecordOf(name, section);
    if (record.empty()) continue;
    const auto [entry, added] = absent.try_emplace(record, true);
    entry->second = entry->second && !outcome.sections.contains(name);
  }
  std::vector<std::string> records;
  for (const auto& [record, is_absent] : absent) {
    if (is_absent) records.push_back(record);
  }
  return records;
}

// What stands behind "description": in a result.
std::string DescriptionIn(const std::string& result) {
  constexpr std::string_view kKey = "\"description\":";
  const std::size_t key = result.find(kKey);
  if (key == std::string::npos) return result;
  const std::size_t begin = key + kKey.size();
  return result.substr(begin, result.find(",\"kind\"", begin) - begin);
}

std::vector<std::string> Missing(std::vector<std::string> from, const std::vector<std::string>& in) {
  for (const std::string& line : in) {
    const auto found = std::find(from.begin(), from.end(), line);
    if (found != from.end()) from.erase(found);
  }
  return from;
}

// Each line once, with how often it comes where that is more than once.
std::vector<std::string> Counted(const std::vector<std::string>& lines) {
  std::vector<std::string> counted;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (std::find(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(i), lines[i]) !=
        lines.begin() + static_cast<std::ptrdiff_t>(i)) {
      continue;
    }
    const auto times = std::count(lines.begin(), lines.end(), lines[i]);
    counted.push_back(times == 1 ? lines[i] : lines[i] + " (" + std::to_string(times) + " times)");
  }
  return counted;
}

}  // namespace

void AddRecord(const std::string& name, std::shared_ptr<Message> record, Outcome& outcome) {
  for (const FieldDescriptor* const field : FieldsOf(*record)) {
    const std::string field_name(field->name());
    if (field_name != "hw_info" && field_name != "operating_system_info") {
      AddSection(name + ' ' + field_name, *record, *field, outcome);
      continue;
    }
    const Message& part = record->GetReflection()->GetMessage(*record, field);
    for (const FieldDescriptor* const inner : FieldsOf(part)) {
      AddSection(name + ' ' + std::string(inner->name()), part, *inner, outcome);
    }
  }
  outcome.records.push_back(std::move(record));
}

Effect Compare(const Outcome& undisturbed, const Outcome& outcome) {
  Effect effect;
  if (outcome.result != undisturbed.result) effect.result = outcome.result;
  for (const auto& [name, section] : undisturbed.sections) {
    const auto found = outcome.sections.find(name);
    if (found == outcome.sections.end()) {
      effect.sections[name] = "absent";
    } else if (found->second.bytes != section.bytes) {
      effect.sections[name] = Difference(section, found->second);
    }
  }
  for (const auto& [name, section] : outcome.sections) {
    if (!undisturbed.sections.contains(name)) effect.sections[name] = "new";
  }
  effect.absent_records = AbsentRecords(undisturbed, outcome);
  effect.added_lines = Missing(outcome.log, undisturbed.log);
  effect.missing_lines = Missing(undisturbed.log, outcome.log);
  return effect;
}

std::string ToText(const Effect& effect) {
  if (effect == Effect()) return "nothing";
  std::string text;
  const auto add = [&text](const std::string& part) { text += (text.empty() ? "" : "; ") + part; };
  if (!effect.result.empty()) add("result " + DescriptionIn(effect.result));
  for (const std::string& record : effect.absent_records) add(record + " (absent)");
  for (const auto& [name, how] : effect.sections) {
    const std::string record = name.substr(0, name.rfind(' '));
    const auto& absent = effect.absent_records;
    if (std::find(absent.begin(), absent.end(), record) == absent.end()) add(name + " (" + how + ")");
  }
  for (const std::string& line : Counted(effect.added_lines)) add('+' + line);
  for (const std::string& line : Counted(effect.missing_lines)) add('-' + line);
  return Shortened(text);
}

std::string Shortened(const std::string& text) {
  constexpr std::size_t kLongestRun = 8;
  std::string shortened;
  std::size_t run = 0;
  for (const char character : text) {
    run = !shortened.empty() && shortened.back() == character ? run + 1 : 0;
    if (run >= kLongestRun) continue;
    if (character == '\r' || character == '\n') {
      shortened += character == '\r' ? "\\r" : "\\n";
    } else {
      shortened += character;
    }
  }
  return shortened;
}

}  // namespace zt::tests
