#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "support/smbios_table.h"
#include "zt/shared/smbios/smbios_info.h"

namespace zt::shared::smbios {
namespace {

std::vector<TypePortableBattery> BatteriesIn(const Bytes& structures) {
  FixedReader reader(Table(structures));
  return SMBiosInfo(&reader).GetPortableBatteries();
}

constexpr std::size_t kWholeLength = 0x1A;

// A battery of 11,550 mV with an error of 5 %, whose texts are numbered; `length` bytes of it are formatted.
Bytes Battery(std::string_view serial, std::string_view device, std::size_t length = kWholeLength) {
  Bytes structure(kWholeLength);
  structure[0x00] = 22;
  structure[0x01] = static_cast<std::uint8_t>(length);
  structure[0x07] = 1;
  structure[0x08] = 2;
  structure[0x0C] = 0x1E;
  structure[0x0D] = 0x2D;
  structure[0x0F] = 5;
  structure.resize(length);
  for (const std::string_view text : {serial, device}) {
    structure.insert(structure.end(), text.begin(), text.end());
    structure.push_back(0);
  }
  structure.push_back(0);
  return structure;
}

TEST(PortableBatteryTest, TellsWhatTheFirmwareKnows) {
  const auto batteries = BatteriesIn(Battery("01234", "RE03045XL"));
  ASSERT_EQ(batteries.size(), 1U);
  EXPECT_EQ(batteries[0].serial_number, "01234");
  EXPECT_EQ(batteries[0].device_name, "RE03045XL");
  EXPECT_EQ(batteries[0].design_voltage_mv, 11550);
  EXPECT_EQ(batteries[0].max_error_percent, 5);
}

TEST(PortableBatteryTest, EveryStructureIsOneBatteryInTheTablesOrder) {
  const auto batteries = BatteriesIn(Battery("1", "first") + Battery("2", "second"));
  ASSERT_EQ(batteries.size(), 2U);
  EXPECT_EQ(batteries[0].device_name, "first");
  EXPECT_EQ(batteries[1].device_name, "second");
}

TEST(PortableBatteryTest, ATableWithoutThemHasNone) {
  EXPECT_TRUE(BatteriesIn({1, 8, 0, 1, 0, 0, 0, 0, 0, 0}).empty());
}

TEST(PortableBatteryTest, DoesNotHideTheSystemStructure) {
  FixedReader reader(Table(Battery("1", "first") + Bytes{1, 8, 0, 1, 0, 0, 0, 1, 'S', 'N', 0, 0}));
  const SMBiosInfo info(&reader);
  EXPECT_EQ(info.GetTypeSysInfo().serial_number, "SN");
  EXPECT_EQ(info.GetPortableBatteries().size(), 1U);
}

TEST(PortableBatteryTest, AnUnknownVoltageAndAnUnknownErrorAreAbsent) {
  Bytes structure = Battery("1", "first");
  structure[0x0C] = structure[0x0D] = 0;
  structure[0x0F] = 0xFF;
  const auto batteries = BatteriesIn(structure);
  ASSERT_EQ(batteries.size(), 1U);
  EXPECT_EQ(batteries[0].design_voltage_mv, std::nullopt);
  EXPECT_EQ(batteries[0].max_error_percent, std::nullopt);
}

TEST(PortableBatteryTest, AShortStructureTellsWhatItHas) {
  const auto batteries = BatteriesIn(Battery("1", "first", 0x0D));
  ASSERT_EQ(batteries.size(), 1U);
  EXPECT_EQ(batteries[0].device_name, "first");
  EXPECT_EQ(batteries[0].design_voltage_mv, std::nullopt) << "half a number is none";
  EXPECT_EQ(batteries[0].max_error_percent, std::nullopt);
}

}  // namespace
}  // namespace zt::shared::smbios
