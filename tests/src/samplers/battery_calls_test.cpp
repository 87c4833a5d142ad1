// What is asked of the battery library, and in which order. In this program alone the library's class is defined here,
// so that each call can be told; the sampler is the collector's own.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "samplers/battery_info_msg.h"
#include "simulation/machine.h"
#include "zt/shared/battery/zt_batteries.h"

namespace zt::shared::battery {
namespace {

using telemetry::collector::performancesamples::PerfMessages;

// The calls of the library, and what became of the records in between.
std::vector<std::string> events;
int entries_seen = 0;
bool storage_seen = false;

void Note(const std::string& call) {
  const int entries = PerfMessages::static_cdm_->hw_info().batteries_info_size();
  if (entries != entries_seen) events.emplace_back("an entry is appended");
  entries_seen = entries;
  const bool is_stored = PerfMessages::amd_pmf_->ByteSizeLong() != 0 && PerfMessages::thermal_->ByteSizeLong() != 0;
  if (is_stored && !storage_seen) events.emplace_back("the storage records are filled");
  storage_seen = is_stored;
  events.push_back(call);
}

template <typename T>
T Noted(const char* call, T figure) {
  Note(call);
  return figure;
}

// Tells of each of its operations.
class NotingBattery final : public ZTBatteryInfo {
 public:
  const char* GetSerialNumber() override { return Noted("GetSerialNumber", "01234"); }
  const char* GetCTNumber() override { return Noted("GetCTNumber", "6QZZX0ABCDEF12"); }
  std::int32_t GetDesignVoltage() override { return Noted("GetDesignVoltage", 11550); }
  std::int32_t GetFurtherCapacity() override { return Noted("GetFurtherCapacity", 52480); }
  std::int32_t GetFullChargeCapacity() override { return Noted("GetFullChargeCapacity", 49120); }
  float GetFullChargePercent() override { return Noted("GetFullChargePercent", 93.6F); }
  std::uint32_t GetRemainingCapacity() override { return Noted("GetRemainingCapacity", 38375U); }
  float GetRemainingPercent() override { return Noted("GetRemainingPercent", 78.125F); }
  std::uint32_t GetMaxErrorPercent() override { return Noted("GetMaxErrorPercent", 4U); }
  std::uint32_t GetCycleCount() override { return Noted("GetCycleCount", 217U); }
  std::int32_t GetTemperature() override { return Noted("GetTemperature", 31); }
  std::int32_t GetVoltage() override { return Noted("GetVoltage", 12252); }
  std::uint32_t GetElectricCurrent() override { return Noted("GetElectricCurrent", 1530U); }
  std::int32_t GetStatusCode() override { return Noted("GetStatusCode", 192); }
  void GetSecondStatus(ZTBatteryStatus* status) override {
    Note("GetSecondStatus");
    status->on_ac_not_charging = 1;
  }
  void GetChargeState(ZTBatteryStatus* status) override {
    Note("GetChargeState");
    status->discharging = 1;
  }
  std::int32_t GetChargeRate() override { return Noted("GetChargeRate", 18744); }
  std::uint32_t GetDischargeRate() override { return Noted("GetDischargeRate", 6200U); }
};

NotingBattery the_battery;

std::string Argument(bool argument) {
  return argument ? "true" : "false";
}

std::string Argument(const void* argument) {
  return argument == nullptr ? "null" : "not null";
}

}  // namespace

// What the library has in its place; nobody here makes one.
class KnownBattery {};

ZTBatteries::ZTBatteries(bool with_live_figures, bool with_static_figures, void* reserved,
                         ZTBatteryTestInfo* test_info) {
  Note("ZTBatteries(" + Argument(with_live_figures) + ", " + Argument(with_static_figures) + ", " + Argument(reserved) +
       ", " + Argument(test_info) + ")");
}

ZTBatteries::~ZTBatteries() {
  Note("~ZTBatteries");
}

ZTBatteryInfo* ZTBatteries::Query(unsigned char index) {
  Note("Query(" + std::to_string(index) + ")");
  return index == 0 ? &the_battery : nullptr;
}

namespace {

using telemetry::collector::performancesamples::BatteryInfoMsg;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint8_t kCharging = 8;
constexpr std::uint8_t kNoBattery = 128;

void Sample(std::uint8_t battery_flag) {
  simulation::Machine machine;
  machine.battery_flag = battery_flag;
  simulation::UseMachine(machine);
  PerfMessages::Init(nullptr, 50);
  BatteryInfoMsg().PopulateStorageAndUploadProtos();
}

TEST(BatteryCallsTest, AskForEachFigureOnceAndInTheirOrder) {
  Sample(kCharging);
  EXPECT_THAT(events,
              ElementsAre("ZTBatteries(true, true, null, null)", "Query(0)", "GetSerialNumber", "GetCTNumber",
                          "GetDesignVoltage", "GetVoltage", "an entry is appended", "GetChargeState",
                          "GetFullChargeCapacity", "GetChargeRate", "GetRemainingPercent", "GetTemperature",
                          "GetFurtherCapacity", "the storage records are filled", "GetSecondStatus", "GetCycleCount",
                          "GetRemainingCapacity", "GetMaxErrorPercent", "GetElectricCurrent", "GetDischargeRate",
                          "GetStatusCode", "GetFullChargePercent", "Query(1)", "~ZTBatteries"));
}

TEST(BatteryCallsTest, TellNothingOfTheSecondStatus) {
  Sample(kCharging);
  EXPECT_EQ(PerfMessages::static_cdm_->hw_info().batteries_info(0).charge_state(), "discharging");
}

TEST(BatteryCallsTest, AreNotMadeWithoutABattery) {
  Sample(kNoBattery);
  EXPECT_THAT(events, IsEmpty());
}

}  // namespace
}  // namespace zt::shared::battery
