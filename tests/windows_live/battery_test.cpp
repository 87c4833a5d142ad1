#include <windows.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "device_interfaces.h"
#include "messages/perf_messages.h"
#include "platform/power_status.h"
#include "samplers/battery_info_msg.h"
#include "zt/shared/battery/zt_batteries.h"

// The batteries of this very system: none, as under Wine; where there are some, each has figures.
namespace zt::tests {
namespace {

using shared::battery::ListDeviceInterfaces;
using shared::battery::ZTBatteries;
using shared::battery::ZTBatteryInfo;
using telemetry::collector::performancesamples::BatteryInfoMsg;
using telemetry::collector::performancesamples::PerfMessages;
using telemetry::collector::performancesamples::platform::BatteryFlag;

constexpr GUID kBatteries = {0x72631E54, 0x78A4, 0x11D0, {0xBC, 0xF7, 0x00, 0xAA, 0x00, 0xB7, 0xB3, 0x2A}};
constexpr GUID kInputDevices = {0x4D1E55B2, 0xF16F, 0x11CF, {0x88, 0xCB, 0x00, 0x11, 0x11, 0x00, 0x00, 0x30}};
constexpr GUID kNoInterface = {0x01234567, 0x89AB, 0xCDEF, {0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF}};

TEST(PowerStatus, TellsTheSystemsFlag) {
  SYSTEM_POWER_STATUS status{};
  ASSERT_NE(::GetSystemPowerStatus(&status), FALSE);
  EXPECT_EQ(BatteryFlag(), status.BatteryFlag);
}

TEST(DeviceInterfaces, EveryDeviceHasAPathOfItsOwn) {
  const std::vector<std::wstring> paths = ListDeviceInterfaces(kInputDevices).paths;
  ASSERT_FALSE(paths.empty()) << "no mouse, no keyboard";
  for (const std::wstring& path : paths) EXPECT_TRUE(path.starts_with(LR"(\\?\)")) << path.size();
  EXPECT_EQ(std::set<std::wstring>(paths.begin(), paths.end()).size(), paths.size());
}

TEST(DeviceInterfaces, AnInterfaceThatNoDeviceOffersHasNoPaths) {
  const auto none = ListDeviceInterfaces(kNoInterface);
  EXPECT_TRUE(none.paths.empty());
  EXPECT_EQ(none.error, static_cast<DWORD>(ERROR_SUCCESS)) << "that there are none is no failure";
}

TEST(LiveBatteries, AreNoMoreThanTheDevicesAndHaveFigures) {
  ZTBatteries batteries(true, true, nullptr, nullptr);
  const std::size_t devices = ListDeviceInterfaces(kBatteries).paths.size();
  for (unsigned index = 0; index < 256; ++index) {
    ZTBatteryInfo* const battery = batteries.Query(static_cast<unsigned char>(index));
    if (battery == nullptr) continue;
    EXPECT_LT(index, devices);
    EXPECT_GE(battery->GetFullChargePercent(), 0.0F);
    EXPECT_EQ(battery->GetStatusCode() & 0x80, 0x80);
  }
}

TEST(LiveBatteries, AreInTheRecordWhenThePowerStatusTellsOfThem) {
  PerfMessages::Init(nullptr, 50);
  BatteryInfoMsg().PopulateStorageAndUploadProtos();
  const bool flagged = BatteryFlag() != 128 && BatteryFlag() != 255;
  ZTBatteries batteries(true, true, nullptr, nullptr);
  const int expected = flagged ? (batteries.Query(0) != nullptr) + (batteries.Query(1) != nullptr) : 0;
  EXPECT_EQ(PerfMessages::static_cdm_->hw_info().batteries_info_size(), expected);
  EXPECT_EQ(PerfMessages::amd_pmf_->has_battery_full_charge_capacity_mwh(), expected > 0);
}

}  // namespace
}  // namespace zt::tests
