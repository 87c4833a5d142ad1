#include "simulation/reader/value.h"

#include <algorithm>
#include <cstddef>

#include "simulation/profile.h"

namespace zt::simulation::reader {
namespace {

constexpr std::size_t kLongestFound = 60;

// As JSON, a long one cut between characters.
std::string Describe(const Json& json) {
  if (json.is_object()) return "an object";
  if (json.is_array()) return "a list";
  std::string text = json.dump();
  if (text.size() <= kLongestFound) return text;
  std::size_t end = kLongestFound;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
  return text.substr(0, end) + "...";
}

std::string ListOfKeys(const std::vector<Field>& fields) {
  std::string result;
  for (const Field& field : fields) result += (result.empty() ? "" : ", ") + std::string(field.key);
  return result;
}

}  // namespace

std::vector<std::pair<std::string, Value>> Value::Members() const {
  if (!json_->is_object()) FailExpecting("an object");
  std::vector<std::pair<std::string, Value>> members;
  for (const auto& [key, member] : json_->items()) members.emplace_back(key, Child(member, key));
  return members;
}

std::vector<Value> Value::Elements() const {
  if (!json_->is_array()) FailExpecting("a list");
  std::vector<Value> elements;
  for (const Json& element : *json_) elements.push_back(Child(element, std::to_string(elements.size())));
  return elements;
}

Value Value::Or(const std::string& alternative) const {
  Value value = *this;
  value.alternative_ += " or " + alternative;
  return value;
}

void Value::FailExpecting(const std::string& expected) const {
  Fail("expected " + expected + alternative_ + ", found " + Describe(*json_));
}

void Value::Fail(const std::string& reason) const {
  throw ProfileError(*file_ + ": " + (path_.empty() ? "/" : path_) + ": " + reason);
}

Value Value::Child(const Json& json, std::string_view step) const {
  Value child(json, *file_);
  child.path_ = Below(path_, step);
  return child;
}

void ReadObject(const Value& value, const std::vector<Field>& fields) {
  for (const auto& member : value.Members()) {
    const auto field =
        std::find_if(fields.begin(), fields.end(), [&](const Field& known) { return member.first == known.key; });
    if (field == fields.end()) member.second.Fail("unknown key, expected one of: " + ListOfKeys(fields));
    field->read(member.second);
  }
}

}  // namespace zt::simulation::reader
