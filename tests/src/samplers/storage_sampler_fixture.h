#pragma once

#include <algorithm>
#include <cmath>
#include <ostream>

#include "samplers/storage_info_msg.h"
#include "support/sampler_test.h"
#include "support/status_codes.h"

namespace zt::telemetry::collector::performancesamples {

inline constexpr char kDrive0[] = R"(\\.\PHYSICALDRIVE0)";
inline constexpr char kDrive1[] = R"(\\.\PHYSICALDRIVE1)";
inline constexpr char kGigabyte[] = "000000000";

inline constexpr char kDrivesQuery[] = "SELECT SerialNumber, DeviceID FROM Win32_DiskDrive";
inline constexpr char kPartitionsOfDrive0[] =
    R"(ASSOCIATORS OF {Win32_DiskDrive.DeviceID='\\.\PHYSICALDRIVE0'} WHERE ResultClass = Win32_DiskPartition)";
inline constexpr char kPartitionsOfDrive1[] =
    R"(ASSOCIATORS OF {Win32_DiskDrive.DeviceID='\\.\PHYSICALDRIVE1'} WHERE ResultClass = Win32_DiskPartition)";

/// What a drive is reported as.
struct Reported {
  std::string identity;
  float percent = 0;
};

inline void PrintTo(const Reported& drive, std::ostream* out) {
  *out << '"' << drive.identity << "\" " << drive.percent << " %";
}

MATCHER_P2(Drive, identity, percent, "") {
  return arg.identity == identity && std::abs(arg.percent - static_cast<float>(percent)) < 0.005F;
}

class StorageSamplerTest : public SamplerTest {
 protected:
  /// Samples the machine into an empty record; the drives are the shared record's.
  std::vector<Reported> Sample() {
    PopulateEmpty<StorageInfoMsg>(&wmi_, kNoFirmware);
    return Drives();
  }

  std::vector<Reported> Drives() const {
    std::vector<Reported> drives;
    for (const auto& drive : Hardware().storage_drives_info()) {
      EXPECT_TRUE(drive.has_utilization_percent());
      drives.push_back({drive.drive_serial_number(), drive.utilization_percent()});
    }
    return drives;
  }

  /// Samples while queries with `text` fail. The error's code is the query's status.
  std::string SampleAndFail(const std::string& text) {
    machine_.wmi.failures = {{text, tests::kAccessDenied, std::nullopt, 0}};
    const Error error = FailureOf([this] { Sample(); });
    EXPECT_EQ(error.kind, 5);
    EXPECT_EQ(error.code, tests::kAccessDenied);
    EXPECT_EQ(error.message, "");
    return error.description;
  }

  void AddDrive(const std::string& id, const std::string& serial) {
    machine_.wmi.classes["Win32_DiskDrive"].push_back({{"DeviceID", id}, {"SerialNumber", serial}});
  }

  void AddMedia(const std::string& id, const simulation::WmiProperty& serial) {
    machine_.wmi.classes["Win32_PhysicalMedia"].push_back({{"Tag", id}, {"SerialNumber", serial}});
  }

  /// Adds a partition, with its logical disk, to a drive. Sizes in bytes, as WMI gives them.
  void AddPartition(const std::string& drive, const std::string& partition, const simulation::WmiRow& logical_disk) {
    const std::string of_drive = "Win32_DiskDrive.DeviceID='" + drive + "'";
    auto& associations = machine_.wmi.associations;
    const auto found = std::find_if(associations.begin(), associations.end(),
                                    [&](const simulation::WmiAssociation& known) { return known.of == of_drive; });
    if (found == associations.end()) {
      associations.push_back({of_drive, "Win32_DiskPartition", {{{"DeviceID", partition}}}});
    } else {
      found->rows.push_back({{"DeviceID", partition}});
    }
    if (!logical_disk.empty()) AddLogicalDisks(partition, {logical_disk});
  }

  void AddLogicalDisks(const std::string& partition, const std::vector<simulation::WmiRow>& disks) {
    machine_.wmi.associations.push_back(
        {"Win32_DiskPartition.DeviceID='" + partition + "'", "Win32_LogicalDisk", disks});
  }

  /// One drive with two logical disks, of 100 GB (40 free) and 50 GB (10 free).
  void AddExampleDrive() {
    AddDrive(kDrive0, "S4EV");
    AddPartition(kDrive0, "Disk #0, Partition #0", {{"FreeSpace", Gigabytes(40)}, {"Size", Gigabytes(100)}});
    AddPartition(kDrive0, "Disk #0, Partition #1", {{"FreeSpace", Gigabytes(10)}, {"Size", Gigabytes(50)}});
  }

  static std::string Gigabytes(int count) { return std::to_string(count) + kGigabyte; }

  static constexpr shared::ztbios::PrivateBiosWmi* kNoFirmware = nullptr;
};

}  // namespace zt::telemetry::collector::performancesamples
