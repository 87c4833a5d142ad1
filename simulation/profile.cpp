#include "simulation/profile.h"

#include <fstream>
#include <sstream>
#include <system_error>

#include "simulation/reader/sections.h"

namespace zt::simulation {
namespace {

using reader::To;
using reader::Value;

void ReadSerialNumber(const Value& value, std::optional<std::string>& serial_number) {
  if (!value.ToJson().is_null()) Read(value.Or("null"), serial_number);
}

void ReadSmbios(const Value& value, Machine& machine) {
  if (value.ToJson().is_null()) return;
  if (value.IsObjectWith("fails")) return Read(value, machine.smbios_failure);
  ReadObject(value.Or("null"), {{"serial_number", [&](const Value& serial_number) {
                                   ReadSerialNumber(serial_number, machine.smbios_serial_number);
                                 }}});
}

void ReadRegistry(const Value& value, Machine& machine) {
  for (const auto& [path, key] : value.Members()) {
    Read(key, machine.registry.emplace_back(RegistryKey{path, {}, {}}));
  }
}

void ReadNpuReport(const Value& value, Machine& machine) {
  if (value.IsObjectWith("fails")) return Read(value, machine.npu_failure);
  const reader::Json& json = value.ToJson();
  machine.npu_report = json.is_string() ? json.get<std::string>() : json.dump();
}

Machine ReadMachine(const Value& value) {
  Machine machine;
  ReadObject(value, {{"description", To(machine.description)},
                     {"clock", To(machine.clock)},
                     {"smbios", [&](const Value& smbios) { ReadSmbios(smbios, machine); }},
                     {"power_status",
                      [&](const Value& status) {
                        ReadObject(status, {{"battery_flag", To(machine.battery_flag)}});
                      }},
                     {"batteries", To(machine.batteries)},
                     {"sensors", To(machine.sensors)},
                     {"wmi", To(machine.wmi)},
                     {"private_bios", To(machine.private_bios)},
                     {"nvml", To(machine.nvml)},
                     {"adlx", To(machine.adlx)},
                     {"registry", [&](const Value& registry) { ReadRegistry(registry, machine); }},
                     {"npu_report", [&](const Value& report) { ReadNpuReport(report, machine); }},
                     {"storage_library", To(machine.storage_library)},
                     {"session", To(machine.session)},
                     {"processes", To(machine.processes)},
                     {"network", To(machine.network)},
                     {"system_messages", To(machine.system_messages)}});
  return machine;
}

std::string NameOf(const std::filesystem::path& file) {
  const std::u8string name = file.u8string();
  return {name.begin(), name.end()};
}

std::string ReadText(const std::filesystem::path& file) {
  std::error_code ignored;
  const std::filesystem::file_status status = std::filesystem::status(file, ignored);
  if (!std::filesystem::exists(status)) throw ProfileError(NameOf(file) + ": there is no such file");
  if (std::filesystem::is_directory(status)) throw ProfileError(NameOf(file) + ": it is a folder, expected a file");
  std::ifstream stream(file, std::ios::binary);
  std::ostringstream text;
  if (stream) text << stream.rdbuf();
  if (!stream) throw ProfileError(NameOf(file) + ": the file cannot be read");
  return text.str();
}

}  // namespace

Machine ParseProfile(std::string_view json, const std::string& name) {
  const reader::Json parsed = reader::ParseJson(json, name);
  return ReadMachine(Value(parsed, name));
}

Machine ReadProfile(const std::filesystem::path& file) {
  return ParseProfile(ReadText(file), NameOf(file));
}

}  // namespace zt::simulation
