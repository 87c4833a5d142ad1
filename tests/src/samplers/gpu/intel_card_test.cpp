// The card that stands for Intel's graphics.
#include <stdexcept>

#include "gpu_fixture.h"
#include "samplers/gpu/intel_card_info.h"
#include "support/status_codes.h"
#include "support/wmi_namespace.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using shared::wmi::WMIClient;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using tests::AddIntelGraphics;
using tests::Machine;
using tests::WmiRow;

constexpr char kPresence[] =
    R"(SELECT __Class FROM Win32_VideoController WHERE AdapterCompatibility="Intel Corporation")";
constexpr char kSerial[] = "SELECT SerialNumber FROM Win32_BIOS";
constexpr char kTemperature[] =
    R"(SELECT Temperature FROM Win32_PerfFormattedData_Counters_ThermalZoneInformation WHERE Name = "\\_TZ.CPUZ")";
constexpr char kZones[] = "Win32_PerfFormattedData_Counters_ThermalZoneInformation";
constexpr std::uint32_t kNoZone = 4294967023;

Answer AskIntel(Machine machine) {
  simulation::UseMachine(std::move(machine));
  WMIClient wmi(tests::kWmiNamespace);
  IntelCardInfo intel(wmi);
  Answer answer;
  answer.error = intel.QueryValues(&answer.cards);
  return answer;
}

Machine WithIntel(std::int32_t kelvin = 349) {
  Machine machine;
  AddIntelGraphics(machine, "5CG0000001", kelvin);
  return machine;
}

GraphicCardInfo AskOne(const Machine& machine) {
  const Answer answer = AskIntel(machine);
  EXPECT_EQ(answer.error, Error());
  EXPECT_THAT(answer.cards, SizeIs(1));
  return answer.cards.at(0);
}

TEST(IntelCardTest, HasTheMachinesSerialNumberAndTheProcessorsTemperature) {
  GraphicCardInfo expected;
  expected.serial_number = "5CG0000001";
  expected.temperature_celsius = 76;
  EXPECT_EQ(Describe(AskOne(WithIntel(349))), Describe(expected));
}

TEST(IntelCardTest, AsksThreeQueries) {
  AskIntel(WithIntel());
  EXPECT_THAT(simulation::RecordedQueries(), ElementsAre(kPresence, kSerial, kTemperature));
}

TEST(IntelCardTest, AMachineWithoutOneFailsAfterTheFirstQuery) {
  Machine machine = WithIntel();
  machine.wmi.classes["Win32_VideoController"] = {WmiRow{{"AdapterCompatibility", std::string("NVIDIA")}}};
  const Answer answer = AskIntel(machine);
  EXPECT_EQ(answer.error, Error(5, 1, "Intel GPU not found", typeid(IntelCardInfo).name(), ""));
  EXPECT_THAT(answer.cards, IsEmpty());
  EXPECT_THAT(simulation::RecordedQueries(), ElementsAre(kPresence));
}

TEST(IntelCardTest, AFailedPresenceQueryIsNoIntelGraphics) {
  Machine machine = WithIntel();
  machine.wmi.failures = {{"AdapterCompatibility", tests::kWmiFailed, {}, 0}};
  EXPECT_EQ(AskIntel(machine).error.description, "Intel GPU not found");
}

TEST(IntelCardTest, SeveralOfThemAreOneCard) {
  Machine machine = WithIntel();
  AddIntelGraphics(machine, "5CG0000001", 349);
  ASSERT_THAT(machine.wmi.classes["Win32_VideoController"], SizeIs(2));
  EXPECT_THAT(AskIntel(machine).cards, SizeIs(1));
}

TEST(IntelCardTest, WithoutTheProcessorsZoneTheTemperatureWraps) {
  Machine machine = WithIntel();
  machine.wmi.classes.erase(kZones);
  EXPECT_EQ(AskOne(machine).temperature_celsius, kNoZone);
  machine.wmi.classes[kZones] = {WmiRow{{"Name", std::string(R"(\_TZ.BATZ)")}, {"Temperature", 304}}};
  EXPECT_EQ(AskOne(machine).temperature_celsius, kNoZone);
}

TEST(IntelCardTest, AZoneWithoutATemperatureWrapsTheSame) {
  Machine machine = WithIntel();
  machine.wmi.classes[kZones] = {WmiRow{{"Name", std::string(R"(\_TZ.CPUZ)")}}};
  EXPECT_EQ(AskOne(machine).temperature_celsius, kNoZone);
}

