#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "battery_protocol.h"
#include "seed_folder.h"

namespace zt::fuzz {
namespace {

namespace battery = shared::battery::protocol;

void AppendNumber(std::string& bytes, std::uint32_t number) {
  for (unsigned shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(number >> shift & 0xFFU);
}

std::string Structure(std::string_view formatted, std::string_view texts) {
  return std::string(formatted) + std::string(texts) + '\0';
}

// System information, a portable battery, the end of the table.
void AddFirmwareTable(SeedFolder& seeds) {
  using namespace std::string_view_literals;
  const std::string structures =
      Structure("\x01\x08\x01\x00\x01\x02\x03\x04"sv,
                "Maker\0Product\0Version\0"
                "5CG0000001\0"sv) +
      Structure(
          "\x16\x1A\x02\x00\x01\x02\x03\x04\x05\x02\x10\x27\x88\x2C\x06\x05\x00\x00\x01\x5A\x05\x0A\x00\x00\x00\x00"sv,
          "Rear\0Maker\0"
          "2025/02/14\0"
          "00042\0Primary\0LION\0"sv) +
      Structure("\x7F\x04\x03\x00"sv, "\0"sv);
  std::string table("\0\x03\x02\0"sv);
  AppendNumber(table, static_cast<std::uint32_t>(structures.size()));
  seeds.Add("smbios", table + structures);
}

// A STORAGE_DEVICE_DESCRIPTOR, a STORAGE_ADAPTER_SERIAL_NUMBER, and names of devices.
void AddDiskAnswers(SeedFolder& seeds) {
  using namespace std::string_view_literals;
  const std::string_view serial = "  S4NXAMPLE00042 \0"sv;
  constexpr std::uint32_t kDescriptorSize = 36;
  constexpr std::uint32_t kNvme = 17;
  std::string descriptor;
  AppendNumber(descriptor, 40);
  AppendNumber(descriptor, kDescriptorSize + static_cast<std::uint32_t>(serial.size()));
  for (const std::uint32_t field : {0U, 0U, 0U, 0U, kDescriptorSize, kNvme, 0U}) AppendNumber(descriptor, field);
  seeds.Add("disk_answer", descriptor + std::string(serial));

  std::string adapter;
  AppendNumber(adapter, 8);
  AppendNumber(adapter, 8 + 2 * 10);
  for (const char unit : "0025_38A1"sv) adapter.append({unit, '\0'});
  seeds.Add("disk_answer", adapter + std::string(2, '\0'));
  seeds.Add("disk_answer", "C:\0PhysicalDrive1\0Volume{a}\0PhysicalDrive0\0PhysicalDrive12\0"sv);
}

std::string BatteryAnswer(std::uint32_t error, const std::string& bytes) {
  return std::string{static_cast<char>(error), static_cast<char>(bytes.size())} + bytes;
}

std::string Units(std::string_view text) {
  std::string units;
  for (const char unit : text) units.append({unit, '\0'});
  return units;
}

// Tag, information, three texts, temperature, status: the answers in the order of the questions.
void AddBattery(SeedFolder& seeds) {
  const battery::Information information{.capabilities = battery::kSystemBattery,
                                         .designed_capacity = 52000,
                                         .full_charged_capacity = 49210,
                                         .cycle_count = 87};
  const battery::Status status{
      .power_state = battery::kDischarging, .capacity = 37107, .voltage = 11800, .rate = -9120};
  const auto bytes_of = [](const auto& fact) { return std::string(reinterpret_cast<const char*>(&fact), sizeof fact); };
  std::string tag;
  AppendNumber(tag, 1);
  std::string temperature;
  AppendNumber(temperature, 3031);
  const std::string answers = BatteryAnswer(0, tag) + BatteryAnswer(0, bytes_of(information)) +
                              BatteryAnswer(0, Units("00042 ")) + BatteryAnswer(0, Units("00042MakerPrimary")) +
                              BatteryAnswer(0, Units("Primary")) + BatteryAnswer(0, temperature) +
                              BatteryAnswer(0, bytes_of(status));
  seeds.Add("battery_answer", answers);
  // The battery leaves its slot, and another one takes its place.
  seeds.Add("battery_answer", BatteryAnswer(0, tag) + BatteryAnswer(battery::kFileNotFound, "") + answers);
}

}  // namespace

void AddDeviceSeeds(SeedFolder& seeds) {
  AddFirmwareTable(seeds);
  AddDiskAnswers(seeds);
  AddBattery(seeds);
}

}  // namespace zt::fuzz
