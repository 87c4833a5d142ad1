// Where a card's serial number and temperature come from when its vendor does not tell.
#include <algorithm>

#include "gpu_fixture.h"
#include "simulation/firmware_observer.h"
#include "support/status_codes.h"
#include "support/wmi_namespace.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::ElementsAre;
using tests::FullNvidiaCard;
using tests::Machine;
using tests::WithNvidia;
using tests::WmiRow;

constexpr char kControllersQuery[] = "SELECT PNPDeviceID FROM Win32_VideoController";

Machine WithoutSerial() {
  Machine machine = WithNvidia({FullNvidiaCard()});
  machine.nvml->devices[0].serial = tests::Failure{3};
  return machine;
}

void AddController(Machine& machine, const std::string& id) {
  machine.wmi.classes["Win32_VideoController"].push_back(WmiRow{{"PNPDeviceID", id}});
}

// `temperature` is not told by the card.
Machine WithoutTemperature(simulation::BiosReply reply) {
  Machine machine = WithNvidia({FullNvidiaCard()});
  machine.nvml->devices[0].temperature_celsius = tests::Failure{3};
  machine.private_bios = {std::move(reply)};
  return machine;
}

simulation::BiosReply ThermalReply(std::vector<std::uint8_t> output) {
  return {1, 40, {1, 0, 0, 0}, 0, 0, std::move(output)};
}

class GpuFallbacksTest : public GpuSamplerTest {};

TEST_F(GpuFallbacksTest, ACardWithoutASerialNumberGetsTheFirstControllersIdentifier) {
  Machine machine = WithoutSerial();
  AddController(machine, R"(PCI\VEN_8086&DEV_A780)");
  AddController(machine, R"(PCI\VEN_10DE&DEV_26B1)");
  EXPECT_EQ(SampleOne(machine).graphics_card_serial_number(), R"(PCI\VEN_8086&DEV_A780)");
  EXPECT_THAT(
      simulation::RecordedQueries(),
      ElementsAre(kControllersQuery,
                  R"(SELECT __Class FROM Win32_VideoController WHERE AdapterCompatibility="Intel Corporation")"));
}

TEST_F(GpuFallbacksTest, ARepeatedCardKeepsTheIdentifierThatItWasGiven) {
  Machine machine = WithoutSerial();
  AddController(machine, "first");
  tests::AddIntelGraphics(machine, "intel", 349);
  Sample(machine);
  EXPECT_THAT(Serials(), ElementsAre("first", "first", "intel"));
  const auto queries = simulation::RecordedQueries();
  EXPECT_EQ(std::count(queries.begin(), queries.end(), kControllersQuery), 1);
}

TEST_F(GpuFallbacksTest, ACardWithASerialNumberAsksForNoOther) {
  Machine machine = WithNvidia({FullNvidiaCard()});
  AddController(machine, "first");
  Sample(machine);
  EXPECT_THAT(simulation::RecordedQueries(), testing::Not(testing::Contains(kControllersQuery)));
}

TEST_F(GpuFallbacksTest, ACardWhoseIdentifierIsNowhereIsUnknown) {
  EXPECT_EQ(SampleOne(WithoutSerial()).graphics_card_serial_number(), "unknown");
}

TEST_F(GpuFallbacksTest, AFailedQueryForTheIdentifierLeavesTheCardUnknown) {
  Machine machine = WithoutSerial();
  AddController(machine, "first");
  machine.wmi.failures = {{"PNPDeviceID", tests::kWmiFailed, {}, 0}};
  EXPECT_EQ(SampleOne(machine).graphics_card_serial_number(), "unknown");
}

TEST_F(GpuFallbacksTest, AControllerWithoutAnIdentifierLeavesTheCardUnknown) {
  Machine machine = WithoutSerial();
  machine.wmi.classes["Win32_VideoController"] = {WmiRow{{"Name", std::string("nameless")}}};
  AddController(machine, "second");
  EXPECT_EQ(SampleOne(machine).graphics_card_serial_number(), "unknown");
}

TEST_F(GpuFallbacksTest, TheIdentifierIsCutAsASerialNumberIs) {
  Machine machine = WithoutSerial();
  AddController(machine, std::string(80, 'p'));
  EXPECT_EQ(SampleOne(machine).graphics_card_serial_number(), std::string(64, 'p'));
}

TEST_F(GpuFallbacksTest, ACardWithoutATemperatureGetsTheFirmwaresReading) {
  EXPECT_EQ(SampleOne(WithoutTemperature(ThermalReply({2, 55, 48}))).temperature_celsius(), 55U);
  EXPECT_EQ(PerfMessages::thermal_->gpu_temperature(), 55U);
}

TEST_F(GpuFallbacksTest, ACardOfZeroDegreesIsOneWithoutATemperature) {
  Machine machine = WithoutTemperature(ThermalReply({1, 55}));
  machine.nvml->devices[0].temperature_celsius = 0U;
  EXPECT_EQ(SampleOne(machine).temperature_celsius(), 55U);
}

TEST_F(GpuFallbacksTest, ACardWithATemperatureKeepsIt) {
  Machine machine = WithoutTemperature(ThermalReply({2, 55, 48}));
  machine.nvml->devices[0].temperature_celsius = 71U;
  EXPECT_EQ(SampleOne(machine).temperature_celsius(), 71U);
}

