#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "base/trimmed.h"
#include "disk_descriptor.h"
#include "messages/perf_messages.h"
#include "samplers/storage_info_msg.h"
#include "support/wmi_namespace.h"
#include "windows/disk_device.h"
#include "zt/shared/storage/pcie_storage_drive.h"
#include "zt/shared/wmi/wmi_client.h"

// The drives of this very system. Wine's first disk has no serial number at the driver and "WINEHDISK" in WMI, and no
// partitions.
namespace zt::tests {
namespace {

using shared::storage::DiskDevice;
using shared::storage::DiskProperty;
using shared::storage::ParseDiskDescriptor;
using shared::storage::PCIeStorageDrive;
using shared::wmi::WMIClient;
using telemetry::collector::performancesamples::PerfMessages;
using telemetry::collector::performancesamples::StorageInfoMsg;

constexpr std::size_t kMaximumDrives = 32;
constexpr std::size_t kMaximumIdentityLength = 32;

/// The serial numbers that WMI tells, without blanks around.
std::vector<std::string> WmiSerials() {
  WMIClient wmi(tests::kWmiNamespace);
  EXPECT_EQ(wmi.ExecQuery(L"SELECT SerialNumber FROM Win32_DiskDrive"), 0);
  std::vector<std::string> serials;
  while (wmi.Next()) {
    std::string serial;
    wmi.GetValue(L"SerialNumber", serial);
    serials.emplace_back(base::Trimmed(serial, " \t\r\n"));
  }
  return serials;
}

using Drives = google::protobuf::RepeatedPtrField<
    telemetry::contract::upload::log::PcLogPerformanceSamplesAsCDM_HwInfo_StorageDriveInfo>;

/// The drives that the sampler reports.
Drives Sample() {
  PerfMessages::static_cdm_.reset();
  PerfMessages::Init(nullptr, 50);
  WMIClient wmi(tests::kWmiNamespace);
  StorageInfoMsg(&wmi, nullptr).PopulateStorageAndUploadProtos();
  return PerfMessages::static_cdm_->hw_info().storage_drives_info();
}

TEST(DiskDeviceTest, TheFirstDiskDescribesItself) {
  const DiskDevice disk(0);
  ASSERT_TRUE(disk.IsOpen());
  EXPECT_TRUE(ParseDiskDescriptor(disk.Read(DiskProperty::kDescriptor)));
}

TEST(DiskDeviceTest, APropertyThatADriverLacksIsEmpty) {
  EXPECT_TRUE(DiskDevice(0).Read(static_cast<DiskProperty>(0x7FFF)).empty());
}

TEST(DiskDeviceTest, ADiskThatIsNotThereAnswersNothing) {
  const DiskDevice disk(999);
  EXPECT_FALSE(disk.IsOpen());
  EXPECT_TRUE(disk.Read(DiskProperty::kDescriptor).empty());
}

TEST(SystemsDrivesTest, WmiKnowsEveryDriveOfTheLibraryByItsWmiForm) {
  struct FreeArray {
    void operator()(char** names) const { std::free(names); }
  };
  PCIeStorageDrive library;
  int count = -1;
  const std::unique_ptr<char*[], FreeArray> names(library.GetAllStorageDrives(count));
  ASSERT_GE(count, 0);
  const std::vector<std::string> wmi_serials = WmiSerials();
  EXPECT_LE(static_cast<std::size_t>(count), wmi_serials.size());
  for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
    EXPECT_STRNE(names[i], "");
    EXPECT_THAT(wmi_serials, testing::Contains(library.GetWMISN(names[i]))) << names[i];
  }
}

TEST(SystemsDrivesTest, TheSamplerReportsEveryDriveThatHasASerialNumber) {
  std::vector<std::string> serials = WmiSerials();
  ASSERT_FALSE(serials.empty());
  serials.resize(std::min(serials.size(), kMaximumDrives));
  const auto named = static_cast<int>(serials.size() - static_cast<std::size_t>(std::ranges::count(serials, "")));
  const Drives drives = Sample();
  EXPECT_GE(drives.size(), named);
  for (const auto& drive : drives) {
    EXPECT_FALSE(drive.drive_serial_number().empty());
    EXPECT_LE(drive.drive_serial_number().size(), kMaximumIdentityLength);
    EXPECT_GE(drive.utilization_percent(), 0.0F);
    EXPECT_LE(drive.utilization_percent(), 100.0F);
  }
}

TEST(SystemsDrivesTest, WinesDisksAreReportedByWmisSerialNumberAndAsEmpty) {
  const std::vector<std::string> serials = WmiSerials();
  if (std::ranges::count(serials, "WINEHDISK") == 0) GTEST_SKIP() << "this system is not Wine";
  const Drives drives = Sample();
  EXPECT_EQ(drives.size(), static_cast<int>(serials.size()));
  for (const auto& drive : drives) {
    EXPECT_EQ(drive.drive_serial_number(), "WINEHDISK");
    EXPECT_EQ(drive.utilization_percent(), 0.0F);
  }
}

}  // namespace
}  // namespace zt::tests
