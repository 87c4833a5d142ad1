#include <windows.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "messages/perf_messages.h"
#include "platform/power_status.h"
#include "samplers/battery_info_msg.h"
#include "windows/device_interfaces.h"
#include "zt/shared/battery/zt_batteries.h"

// The batteries of this very system, which has none: as under Wine, and on the machines that build. What becomes of a
// battery's answers is tested over scripted devices.
namespace zt::tests {
namespace {

using shared::battery::ListDeviceInterfaces;
using shared::battery::ZTBatteries;
using telemetry::collector::performancesamples::BatteryInfoMsg;
using telemetry::collector::performancesamples::PerfMessages;
using telemetry::collector::performancesamples::platform::BatteryFlag;

constexpr GUID kBatteries = {0x72631E54, 0x78A4, 0x11D0, {0xBC, 0xF7, 0x00, 0xAA, 0x00, 0xB7, 0xB3, 0x2A}};
constexpr GUID kInputDevices = {0x4D1E55B2, 0xF16F, 0x11CF, {0x88, 0xCB, 0x00, 0x11, 0x11, 0x00, 0x00, 0x30}};
constexpr GUID kNoInterface = {0x01234567, 0x89AB, 0xCDEF, {0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF}};

TEST(PowerStatusTest, TellsTheSystemsFlag) {
  SYSTEM_POWER_STATUS status{};
  ASSERT_NE(::GetSystemPowerStatus(&status), FALSE);
  EXPECT_EQ(BatteryFlag(), status.BatteryFlag);
}

TEST(DeviceInterfacesTest, EveryDeviceHasAPathOfItsOwn) {
  const std::vector<std::wstring> paths = ListDeviceInterfaces(kInputDevices).paths;
  ASSERT_FALSE(paths.empty()) << "no mouse, no keyboard";
  for (const std::wstring& path : paths) EXPECT_TRUE(path.starts_with(LR"(\\?\)")) << path.size();
  EXPECT_EQ(std::set<std::wstring>(paths.begin(), paths.end()).size(), paths.size());
}

TEST(DeviceInterfacesTest, AnInterfaceThatNoDeviceOffersHasNoPaths) {
  const auto none = ListDeviceInterfaces(kNoInterface);
  EXPECT_TRUE(none.paths.empty());
  EXPECT_EQ(none.error, static_cast<DWORD>(ERROR_SUCCESS)) << "that there are none is no failure";
}

// The indices at which the library has a battery.
std::vector<int> IndicesOf(ZTBatteries& batteries) {
  std::vector<int> indices;
  for (int index = 0; index < 256; ++index) {
    if (batteries.Query(static_cast<unsigned char>(index)) != nullptr) indices.push_back(index);
  }
  return indices;
}

TEST(LiveBatteriesTest, AreNoneWhereThereIsNoDevice) {
  if (!ListDeviceInterfaces(kBatteries).paths.empty()) GTEST_SKIP() << "this system has a battery";
  ZTBatteries batteries(true, true, nullptr, nullptr);
  EXPECT_THAT(IndicesOf(batteries), testing::IsEmpty());
}

TEST(LiveBatteriesTest, AreNotAddedToTheRecordWhereThereIsNoDevice) {
  if (!ListDeviceInterfaces(kBatteries).paths.empty()) GTEST_SKIP() << "this system has a battery";
  PerfMessages::Init(nullptr, 50);
  BatteryInfoMsg().PopulateStorageAndUploadProtos();
  EXPECT_FALSE(PerfMessages::static_cdm_->has_hw_info());
  EXPECT_FALSE(PerfMessages::amd_pmf_->has_battery_full_charge_capacity_mwh());
}

}  // namespace
}  // namespace zt::tests
