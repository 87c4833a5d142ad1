// Which cards a pass writes, and in which order.
#include "gpu_fixture.h"
#include "plugin/logger_export.h"
#include "simulation/profile.h"
#include "support/recording_log.h"
#include "support/status_codes.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using tests::AddIntelGraphics;
using tests::FullAmdCard;
using tests::FullNvidiaCard;
using tests::Machine;
using tests::WithNvidia;

constexpr std::uint32_t kBefore = 7;

std::vector<tests::NvmlDevice> NvidiaCards(int count) {
  std::vector<tests::NvmlDevice> devices;
  for (int i = 0; i < count; ++i) devices.push_back(FullNvidiaCard("card " + std::to_string(i)));
  return devices;
}

class GpuPassTest : public GpuSamplerTest {};

TEST_F(GpuPassTest, AMachineWithoutAnyCardGetsNoEntryAndAnEmptySection) {
  const auto& hardware = Sample({});
  EXPECT_EQ(hardware.gpus_info_size(), 0);
  EXPECT_TRUE(PerfMessages::static_cdm_->has_hw_info());
}

TEST_F(GpuPassTest, AMachineWithoutAnyCardLeavesTheFirmwaresTemperatureUntouched) {
  Sample({});
  EXPECT_FALSE(PerfMessages::thermal_->has_gpu_temperature());
  shared::ztbios::PrivateBiosWmi bios;
  PerfMessages::thermal_->set_gpu_temperature(kBefore);
  Populate<GPUInfoMsg>(&wmi_, &bios);
  EXPECT_EQ(PerfMessages::thermal_->gpu_temperature(), kBefore);
}

TEST_F(GpuPassTest, CardsOfEarlierVendorsAreRepeatedBeforeThoseOfTheNext) {
  Machine machine = WithNvidia({FullNvidiaCard("nvidia")});
  AddIntelGraphics(machine, "BIOS000001", 349);
  Sample(machine);
  EXPECT_THAT(Serials(), ElementsAre("nvidia", "nvidia", "BIOS000001"));
}

TEST_F(GpuPassTest, AllThreeVendorsGiveEachOfTheEarlierCardsAgain) {
  Machine machine = WithNvidia({FullNvidiaCard("n1"), FullNvidiaCard("n2")});
  machine.adlx.emplace().gpus = {FullAmdCard("744C")};
  AddIntelGraphics(machine, "intel", 349);
  Sample(machine);
  EXPECT_THAT(Serials(), ElementsAre("n1", "n2", "n1", "n2", "744C", "n1", "n2", "744C", "intel"));
}

TEST_F(GpuPassTest, CardsThatAFailedVendorOpenedAreWrittenWithTheNextVendors) {
  Machine machine = WithNvidia({FullNvidiaCard("good"), FullNvidiaCard("bad")});
  machine.nvml->devices[1].open = 15;
  AddIntelGraphics(machine, "intel", 349);
  Sample(machine);
  EXPECT_THAT(Serials(), ElementsAre("good", "intel"));
}

TEST_F(GpuPassTest, CardsThatAFailedVendorOpenedAreLostWithoutAnother) {
  Machine machine = WithNvidia({FullNvidiaCard("good"), FullNvidiaCard("bad")});
  machine.nvml->devices[1].open = 15;
  EXPECT_EQ(Sample(machine).gpus_info_size(), 0);
  EXPECT_FALSE(PerfMessages::thermal_->has_gpu_temperature());
}

TEST_F(GpuPassTest, ADriverWithoutCardsIsASuccessWithoutEntries) {
  EXPECT_EQ(Sample(WithNvidia({})).gpus_info_size(), 0);
  EXPECT_EQ(Calls("nvmlDeviceGetCount_v2"), 1U);
}

TEST_F(GpuPassTest, OneCardIsOneEntry) {
  Sample(WithNvidia(NvidiaCards(1)));
  EXPECT_THAT(Serials(), ElementsAre("card 0"));
}

TEST_F(GpuPassTest, ThirtyTwoCardsAreAllWritten) {
  Sample(WithNvidia(NvidiaCards(32)));
  EXPECT_THAT(Serials(), SizeIs(32));
  EXPECT_EQ(Serials().back(), "card 31");
}

TEST_F(GpuPassTest, TheThirtyThirdCardEndsThePass) {
  Machine machine = WithNvidia(NvidiaCards(33));
  machine.nvml->devices[31].temperature_celsius = 31U;
  AddIntelGraphics(machine, "intel", 349);
  Sample(machine);
  EXPECT_THAT(Serials(), SizeIs(32));
  EXPECT_EQ(Serials().back(), "card 31");
  EXPECT_EQ(PerfMessages::thermal_->gpu_temperature(), 31U);
  EXPECT_THAT(simulation::RecordedQueries(), IsEmpty()) << "no vendor after the stop is asked";
}

