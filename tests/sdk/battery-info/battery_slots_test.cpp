#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "zt/shared/battery/zt_batteries.h"

// The collector calls the maker's battery library through tables of virtual operations: their order is the library's
// binary interface.
namespace zt::shared::battery {
namespace {

using testing::ElementsAre;

// The tables as the maker's library has them, written down apart from the classes that make them.
class BatteryTable {
 public:
  virtual const char* SerialNumber() = 0;
  virtual const char* CtNumber() = 0;
  virtual std::int32_t DesignVoltage() = 0;
  virtual std::int32_t FurtherCapacity() = 0;
  virtual std::int32_t FullChargeCapacity() = 0;
  virtual float FullChargePercent() = 0;
  virtual std::uint32_t RemainingCapacity() = 0;
  virtual float RemainingPercent() = 0;
  virtual std::uint32_t MaxErrorPercent() = 0;
  virtual std::uint32_t CycleCount() = 0;
  virtual std::int32_t Temperature() = 0;
  virtual std::int32_t Voltage() = 0;
  virtual std::uint32_t ElectricCurrent() = 0;
  virtual std::int32_t StatusCode() = 0;
  virtual void SecondStatus(void* status) = 0;
  virtual void ChargeState(void* status) = 0;
  virtual std::int32_t ChargeRate() = 0;
  virtual std::uint32_t DischargeRate() = 0;

 protected:
  ~BatteryTable() = default;
};

class BatterySetTable {
 public:
  virtual ~BatterySetTable() = default;
  virtual ZTBatteryInfo* Query(unsigned char index) = 0;
};

// Each operation answers with its place in the table, and marks the block that it is given with it.
class NumberedBattery final : public ZTBatteryInfo {
 public:
  const char* GetSerialNumber() override { return "1"; }
  const char* GetCTNumber() override { return "2"; }
  std::int32_t GetDesignVoltage() override { return 3; }
  std::int32_t GetFurtherCapacity() override { return 4; }
  std::int32_t GetFullChargeCapacity() override { return 5; }
  float GetFullChargePercent() override { return 6; }
  std::uint32_t GetRemainingCapacity() override { return 7; }
  float GetRemainingPercent() override { return 8; }
  std::uint32_t GetMaxErrorPercent() override { return 9; }
  std::uint32_t GetCycleCount() override { return 10; }
  std::int32_t GetTemperature() override { return 11; }
  std::int32_t GetVoltage() override { return 12; }
  std::uint32_t GetElectricCurrent() override { return 13; }
  std::int32_t GetStatusCode() override { return 14; }
  void GetSecondStatus(ZTBatteryStatus* status) override { status->on_ac_not_charging = 15; }
  void GetChargeState(ZTBatteryStatus* status) override { status->discharging = 16; }
  std::int32_t GetChargeRate() override { return 17; }
  std::uint32_t GetDischargeRate() override { return 18; }
};

class NotingBatteries : public ZTBatteries {
 public:
  explicit NotingBatteries(std::vector<std::string>& notes)
      : ZTBatteries(true, true, nullptr, nullptr), notes_(notes) {}
  ~NotingBatteries() override { notes_.push_back("destructor"); }
  ZTBatteryInfo* Query(unsigned char index) override {
    notes_.push_back("Query " + std::to_string(index));
    return nullptr;
  }

 private:
  std::vector<std::string>& notes_;
};

TEST(BatterySlotsTest, TheOperationsOfABatteryStandInTheMakersOrder) {
  NumberedBattery battery;
  ZTBatteryInfo* const info = &battery;
  auto* const table = reinterpret_cast<BatteryTable*>(info);
  EXPECT_STREQ(table->SerialNumber(), "1");
  EXPECT_STREQ(table->CtNumber(), "2");
  EXPECT_EQ(table->DesignVoltage(), 3);
  EXPECT_EQ(table->FurtherCapacity(), 4);
  EXPECT_EQ(table->FullChargeCapacity(), 5);
  EXPECT_EQ(table->FullChargePercent(), 6.0F);
  EXPECT_EQ(table->RemainingCapacity(), 7U);
  EXPECT_EQ(table->RemainingPercent(), 8.0F);
  EXPECT_EQ(table->MaxErrorPercent(), 9U);
  EXPECT_EQ(table->CycleCount(), 10U);
  EXPECT_EQ(table->Temperature(), 11);
  EXPECT_EQ(table->Voltage(), 12);
  EXPECT_EQ(table->ElectricCurrent(), 13U);
  EXPECT_EQ(table->StatusCode(), 14);
  std::uint8_t block[sizeof(ZTBatteryStatus)] = {};
  table->SecondStatus(block);
  EXPECT_EQ(block[9], 15);
  table->ChargeState(block);
  EXPECT_EQ(block[10], 16);
  EXPECT_EQ(table->ChargeRate(), 17);
  EXPECT_EQ(table->DischargeRate(), 18U);
}

TEST(BatterySlotsTest, TheSetHasItsDestructorThenItsQuery) {
  std::vector<std::string> notes;
  auto* const table = reinterpret_cast<BatterySetTable*>(static_cast<ZTBatteries*>(new NotingBatteries(notes)));
  EXPECT_EQ(table->Query(7), nullptr);
  delete table;
  EXPECT_THAT(notes, ElementsAre("Query 7", "destructor"));
}

}  // namespace
}  // namespace zt::shared::battery
