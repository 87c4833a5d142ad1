#include "fixed_drives.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zt::tests {
namespace {

using shared::storage::BusType;
using shared::storage::Disk;
using shared::storage::IdentifyFixedDrives;
using shared::storage::KnownDrive;
using shared::storage::OwnSerial;
using shared::storage::WmiForm;
using testing::ElementsAre;
using testing::IsEmpty;

Disk Nvme(const std::string& serial, const std::string& adapter_serial = "") {
  return {{BusType::kNvme, false, serial}, adapter_serial};
}

Disk OnBus(BusType bus, const std::string& serial) {
  return {{bus, false, serial}, ""};
}

TEST(FixedDrivesTest, TheWmiFormIsTheDriversSerialNumberWithoutBlanksAround) {
  EXPECT_EQ(WmiForm(OnBus(BusType::kSata, "     WD-WX11 A \t")), "WD-WX11 A");
  EXPECT_EQ(WmiForm(Nvme("0025_38B1_1234_5678.")), "0025_38B1_1234_5678.");
  EXPECT_EQ(WmiForm(Nvme("    ")), "");
}

TEST(FixedDrivesTest, AnNvmeDrivesOwnSerialNumberIsItsAdapters) {
  EXPECT_EQ(OwnSerial(Nvme("0025_38B1_1234_5678.", "S4EVNX0M123456      ")), "S4EVNX0M123456");
}

TEST(FixedDrivesTest, WithoutAnAdapterSerialNumberTheNamespaceIsTakenOff) {
  EXPECT_EQ(OwnSerial(Nvme("S4EVNX0M            _00000001.")), "S4EVNX0M");
  EXPECT_EQ(OwnSerial(Nvme("S4EVNX0M_0000000A.", "   ")), "S4EVNX0M");
}

TEST(FixedDrivesTest, WhatIsNoNamespaceStays) {
  for (const char* serial : {"0025_38B1_1234_5678.", "S4EV_00000001", "S4EV-00000001.", "S4EV_0000000G.", "_00000001.",
                             "S4EV_000000001.", "S4EV_00000001:", "S4EV"}) {
    EXPECT_EQ(OwnSerial(Nvme(serial)), serial);
  }
}

TEST(FixedDrivesTest, ElsewhereTheAdapterIsAControllerAndTellsNothing) {
  Disk disk = OnBus(BusType::kRaid, " S4EV_00000001. ");
  disk.adapter_serial = "controller";
  EXPECT_EQ(OwnSerial(disk), "S4EV_00000001.");
}

TEST(FixedDrivesTest, KeepsTheDrivesInTheirOrder) {
  EXPECT_THAT(IdentifyFixedDrives({Nvme("0025_38B1.", "S4EV"), OnBus(BusType::kSata, " WD-1 ")}),
              ElementsAre(KnownDrive{"S4EV", "0025_38B1."}, KnownDrive{"WD-1", "WD-1"}));
}

TEST(FixedDrivesTest, ExternalVirtualAndRemovableDisksAreNotFixed) {
  Disk removable = OnBus(BusType::kSata, "removable");
  removable.descriptor.removable_media = true;
  EXPECT_THAT(IdentifyFixedDrives({OnBus(BusType::kUsb, "usb"), OnBus(BusType::kVirtual, "virtual"), removable,
                                   OnBus(static_cast<BusType>(0), "unknown"), OnBus(static_cast<BusType>(9), "iscsi"),
                                   OnBus(static_cast<BusType>(0x7F), "of tomorrow")}),
              IsEmpty());
}

TEST(FixedDrivesTest, ADriveWithoutAnyNameIsLeftOut) {
  EXPECT_THAT(IdentifyFixedDrives({OnBus(BusType::kSata, ""), Nvme("1"), OnBus(BusType::kSata, "2")}),
              ElementsAre(KnownDrive{"1", "1"}, KnownDrive{"2", "2"}));
}

TEST(FixedDrivesTest, ADriveThatOnlyItsAdapterNamesIsKnownByNoSerialNumber) {
  EXPECT_THAT(IdentifyFixedDrives({Nvme("", "S4EV"), OnBus(BusType::kSata, "WD-1")}),
              ElementsAre(KnownDrive{"S4EV", ""}, KnownDrive{"WD-1", "WD-1"}));
}

TEST(FixedDrivesTest, NoSerialNumberTellsNothingWhenAnotherDiskHasNoneEither) {
  EXPECT_THAT(IdentifyFixedDrives({Nvme("", "S4EV"), OnBus(BusType::kUsb, " ")}), IsEmpty());
}

TEST(FixedDrivesTest, DrivesThatShareAWmiFormAreLeftOut) {
  EXPECT_THAT(IdentifyFixedDrives({Nvme("0000.", "S4EV"), Nvme("0000.", "S4EW"), Nvme("0001.", "S4EX")}),
              ElementsAre(KnownDrive{"S4EX", "0001."}));
}

TEST(FixedDrivesTest, WithoutDisksThereAreNoDrives) {
  EXPECT_THAT(IdentifyFixedDrives({}), IsEmpty());
}

}  // namespace
}  // namespace zt::tests