TEST(IntelCardTest, AFailedZoneQueryWrapsTheSame) {
  Machine machine = WithIntel();
  machine.wmi.failures = {{"ThermalZone", tests::kWmiFailed, {}, 0}};
  EXPECT_EQ(AskOne(machine).temperature_celsius, kNoZone);
}

TEST(IntelCardTest, AZoneThatDoesNotAnswerInTimeIsNotAMissingOne) {
  Machine machine = WithIntel();
  machine.wmi.failures = {{"ThermalZone", shared::wmi::kTimedOut, {}, 0}};
  EXPECT_EQ(AskOne(machine).temperature_celsius, 0U);
}

TEST(IntelCardTest, TemperaturesAroundTheFreezingPointWrapBelowIt) {
  EXPECT_EQ(AskOne(WithIntel(274)).temperature_celsius, 1U);
  EXPECT_EQ(AskOne(WithIntel(273)).temperature_celsius, 0U);
  EXPECT_EQ(AskOne(WithIntel(272)).temperature_celsius, 4294967295U);
}

TEST(IntelCardTest, WithoutASerialNumberOfTheMachineItHasNone) {
  Machine machine = WithIntel();
  machine.wmi.classes.erase("Win32_BIOS");
  EXPECT_EQ(AskOne(machine).serial_number, "");
  machine = WithIntel();
  machine.wmi.failures = {{"Win32_BIOS", tests::kWmiFailed, {}, 0}};
  EXPECT_EQ(AskOne(machine).serial_number, "");
}

// An exception of the client, here its observer's.
Answer AskIntelWithThrowing(const std::wstring& query_part) {
  shared::wmi::ObserveQueries([&](const std::wstring& wql) {
    if (wql.find(query_part) != std::wstring::npos) throw std::string("the client broke");
  });
  Answer answer = AskIntel(WithIntel());
  shared::wmi::ObserveQueries({});
  return answer;
}

TEST(IntelCardTest, AnExceptionOfTheClientIsTheAnswerAndLeavesNoCard) {
  for (const wchar_t* query : {L"Win32_VideoController", L"Win32_BIOS", L"ThermalZone"}) {
    const Answer answer = AskIntelWithThrowing(query);
    EXPECT_EQ(answer.error.kind, 5);
    EXPECT_EQ(answer.error.description, "the client broke");
    EXPECT_THAT(answer.cards, IsEmpty());
  }
}

class IntelCardPassTest : public GpuSamplerTest {};

TEST_F(IntelCardPassTest, IntelsCardHasBusZeroAndNoCappingReason) {
  const auto& entry = SampleOne(WithIntel());
  EXPECT_EQ(entry.graphics_card_serial_number(), "5CG0000001");
  EXPECT_EQ(entry.bus_id(), "0");
  EXPECT_EQ(entry.temperature_celsius(), 76U);
  EXPECT_EQ(entry.performance_capped_reason(), "unknown");
  EXPECT_TRUE(entry.has_memory_controller_utilization_percent());
  EXPECT_EQ(entry.memory_controller_utilization_percent(), 0.0F);
}

TEST_F(IntelCardPassTest, AWrappedTemperatureIsReportedAsItIs) {
  Machine machine = WithIntel();
  machine.wmi.classes.erase(kZones);
  machine.private_bios = {{1, 40, {1, 0, 0, 0}, 0, 0, {1, 55}}};
  EXPECT_EQ(SampleOne(machine).temperature_celsius(), kNoZone);
}

TEST_F(IntelCardPassTest, IntelGraphicsWhoseZoneDoesNotAnswerInTimeGetTheFirmwaresReading) {
  Machine machine = WithIntel();
  machine.wmi.failures = {{"ThermalZone", shared::wmi::kTimedOut, {}, 0}};
  machine.private_bios = {{1, 40, {1, 0, 0, 0}, 0, 0, {1, 55}}};
  EXPECT_EQ(SampleOne(machine).temperature_celsius(), 55U);
}

TEST_F(IntelCardPassTest, IntelGraphicsAtTheFreezingPointGetTheFirmwaresReading) {
  Machine machine = WithIntel(273);
  machine.private_bios = {{1, 40, {1, 0, 0, 0}, 0, 0, {1, 55}}};
  EXPECT_EQ(SampleOne(machine).temperature_celsius(), 55U);
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