TEST_F(GpuFallbacksTest, FirmwareWithoutReadingsLeavesTheTemperatureAtZero) {
  EXPECT_EQ(SampleOne(WithoutTemperature(ThermalReply({0, 55}))).temperature_celsius(), 0U);
  EXPECT_TRUE(PerfMessages::thermal_->has_gpu_temperature());
  EXPECT_EQ(PerfMessages::thermal_->gpu_temperature(), 0U);
}

TEST_F(GpuFallbacksTest, AFirmwareCallThatFailsLeavesTheTemperatureAtZero) {
  simulation::BiosReply reply = ThermalReply({2, 55});
  reply.result = tests::kWmiFailed;
  EXPECT_EQ(SampleOne(WithoutTemperature(reply)).temperature_celsius(), 0U);
}

TEST_F(GpuFallbacksTest, AFirmwareThatRefusesLeavesTheTemperatureAtZero) {
  simulation::BiosReply reply = ThermalReply({2, 55});
  reply.return_code = 3;
  EXPECT_EQ(SampleOne(WithoutTemperature(reply)).temperature_celsius(), 0U);
}

TEST_F(GpuFallbacksTest, FirmwareWithoutTheInterfaceLeavesTheTemperatureAtZero) {
  Machine machine = WithoutTemperature({});
  machine.private_bios.clear();
  EXPECT_EQ(SampleOne(machine).temperature_celsius(), 0U);
}

TEST_F(GpuFallbacksTest, AClientThatThrowsLeavesTheCardUnknownAndItsTemperatureIsStillAskedFor) {
  Machine machine = WithoutSerial();
  AddController(machine, "first");
  machine.nvml->devices[0].temperature_celsius = tests::Failure{3};
  machine.private_bios = {ThermalReply({1, 55})};
  shared::wmi::ObserveQueries([](const std::wstring& wql) {
    if (wql.find(L"PNPDeviceID") != std::wstring::npos) throw std::string("the client broke");
  });
  const auto& entry = SampleOne(machine);
  shared::wmi::ObserveQueries({});
  EXPECT_EQ(entry.graphics_card_serial_number(), "unknown");
  EXPECT_EQ(entry.temperature_celsius(), 55U);
}

TEST_F(GpuFallbacksTest, AFirmwareClientThatThrowsLeavesTheTemperatureAtZeroAndTheCardsAreWritten) {
  Machine machine = WithoutTemperature(ThermalReply({1, 55}));
  tests::AddIntelGraphics(machine, "intel", 349);
  simulation::ObserveFirmwareCommands([] { throw std::string("the client broke"); });
  const auto& hardware = Sample(machine);
  simulation::ObserveFirmwareCommands({});
  EXPECT_THAT(Serials(), ElementsAre("1650000000001", "1650000000001", "intel"));
  EXPECT_EQ(hardware.gpus_info(1).temperature_celsius(), 0U);
}

TEST_F(GpuFallbacksTest, WithoutAWmiClientTheCardIsUnknownAndThereIsNoIntelGraphics) {
  Machine machine = WithoutSerial();
  tests::AddIntelGraphics(machine, "intel", 349);
  shared::ztbios::PrivateBiosWmi bios;
  SampleWith(machine, nullptr, &bios);
  EXPECT_THAT(Serials(), ElementsAre("unknown"));
}

TEST_F(GpuFallbacksTest, WithoutAFirmwareClientTheTemperatureStaysAtZero) {
  const auto& hardware = SampleWith(WithoutTemperature(ThermalReply({1, 55})), &wmi_, nullptr);
  ASSERT_EQ(hardware.gpus_info_size(), 1);
  EXPECT_EQ(hardware.gpus_info(0).temperature_celsius(), 0U);
}

TEST_F(GpuFallbacksTest, WithoutAnyClientCardsOfALibraryAreWritten) {
  SampleWith(WithNvidia({FullNvidiaCard()}), nullptr, nullptr);
  EXPECT_THAT(Serials(), ElementsAre("1650000000001"));
}

// The two ways, by themselves.
class OpenGpuInfoMsg : public GPUInfoMsg {
 public:
  using GPUInfoMsg::AlternativeSNRetrieval;
  using GPUInfoMsg::AlternativeTempRetrieval;
  using GPUInfoMsg::GPUInfoMsg;
};

TEST(GpuFallbackCallsTest, AreLeftWithTheTextThatTheyWereGivenWhenNothingAnswers) {
  simulation::UseMachine({});
  shared::wmi::WMIClient wmi(tests::kWmiNamespace);
  shared::ztbios::PrivateBiosWmi bios;
  OpenGpuInfoMsg sampler(&wmi, &bios);
  std::string serial = "before";
  sampler.AlternativeSNRetrieval(serial);
  EXPECT_EQ(serial, "before");
  unsigned int temperature = 7;
  sampler.AlternativeTempRetrieval(temperature, nullptr, nullptr);
  EXPECT_EQ(temperature, 7U);
}

TEST(GpuFallbackCallsTest, LeaveTheCallersBuffersAlone) {
  Machine machine;
  machine.private_bios = {ThermalReply({1, 61})};
  simulation::UseMachine(machine);
  shared::wmi::WMIClient wmi(tests::kWmiNamespace);
  shared::ztbios::PrivateBiosWmi bios;
  unsigned int temperature = 0;
  unsigned long return_code = 9;
  std::vector<unsigned char> output = {1, 2};
  OpenGpuInfoMsg(&wmi, &bios).AlternativeTempRetrieval(temperature, &return_code, &output);
  EXPECT_EQ(temperature, 61U);
  EXPECT_EQ(return_code, 9U);
  EXPECT_THAT(output, ElementsAre(1, 2));
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