TEST_F(GpuPassTest, RepeatedCardsCountTowardsTheLimit) {
  Machine machine = WithNvidia(NvidiaCards(17));
  AddIntelGraphics(machine, "intel", 349);
  Sample(machine);
  ASSERT_THAT(Serials(), SizeIs(32));
  EXPECT_EQ(Serials()[16], "card 16");
  EXPECT_EQ(Serials()[17], "card 0");
  EXPECT_EQ(Serials()[31], "card 14");
}

TEST_F(GpuPassTest, NothingIsAskedForACardBeyondTheLimit) {
  Machine machine = WithNvidia(NvidiaCards(33));
  machine.nvml->devices[32].serial.reset();
  Sample(machine);
  EXPECT_THAT(simulation::RecordedQueries(), IsEmpty());
}

TEST_F(GpuPassTest, TheLastCardsTemperatureIsHandedToTheFirmwaresSample) {
  Machine machine = WithNvidia({FullNvidiaCard()});
  AddIntelGraphics(machine, "intel", 349);
  Sample(machine);
  EXPECT_EQ(PerfMessages::thermal_->gpu_temperature(), 76U);
}

TEST_F(GpuPassTest, APassStartsAndStopsEachLibraryOnce) {
  Machine machine = WithNvidia({FullNvidiaCard()});
  machine.adlx.emplace().gpus = {FullAmdCard()};
  Sample(machine);
  EXPECT_EQ(Calls("nvmlInit_v2"), 1U);
  EXPECT_EQ(Calls("nvmlShutdown"), 1U);
  EXPECT_EQ(Calls("ADLXInitialize"), 1U);
  EXPECT_EQ(Calls("ADLXTerminate"), 1U);
  ExpectNoReferenceLeft();
}

TEST_F(GpuPassTest, PassesDoNotKnowOfEachOther) {
  for (int i = 0; i < 3; ++i) {
    Machine machine = WithNvidia({FullNvidiaCard()});
    AddIntelGraphics(machine, "intel", 349);
    EXPECT_EQ(Sample(machine).gpus_info_size(), 3);
  }
}

TEST_F(GpuPassTest, TheWorkstationShowsItsCardsInTheRepeatedOrder) {
  Sample(simulation::ReadShippedProfile("workstation"));
  const std::string n1 = "1650000000001";
  const std::string n2 = "1650000000002";
  EXPECT_THAT(Serials(), ElementsAre(n1, n2, n1, n2, "744C", n1, n2, "744C", "5CG0000002"));
}

TEST_F(GpuPassTest, VendorsThatFailCostNoLineOfTheLog) {
  tests::RecordingLog log;
  ztSharedInitializeLogger(plog::verbose, &log);
  Machine machine = WithNvidia({FullNvidiaCard("good"), FullNvidiaCard("bad")});
  machine.nvml->devices[1].open = 15;
  machine.adlx.emplace().initialize = 5;
  machine.wmi.failures = {{"", tests::kWmiFailed, {}, 0}};
  EXPECT_EQ(Sample(machine).gpus_info_size(), 0);
  EXPECT_EQ(Sample({}).gpus_info_size(), 0) << "a machine without the libraries";
  EXPECT_THAT(log.Messages(), IsEmpty());
}

TEST_F(GpuPassTest, WaysRoundAMissingFigureThatFailCostNoLineOfTheLog) {
  tests::RecordingLog log;
  ztSharedInitializeLogger(plog::verbose, &log);
  Machine machine = WithNvidia({tests::NvmlDevice()});
  machine.wmi.failures = {{"", tests::kWmiFailed, {}, 0}};
  EXPECT_EQ(Sample(machine).gpus_info_size(), 1);
  EXPECT_THAT(log.Messages(), IsEmpty());
}

// Each vendor works or fails, in all combinations.
class GpuVendorsTest : public GpuSamplerTest, public testing::WithParamInterface<unsigned> {};

TEST_P(GpuVendorsTest, ThatWorkAreWrittenWhateverTheOthersDo) {
  const bool nvidia_works = (GetParam() & 1U) != 0;
  const bool amd_works = (GetParam() & 2U) != 0;
  const bool intel_works = (GetParam() & 4U) != 0;
  Machine machine = WithNvidia({FullNvidiaCard("nvidia")});
  machine.nvml->init = nvidia_works ? 0 : 999;
  machine.adlx.emplace().gpus = {FullAmdCard("amd")};
  machine.adlx->gpu_list = amd_works ? 0 : 3;
  AddIntelGraphics(machine, "intel", 349);
  if (!intel_works) machine.wmi.failures = {{"AdapterCompatibility", tests::kWmiFailed, {}, 0}};

  std::vector<std::string> cards;
  std::vector<std::string> expected;
  const auto visit = [&](bool works, const std::string& serial) {
    if (!works) return;
    cards.push_back(serial);
    expected.insert(expected.end(), cards.begin(), cards.end());
  };
  visit(nvidia_works, "nvidia");
  visit(amd_works, "amd");
  visit(intel_works, "intel");

  Sample(machine);
  EXPECT_EQ(Serials(), expected);
  ExpectNoReferenceLeft();
}
INSTANTIATE_TEST_SUITE_P(AllCombinations, GpuVendorsTest, testing::Range(0U, 8U));

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
