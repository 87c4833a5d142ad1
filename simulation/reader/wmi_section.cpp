#include <utility>

#include "simulation/reader/sections.h"

namespace zt::simulation::reader {

namespace {

// An integer beyond signed 32 bits arrives as text, as WMI gives 64-bit properties.
WmiProperty AsWmiGivesIt(const Json& integer) {
  const bool fits = integer.is_number_unsigned() ? std::in_range<std::int32_t>(integer.get<std::uint64_t>())
                                                 : std::in_range<std::int32_t>(integer.get<std::int64_t>());
  return fits ? WmiProperty(integer.get<std::int32_t>()) : WmiProperty(integer.dump());
}

}  // namespace

void Read(const Value& value, WmiProperty& property) {
  const Json& json = value.ToJson();
  if (json.is_null()) {
    property = WmiNull{};
  } else if (json.is_boolean()) {
    property = json.get<bool>();
  } else if (json.is_number_integer()) {
    property = AsWmiGivesIt(json);
  } else if (json.is_number_float()) {
    property = json.get<double>();
  } else if (json.is_string()) {
    property = json.get<std::string>();
  } else {
    value.FailExpecting("null, true, false, a number or a text");
  }
}

void Read(const Value& value, WmiRow& row) {
  for (const auto& [name, property] : value.Members()) Read(property, row[name]);
}

void Read(const Value& value, WmiAssociation& association) {
  ReadObject(
      value,
      {{"of", To(association.of)}, {"result_class", To(association.result_class)}, {"rows", To(association.rows)}});
}

void Read(const Value& value, WmiFailure& failure) {
  ReadObject(value, {{"query_contains", To(failure.query_contains)},
                     {"status", ToStatus(failure.status)},
                     {"times", To(failure.times)},
                     {"after", To(failure.after)}});
  if (!value.IsObjectWith("status")) value.Fail("expected the key status, which is missing");
}

void Read(const Value& value, std::map<std::string, std::vector<WmiRow>>& classes) {
  for (const auto& [name, rows] : value.Members()) Read(rows, classes[name]);
}

void Read(const Value& value, Wmi& wmi) {
  ReadObject(value,
             {{"classes", To(wmi.classes)}, {"associations", To(wmi.associations)}, {"failures", To(wmi.failures)}});
}

}  // namespace zt::simulation::reader
