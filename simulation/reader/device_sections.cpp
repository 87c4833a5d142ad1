#include <array>
#include <limits>
#include <string_view>

#include "simulation/reader/sections.h"
#include "simulation/reader/time_text.h"

namespace zt::simulation::reader {
namespace {

constexpr std::int32_t kMostOffsetMinutes = 24 * 60 - 1;
constexpr std::int32_t kLastOrientation = 5;

struct NamedOutcome {
  std::string_view name;
  HingeOutcome outcome;
};
constexpr std::array<NamedOutcome, 3> kOutcomes = {{{"sensor_timeout", HingeOutcome::kSensorTimeout},
                                                    {"reading_timeout", HingeOutcome::kReadingTimeout},
                                                    {"no_reading", HingeOutcome::kNoReading}}};

Reader ToOffset(std::int32_t& minutes) {
  return [&minutes](const Value& value) { ReadInteger(value, -kMostOffsetMinutes, kMostOffsetMinutes, minutes); };
}

void ReadAngle(const Value& value, double& degrees) {
  if (value.ToJson() == "nan") {
    degrees = std::numeric_limits<double>::quiet_NaN();
  } else {
    Read(value.Or("\"nan\""), degrees);
  }
}

void ReadOutcome(const Value& value, HingeOutcome& outcome) {
  const auto* const name = value.ToJson().get_ptr<const Json::string_t*>();
  for (const NamedOutcome& known : kOutcomes) {
    if (name != nullptr && *name == known.name) {
      outcome = known.outcome;
      return;
    }
  }
  value.FailExpecting(R"("sensor_timeout", "reading_timeout" or "no_reading")");
}

void ReadHinge(const Value& value, Hinge& hinge) {
  ReadObject(value, {{"angle_degrees", [&](const Value& angle) { ReadAngle(angle, hinge.angle_degrees); }},
                     {"outcome", [&](const Value& outcome) { ReadOutcome(outcome, hinge.outcome); }}});
  if (value.IsObjectWith("angle_degrees") && value.IsObjectWith("outcome")) {
    value.Fail("expected either angle_degrees or outcome, found both");
  }
}

void ReadOrientation(const Value& value, Answer<std::int32_t>& orientation) {
  if (value.IsObjectWith("fails")) {
    Read(value, orientation);
  } else {
    ReadInteger(value.Or(R"({"fails": status})"), 0, kLastOrientation, orientation.emplace<std::int32_t>());
  }
}

}  // namespace

void Read(const Value& value, Clock& clock) {
  const auto read_now = [&](const Value& now) {
    clock.utc_seconds = std::chrono::duration_cast<std::chrono::seconds>(ReadMoment(now, 0)).count();
  };
  ReadObject(value, {{"now", read_now},
                     {"standard_offset_minutes", ToOffset(clock.standard_offset_minutes)},
                     {"local_offset_minutes", ToOffset(clock.local_offset_minutes)}});
  if (!value.IsObjectWith("now")) clock.utc_seconds.reset();
  if (!value.IsObjectWith("local_offset_minutes")) clock.local_offset_minutes = clock.standard_offset_minutes;
}

void Read(const Value& value, std::optional<Battery>& battery) {
  if (value.ToJson().is_null()) return;
  Battery& read = battery.emplace();
  if (value.IsObjectWith("fails")) return Read(value, read.failure);
  ReadObject(value.Or("null"), {{"serial_number", To(read.serial_number)},
                                {"ct_number", To(read.ct_number)},
                                {"design_voltage_mv", To(read.design_voltage_mv)},
                                {"further_capacity_mwh", To(read.further_capacity_mwh)},
                                {"full_charge_capacity_mwh", To(read.full_charge_capacity_mwh)},
                                {"full_charge_percent", To(read.full_charge_percent)},
                                {"remaining_capacity_mwh", To(read.remaining_capacity_mwh)},
                                {"remaining_percent", To(read.remaining_percent)},
                                {"max_error_percent", To(read.max_error_percent)},
                                {"cycle_count", To(read.cycle_count)},
                                {"temperature_celsius", To(read.temperature_celsius)},
                                {"voltage_mv", To(read.voltage_mv)},
                                {"electric_current", To(read.electric_current)},
                                {"status_code", To(read.status_code)},
                                {"on_ac_not_charging", To(read.on_ac_not_charging)},
                                {"discharging", To(read.discharging)},
                                {"charge_rate_mw", To(read.charge_rate_mw)},
                                {"discharge_rate_mw", To(read.discharge_rate_mw)}});
}

void Read(const Value& value, Sensors& sensors) {
  ReadObject(value, {{"apartment", To(sensors.apartment)},
                     {"hinge", [&](const Value& hinge) { ReadHinge(hinge, sensors.hinge.emplace()); }},
                     {"orientation",
                      [&](const Value& orientation) { ReadOrientation(orientation, sensors.orientation.emplace()); }}});
}

void Read(const Value& value, BiosReply& reply) {
  ReadObject(value, {{"command", To(reply.command)},
                     {"command_type", To(reply.command_type)},
                     {"input", To(reply.input)},
                     {"result", ToStatus(reply.result)},
                     {"return_code", ToStatus(reply.return_code)},
                     {"output", To(reply.output)}});
}

void Read(const Value& value, LibraryDrive& drive) {
  ReadObject(value, {{"name", To(drive.name)}, {"wmi_serial", To(drive.wmi_serial)}});
}

void Read(const Value& value, SystemMessage& message) {
  ReadObject(value, {{"code", ToStatus(message.code)}, {"text", To(message.text)}});
}

void Read(const Value& value, RegistryKey& key) {
  if (value.IsObjectWith("fails") && value.ToJson().at("fails").is_number()) return Read(value, key.failure);
  for (const auto& [name, member] : value.Members()) {
    if (member.ToJson().is_string()) {
      Read(member, key.values.emplace_back(name, std::string{}).second);
    } else if (member.ToJson().is_object()) {
      Read(member, key.keys.emplace_back(RegistryKey{name, {}, {}}));
    } else {
      member.FailExpecting("an object (a key) or a text (a value)");
    }
  }
}

}  // namespace zt::simulation::reader
