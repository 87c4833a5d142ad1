#include "samplers/storage_info_msg.h"

#include <zt/text/wide_text.h>

#include <cctype>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <memory>
#include <string_view>
#include <vector>

#include "base/trimmed.h"
#include "messages/record_parts.h"
#include "samplers/wmi_query.h"
#include "zt/shared/storage/pcie_storage_drive.h"
#include "zt/telemetry/common/utils.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using shared::storage::PCIeStorageDrive;
using shared::wmi::WMIClient;

constexpr int kMaximumDrives = 32;
constexpr unsigned long long kMaximumIdentityLength = 32;

constexpr wchar_t kDrivesQuery[] = L"SELECT SerialNumber, DeviceID FROM Win32_DiskDrive";
constexpr wchar_t kMediaQueryStart[] = L"SELECT SerialNumber FROM Win32_PhysicalMedia WHERE Tag = '";
constexpr wchar_t kMediaQueryEnd[] = L"'";
constexpr wchar_t kPartitionsQueryStart[] = L"ASSOCIATORS OF {Win32_DiskDrive.DeviceID='";
constexpr wchar_t kPartitionsQueryEnd[] = L"'} WHERE ResultClass = Win32_DiskPartition";
constexpr wchar_t kLogicalDisksQueryStart[] = L"ASSOCIATORS OF {Win32_DiskPartition.DeviceID='";
constexpr wchar_t kLogicalDisksQueryEnd[] = L"'} WHERE ResultClass = Win32_LogicalDisk";

constexpr char kDrivesFailure[] = "Error while querying Win32_DiskDrive";
constexpr char kMediaFailure[] = "Error while querying Win32_PhysicalMedia";
constexpr char kPartitionsFailure[] =
    "Error while querying associates of Win32_DiskDrive that are of the type Win32_DiskPartition class";
constexpr char kLogicalDisksFailure[] =
    "Error while querying associates of Win32_DiskPartition that are of the type Win32_LogicalDisk class";

struct Drive {
  std::string device_id;
  std::string serial;
};

// One UTF-16 unit for each byte, sign-extended: the IDs of drives are plain ASCII.
std::wstring WidenBytes(const std::string& text) {
  std::wstring wide;
  for (const char byte : text) wide += static_cast<wchar_t>(static_cast<char16_t>(static_cast<signed char>(byte)));
  return wide;
}

// As the text stands in a literal of a WHERE clause.
std::string DoubleBackslashes(const std::string& text) {
  std::string escaped;
  for (const char character : text) escaped.append(character == '\\' ? 2 : 1, character);
  return escaped;
}

bool IsBlank(char character) {
  return std::isspace(static_cast<unsigned char>(character)) != 0;
}

std::string Trim(std::string_view text) {
  return std::string(base::TrimmedWhere(text, IsBlank));
}

// All rows are taken before anything else is asked: the client holds the rows of one query at a time.
std::vector<Drive> ReadDrives(WMIClient* wmi) {
  RequireSuccess(RunQuery(wmi, kDrivesQuery), kDrivesFailure);
  std::vector<Drive> drives;
  for (int count = 1; count <= kMaximumDrives && wmi->Next(); ++count) {
    Drive& drive = drives.emplace_back();
    wmi->GetValue(L"DeviceID", drive.device_id);
    wmi->GetValue(L"SerialNumber", drive.serial);
  }
  return drives;
}

// The last row wins.
std::string ReadMediaSerial(WMIClient& wmi, const std::string& device_id) {
  RequireSuccess(wmi.ExecQuery(kMediaQueryStart + WidenBytes(DoubleBackslashes(device_id)) + kMediaQueryEnd),
                 kMediaFailure);
  std::string serial;
  while (wmi.Next()) wmi.GetValue(L"SerialNumber", serial);
  return serial;
}

std::vector<std::string> ReadPartitions(WMIClient* wmi, const std::string& drive_id) {
  RequireSuccess(RunQuery(wmi, kPartitionsQueryStart + WidenBytes(drive_id) + kPartitionsQueryEnd), kPartitionsFailure);
  std::vector<std::string> ids;
  while (wmi->Next()) wmi->GetValue(L"DeviceID", ids.emplace_back());
  return ids;
}

