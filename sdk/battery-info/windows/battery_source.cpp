#include "battery_source.h"

#include <windows.h>
// The battery device class and its requests; needs windows.h and the GUID definitions before it.
#include <initguid.h>
#include <poclass.h>
#include <winioctl.h>

#include "base/windows/device_control.h"
#include "battery_limits.h"
#include "device_interfaces.h"
#include "figure_conversion.h"

namespace zt::shared::battery {
namespace {

static_assert(protocol::kQueryTag == IOCTL_BATTERY_QUERY_TAG);
static_assert(protocol::kQueryInformation == IOCTL_BATTERY_QUERY_INFORMATION);
static_assert(protocol::kQueryStatus == IOCTL_BATTERY_QUERY_STATUS);
static_assert(sizeof(protocol::InformationQuery) == sizeof(BATTERY_QUERY_INFORMATION));
static_assert(sizeof(protocol::Information) == sizeof(BATTERY_INFORMATION));
static_assert(sizeof(protocol::StatusQuery) == sizeof(BATTERY_WAIT_STATUS));
static_assert(sizeof(protocol::Status) == sizeof(BATTERY_STATUS));

SlotReading ReadSlotAt(const std::wstring& path, const base::TimeLimit& all) {
  const base::UniqueHandle device = base::OpenDevice(path);
  if (device == nullptr) {
    const DWORD error = ::GetLastError();
    return {std::nullopt, error == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : error};  // taken out since it was listed
  }
  return ReadBattery(base::AskDevice(device.get(), kAnswerLimit, all));
}

struct MachineReadings {
  std::vector<BatteryReading> batteries;
  std::uint32_t error = ERROR_SUCCESS;
};

MachineReadings ReadMachineBatteries() {
  const DeviceInterfaces devices = ListDeviceInterfaces(GUID_DEVICE_BATTERY);
  const base::TimeLimit all(kAllBatteriesLimit);
  MachineReadings readings;
  readings.error = devices.error;
  for (const std::wstring& path : devices.paths) {
    SlotReading slot = ReadSlotAt(path, all);
    if (readings.error == ERROR_SUCCESS) readings.error = slot.error;
    if (slot.battery && PowersTheMachine(*slot.battery)) readings.batteries.push_back(*std::move(slot.battery));
  }
  return readings;
}

}  // namespace

// An empty slot takes no index: two batteries are found in a machine of three slots, whichever is empty.
MachineBatteries ReadBatteries() {
  const MachineReadings readings = ReadMachineBatteries();
  if (readings.batteries.empty()) return {{}, readings.error};
  const std::vector<BatteryFigures> figures =
      FiguresOf(readings.batteries, smbios::SMBiosInfo(nullptr).GetPortableBatteries());
  return {{figures.begin(), figures.end()}, readings.error};
}

}  // namespace zt::shared::battery
