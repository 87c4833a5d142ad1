#include "zt/shared/smbios/smbios_info.h"

#include "structures.h"
#include "system_firmware_reader.h"

namespace zt::shared::smbios {
namespace {

constexpr std::uint8_t kSystemInformation = 1;
constexpr std::uint8_t kPortableBattery = 22;

// Offsets inside the formatted part of a type 1 structure.
constexpr std::size_t kManufacturer = 0x04;
constexpr std::size_t kProductName = 0x05;
constexpr std::size_t kVersion = 0x06;
constexpr std::size_t kSerialNumber = 0x07;

// Offsets inside the formatted part of a type 22 structure.
constexpr std::size_t kBatterySerialNumber = 0x07;
constexpr std::size_t kBatteryDeviceName = 0x08;
constexpr std::size_t kBatteryDesignVoltage = 0x0C;
constexpr std::size_t kBatteryMaxError = 0x0F;

constexpr std::uint16_t kUnknownVoltage = 0;
constexpr std::uint8_t kUnknownError = 0xFF;

template <typename T>
std::optional<T> Unless(std::optional<T> value, T unknown) {
  return value == unknown ? std::nullopt : value;
}

TypeSysInfo ReadSystemInfo(const Structure& structure) {
  return {TextAt(structure, kManufacturer), TextAt(structure, kProductName), TextAt(structure, kVersion),
          TextAt(structure, kSerialNumber)};
}

TypePortableBattery ReadPortableBattery(const Structure& structure) {
  return {TextAt(structure, kBatterySerialNumber), TextAt(structure, kBatteryDeviceName),
          Unless(WordAt(structure, kBatteryDesignVoltage), kUnknownVoltage),
          Unless(ByteAt(structure, kBatteryMaxError), kUnknownError)};
}

}  // namespace

FirmwareReader::~FirmwareReader() = default;

SMBiosInfo::SMBiosInfo(FirmwareReader* reader) {
  const FirmwareTable table = reader != nullptr ? FirmwareTable{reader->ReadTable()} : ReadSystemFirmwareTable();
  read_error_ = table.error;
  Bytes rest = StructuresOf(table.bytes);
  Structure structure;
  bool has_system_info = false;
  while (TakeStructure(rest, structure)) {
    if (structure.Type() == kSystemInformation && !has_system_info) {
      system_info_ = ReadSystemInfo(structure);
      has_system_info = true;
    } else if (structure.Type() == kPortableBattery) {
      portable_batteries_.push_back(ReadPortableBattery(structure));
    }
  }
}

}  // namespace zt::shared::smbios