struct Space {
  std::uint64_t free_bytes = 0;
  std::uint64_t size_bytes = 0;
};

// A partition holds one logical disk at most. Its ID is a text in the language of the system ("Datenträger Nr. 0,
// Partition Nr. 1"), unlike that of a drive.
Space ReadLogicalDisk(WMIClient& wmi, const std::string& partition_id) {
  RequireSuccess(wmi.ExecQuery(kLogicalDisksQueryStart + text::ToWide(partition_id) + kLogicalDisksQueryEnd),
                 kLogicalDisksFailure);
  Space space;
  if (wmi.Next()) {
    wmi.GetValue(L"FreeSpace", space.free_bytes);
    wmi.GetValue(L"Size", space.size_bytes);
  }
  return space;
}

// Single precision behind the quotient: fleets are compared by the figure that it gives.
float UsedPercent(const Space& space) {
  const auto free_share =
      static_cast<float>(static_cast<double>(space.free_bytes) / static_cast<double>(space.size_bytes));
  const float percent = std::abs(free_share * 100.0F - 100.0F);
  return std::isfinite(percent) ? percent : 0.0F;
}

// The drives of the storage library, which knows each by its own identity and by the serial number that WMI reports.
class LibraryDrives {
 public:
  LibraryDrives() : names_(library_.GetAllStorageDrives(count_)) {}

  // The identity of the first drive with this serial number, else the serial number itself.
  std::string Identify(const std::string& wmi_serial) {
    for (int i = 0; i < count_; ++i) {
      const char* name = names_[static_cast<std::size_t>(i)];
      if (library_.GetWMISN(name) == wmi_serial) return name;
    }
    return wmi_serial;
  }

 private:
  // The array is the caller's, the texts are the library's.
  struct FreeArray {
    void operator()(char** names) const { std::free(names); }
  };

  PCIeStorageDrive library_;
  int count_ = 0;
  std::unique_ptr<char*[], FreeArray> names_;
};

}  // namespace

StorageInfoMsg::StorageInfoMsg(const PerfMessages& other) : PerfMessages(other) {}

StorageInfoMsg::StorageInfoMsg(shared::wmi::WMIClient* wmi_client, shared::ztbios::PrivateBiosWmi* private_bios_wmi)
    : PerfMessages(wmi_client, private_bios_wmi) {}

void StorageInfoMsg::PopulateStorageAndUploadProtos() {
  auto& hardware = OpenHardware(*static_cdm_);
  const std::vector<Drive> drives = ReadDrives(wmi_client_);
  // By device ID: of several rows with the same one, the last row's serial number stands for all.
  std::map<std::string, std::string> serials;
  for (const Drive& drive : drives) {
    serials[drive.device_id] =
        Trim(drive.serial.empty() ? ReadMediaSerial(*wmi_client_, drive.device_id) : drive.serial);
  }
  std::map<std::string, float> usages;
  for (const Drive& drive : drives) usages[drive.device_id] = GetDiskUsagePercent(drive.device_id);

  LibraryDrives library;
  for (const Drive& drive : drives) {
    const std::string identity = library.Identify(serials[drive.device_id]);
    if (identity.empty()) continue;
    auto& entry = AddEntry(*hardware.mutable_storage_drives_info());
    entry.set_drive_serial_number(common::Utils::AdjustString(identity, kMaximumIdentityLength));
    entry.set_utilization_percent(usages[drive.device_id]);
  }
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the exported signature
float StorageInfoMsg::GetDiskUsagePercent(std::string device_id) {
  Space sum;
  for (const std::string& partition : ReadPartitions(wmi_client_, device_id)) {
    const Space space = ReadLogicalDisk(*wmi_client_, partition);
    sum.free_bytes += space.free_bytes;
    sum.size_bytes += space.size_bytes;
  }
  return UsedPercent(sum);
}

}  // namespace zt::telemetry::collector::performancesamples
