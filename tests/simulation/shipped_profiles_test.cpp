#include <gmock/gmock.h>
#include <zt/text/wide_text.h>

#include "simulation/profile.h"
#include "support/status_codes.h"
#include "zt/shared/wmi/wmi_client.h"

namespace zt::tests {
namespace {

using simulation::Machine;
using simulation::ProfileError;
using simulation::ReadShippedProfile;
using simulation::ShippedProfile;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::SizeIs;

TEST(ShippedProfilesTest, FiveShipInAlphabeticalOrderEachWithADescription) {
  std::vector<std::string> names;
  for (const ShippedProfile& profile : simulation::ShippedProfiles()) {
    names.push_back(profile.name);
    EXPECT_GT(profile.description.size(), 20U) << profile.name;
    EXPECT_EQ(profile.description, ReadShippedProfile(profile.name).description);
  }
  EXPECT_THAT(names, ElementsAre("bare", "convertible-laptop", "everything", "failing", "workstation"));
}

TEST(ShippedProfilesTest, AnUnknownNameIsToldWithTheKnownOnes) {
  try {
    ReadShippedProfile("laptop");
    FAIL() << "expected an error";
  } catch (const ProfileError& error) {
    EXPECT_STREQ(error.what(),
                 "No machine profile of the name \"laptop\" ships with the program, expected one of: bare, "
                 "convertible-laptop, everything, failing, workstation");
  }
}

TEST(ShippedProfilesTest, TheClockOfEachStandsStill) {
  for (const ShippedProfile& profile : simulation::ShippedProfiles()) {
    const Machine machine = ReadShippedProfile(profile.name);
    ASSERT_TRUE(machine.clock) << profile.name;
    EXPECT_TRUE(machine.clock->utc_seconds) << profile.name;
  }
}

TEST(ShippedProfilesTest, TheBareMachineHasNothing) {
  const Machine machine = ReadShippedProfile("bare");
  EXPECT_FALSE(machine.smbios_serial_number);
  EXPECT_EQ(machine.battery_flag, 128);
  EXPECT_THAT(machine.batteries, SizeIs(0));
  EXPECT_THAT(machine.wmi.classes, SizeIs(0));
  EXPECT_FALSE(machine.nvml);
  EXPECT_FALSE(machine.adlx);
  EXPECT_FALSE(machine.network.manager);
}

TEST(ShippedProfilesTest, TheLaptopHasASourceForEverySampler) {
  const Machine machine = ReadShippedProfile("convertible-laptop");
  EXPECT_EQ(machine.smbios_serial_number, "5CG0000001");
  EXPECT_EQ(machine.clock->utc_seconds, 1772893242);
  EXPECT_EQ(machine.clock->standard_offset_minutes, -180);
  EXPECT_EQ(machine.clock->local_offset_minutes, -120);
  EXPECT_THAT(machine.batteries, SizeIs(1));
  EXPECT_TRUE(machine.sensors.hinge);
  EXPECT_TRUE(machine.sensors.orientation);
  EXPECT_THAT(machine.private_bios, SizeIs(1));
  EXPECT_THAT(machine.nvml.value().devices, SizeIs(1));
  EXPECT_NE(machine.npu_report, "");
  EXPECT_THAT(machine.storage_library, SizeIs(1));
  EXPECT_TRUE(machine.session.last_input_tick_ms);
  EXPECT_TRUE(machine.network.wlan);
}

// Every association that is stated hangs on an object of the tables, so that no typing mistake hides one.
TEST(ShippedProfilesTest, TheDrivesOfTheLaptopLeadToTheirLogicalDisks) {
  simulation::UseMachine(ReadShippedProfile("convertible-laptop"));
  shared::wmi::WMIClient drives(L"");
  ASSERT_EQ(drives.ExecQuery(L"SELECT SerialNumber, DeviceID FROM Win32_DiskDrive"), 0);
  std::vector<std::string> disks;
  while (drives.Next()) {
    std::string drive;
    ASSERT_EQ(drives.GetValue(L"DeviceID", drive), 0);
    shared::wmi::WMIClient partitions(L"");
    partitions.ExecQuery(L"ASSOCIATORS OF {Win32_DiskDrive.DeviceID='" + text::ToWide(drive) +
                         L"'} WHERE ResultClass = Win32_DiskPartition");
    while (partitions.Next()) {
      std::string partition;
      ASSERT_EQ(partitions.GetValue(L"DeviceID", partition), 0);
      shared::wmi::WMIClient logical(L"");
      logical.ExecQuery(L"ASSOCIATORS OF {Win32_DiskPartition.DeviceID='" + text::ToWide(partition) +
                        L"'} WHERE ResultClass = Win32_LogicalDisk");
      while (logical.Next()) logical.GetValue(L"DeviceID", disks.emplace_back());
    }
  }
  EXPECT_THAT(disks, ElementsAre("C:", "D:"));
}

TEST(ShippedProfilesTest, TheZoneOfTheProcessorIsFoundByItsEscapedPath) {
  simulation::UseMachine(ReadShippedProfile("convertible-laptop"));
  shared::wmi::WMIClient client(L"");
  ASSERT_EQ(client.ExecQuery(LR"(SELECT Temperature FROM Win32_PerfFormattedData_Counters_ThermalZoneInformation )"
                             LR"(WHERE Name = "\\_TZ.CPUZ")"),
            0);
  ASSERT_TRUE(client.Next());
  std::uint32_t kelvin = 0;
  EXPECT_EQ(client.GetValue(L"Temperature", kelvin), 0);
  EXPECT_EQ(kelvin, 349U);
}

TEST(ShippedProfilesTest, TheWorkstationHasSeveralCardsOfSeveralVendorsAndNoBattery) {
  const Machine machine = ReadShippedProfile("workstation");
  EXPECT_EQ(machine.battery_flag, 128);
  EXPECT_THAT(machine.batteries, SizeIs(0));
  EXPECT_THAT(machine.nvml.value().devices, SizeIs(2));
  EXPECT_THAT(machine.adlx.value().gpus, SizeIs(1));
  EXPECT_THAT(machine.wmi.classes.at("Win32_VideoController"), SizeIs(4));
}

TEST(ShippedProfilesTest, TheMachineWithEverythingHasSeveralOfMostThingsAndCardsOfThreeVendors) {
  const Machine machine = ReadShippedProfile("everything");
  EXPECT_THAT(machine.batteries, SizeIs(2));
  EXPECT_TRUE(machine.nvml);
  EXPECT_TRUE(machine.adlx);
  EXPECT_THAT(machine.wmi.classes.at("Win32_VideoController"), SizeIs(3));
  EXPECT_THAT(machine.npu_report, HasSubstr(R"("npu_count":2)"));
  EXPECT_THAT(machine.wmi.classes.at("Win32_DiskDrive"), SizeIs(3));
  EXPECT_THAT(machine.network.manager.value().networks, SizeIs(3));
  EXPECT_TRUE(machine.network.wlan);
}

TEST(ShippedProfilesTest, OnTheFailingMachineThingsExistAndEveryQueryFails) {
  const Machine machine = ReadShippedProfile("failing");
  EXPECT_THAT(machine.batteries, SizeIs(1));
  EXPECT_TRUE(machine.nvml);
  EXPECT_TRUE(machine.adlx);
  EXPECT_TRUE(machine.network.wlan);
  simulation::UseMachine(machine);
  shared::wmi::WMIClient client(L"");
  EXPECT_EQ(client.ExecQuery(L"SELECT SerialNumber FROM Win32_BIOS"), tests::kAccessDenied);
  EXPECT_FALSE(client.Next());
  EXPECT_EQ(client.ExecQuery(L"ASSOCIATORS OF {x} WHERE ResultClass = y"), tests::kAccessDenied);
}

}  // namespace
}  // namespace zt::tests
