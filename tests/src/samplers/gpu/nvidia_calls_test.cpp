// What one call that fails, or one function that is missing, costs: its own field.
#include <functional>
#include <limits>
#include <ostream>

#include "gpu_fixture.h"
#include "samplers/gpu/nvidia_card_info.h"
#include "simulation/calls.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::IsEmpty;
using testing::SizeIs;
using tests::Failure;
using tests::FullNvidiaCard;
using tests::Machine;
using tests::NvmlDevice;
using tests::WithNvidia;

// What the card of these tests gives when nothing fails.
GraphicCardInfo FullNvmlAnswer() {
  GraphicCardInfo card;
  card.serial_number = "1650000000001";
  card.bus_number = 12;
  card.temperature_celsius = 71;
  card.gpu_clock_mhz = 2505;
  card.gpu_utilization_percent = 98;
  card.memory_clock_mhz = 9001;
  card.memory_used_mb = 2000;
  card.memory_controller_utilization_percent = 25;
  card.memory_bandwidth_gb = 384;
  card.decoder_utilization_percent = 5;
  card.encoder_utilization_percent = 12;
  card.status_text = "Clocks have been optimized to not exceed set power limits";
  return card;
}

// A function, the facts that it reads, and what a card is without them.
struct NvmlCase {
  std::string function;
  std::function<void(NvmlDevice&)> fail;
  std::function<void(GraphicCardInfo&)> take_away;
};

void LoseNvmlMemory(GraphicCardInfo& card) {
  card.memory_used_mb = 0;
  card.memory_controller_utilization_percent = std::numeric_limits<float>::quiet_NaN();
}

void LoseNvmlClocks(GraphicCardInfo& card) {
  card.memory_clock_mhz = 0;
  card.gpu_clock_mhz = 0;
}

constexpr Failure kNvmlFails{999};

// The name under which the test runs.
void PrintTo(const NvmlCase& tested, std::ostream* out) {
  *out << tested.function;
}

const std::vector<NvmlCase>& NvmlCases() {
  static const std::vector<NvmlCase> cases = {
      {"nvmlDeviceGetSerial", [](auto& device) { device.serial = kNvmlFails; },
       [](auto& card) { card.serial_number.clear(); }},
      {"nvmlDeviceGetPciInfo_v3", [](auto& device) { device.bus_id = kNvmlFails; },
       [](auto& card) { card.bus_number = 0; }},
      {"nvmlDeviceGetCurrentClocksThrottleReasons", [](auto& device) { device.throttle_reasons = kNvmlFails; },
       [](auto& card) { card.status_text.clear(); }},
      {"nvmlDeviceGetTemperature", [](auto& device) { device.temperature_celsius = kNvmlFails; },
       [](auto& card) { card.temperature_celsius = 0; }},
      {"nvmlDeviceGetClock", [](auto& device) { device.memory_clock_mhz = device.graphics_clock_mhz = kNvmlFails; },
       LoseNvmlClocks},
      {"nvmlDeviceGetMemoryBusWidth", [](auto& device) { device.memory_bus_width_bits = kNvmlFails; },
       [](auto& card) { card.memory_bandwidth_gb = 0; }},
      {"nvmlDeviceGetMemoryInfo", [](auto& device) { device.memory_total_bytes = kNvmlFails; }, LoseNvmlMemory},
      {"nvmlDeviceGetUtilizationRates", [](auto& device) { device.gpu_percent = kNvmlFails; },
       [](auto& card) { card.gpu_utilization_percent = 0; }},
      {"nvmlDeviceGetEncoderUtilization", [](auto& device) { device.encoder_percent = kNvmlFails; },
       [](auto& card) { card.encoder_utilization_percent = 0; }},
      {"nvmlDeviceGetDecoderUtilization", [](auto& device) { device.decoder_percent = kNvmlFails; },
       [](auto& card) { card.decoder_utilization_percent = 0; }},
  };
  return cases;
}

class NvidiaCallTest : public testing::TestWithParam<NvmlCase> {
 protected:
  static void ExpectCardWithoutIt(const Machine& machine) {
    const Answer answer = Ask<NvidiaCardInfo>(machine);
    EXPECT_EQ(answer.error, Error());
    ASSERT_THAT(answer.cards, SizeIs(1));
    GraphicCardInfo expected = FullNvmlAnswer();
    GetParam().take_away(expected);
    EXPECT_EQ(Describe(answer.cards[0]), Describe(expected));
  }
};

TEST_P(NvidiaCallTest, ThatFailsCostsItsOwnFieldOnly) {
  Machine machine = WithNvidia({FullNvidiaCard()});
  GetParam().fail(machine.nvml->devices[0]);
  ExpectCardWithoutIt(machine);
  EXPECT_GE(Calls(GetParam().function), 1U);
}

TEST_P(NvidiaCallTest, WhoseFunctionIsMissingCostsItsOwnFieldOnly) {
  Machine machine = WithNvidia({FullNvidiaCard()});
  machine.nvml->missing_functions = {GetParam().function};
  ExpectCardWithoutIt(machine);
  EXPECT_EQ(Calls(GetParam().function), 0U);
}

INSTANTIATE_TEST_SUITE_P(Each, NvidiaCallTest, testing::ValuesIn(NvmlCases()),
                         [](const auto& tested) { return tested.param.function; });

TEST(NvidiaCallsTest, ThatAllSucceedFillTheWholeCard) {
  const Answer answer = Ask<NvidiaCardInfo>(WithNvidia({FullNvidiaCard()}));
  ASSERT_THAT(answer.cards, SizeIs(1));
  EXPECT_EQ(Describe(answer.cards[0]), Describe(FullNvmlAnswer()));
}

TEST(NvidiaCallsTest, RunInTheirOrder) {
  Ask<NvidiaCardInfo>(WithNvidia({FullNvidiaCard()}));
  EXPECT_THAT(CallsInOrder(),
              testing::ElementsAre(
                  "nvmlInit_v2", "nvmlDeviceGetCount_v2", "nvmlDeviceGetHandleByIndex_v2", "nvmlDeviceGetSerial",
                  "nvmlDeviceGetPciInfo_v3", "nvmlDeviceGetCurrentClocksThrottleReasons", "nvmlDeviceGetTemperature",
                  "nvmlDeviceGetClock(2)", "nvmlDeviceGetClock(0)", "nvmlDeviceGetMemoryBusWidth",
                  "nvmlDeviceGetMemoryInfo", "nvmlDeviceGetUtilizationRates", "nvmlDeviceGetEncoderUtilization",
                  "nvmlDeviceGetDecoderUtilization", "nvmlShutdown"));
}

TEST(NvidiaCallsTest, ThatAllFailLeaveAnEmptyCardAndASuccess) {
  const Answer answer = Ask<NvidiaCardInfo>(WithNvidia({NvmlDevice()}));
  EXPECT_EQ(answer.error, Error());
  ASSERT_THAT(answer.cards, SizeIs(1));
  GraphicCardInfo expected;
  LoseNvmlMemory(expected);
  EXPECT_EQ(Describe(answer.cards[0]), Describe(expected));
}

TEST(NvidiaCallsTest, OneClockThatFailsLeavesTheOther) {
  NvmlDevice device = FullNvidiaCard();
  device.memory_clock_mhz = kNvmlFails;
  Answer answer = Ask<NvidiaCardInfo>(WithNvidia({device}));
  EXPECT_EQ(answer.cards.at(0).memory_clock_mhz, 0.0F);
  EXPECT_EQ(answer.cards.at(0).gpu_clock_mhz, 2505.0F);
  device = FullNvidiaCard();
  device.graphics_clock_mhz = kNvmlFails;
  answer = Ask<NvidiaCardInfo>(WithNvidia({device}));
  EXPECT_EQ(answer.cards.at(0).memory_clock_mhz, 9001.0F);
  EXPECT_EQ(answer.cards.at(0).gpu_clock_mhz, 0.0F);
}

TEST(NvidiaCallsTest, FiguresOfACardDoNotSpillIntoTheNext) {
  const Answer answer = Ask<NvidiaCardInfo>(WithNvidia({FullNvidiaCard(), NvmlDevice()}));
  ASSERT_THAT(answer.cards, SizeIs(2));
  GraphicCardInfo expected;
  LoseNvmlMemory(expected);
  EXPECT_EQ(Describe(answer.cards[1]), Describe(expected));
}

// Without one of these nothing can be asked: a library that lacks it is none.
class IndispensableNvidiaFunctionTest : public testing::TestWithParam<const char*> {};

TEST_P(IndispensableNvidiaFunctionTest, MissingIsTheLibraryMissing) {
  Machine machine = WithNvidia({FullNvidiaCard()});
  machine.nvml->missing_functions = {GetParam()};
  const Answer answer = Ask<NvidiaCardInfo>(machine);
  EXPECT_EQ(answer.error.kind, 5);
  EXPECT_EQ(answer.error.code, 12);
  EXPECT_EQ(answer.error.description, "NVML Shared Library couldn't be found or loaded");
  EXPECT_THAT(answer.cards, IsEmpty());
  EXPECT_THAT(CurrentVendorRecord().calls, IsEmpty());
}
INSTANTIATE_TEST_SUITE_P(Each, IndispensableNvidiaFunctionTest,
                         testing::Values("nvmlInit_v2", "nvmlShutdown", "nvmlDeviceGetCount_v2",
                                         "nvmlDeviceGetHandleByIndex_v2"),
                         [](const auto& tested) { return std::string(tested.param); });

TEST(NvidiaAbsurdCountTest, OfACountOfBillionsOnlyAsManyAreAskedForAsAMachineCanHave) {
  Machine machine = WithNvidia({FullNvidiaCard()});
  machine.nvml->count = 2'147'483'647U;
  const auto answer = Ask<NvidiaCardInfo>(machine);
  EXPECT_TRUE(answer.error.Failed());
  EXPECT_THAT(answer.cards, SizeIs(1));
  EXPECT_EQ(Calls("nvmlDeviceGetHandleByIndex_v2"), static_cast<std::uint64_t>(kMostCardsOfVendor));
}

TEST(NvidiaNullCardTest, ACardThatIsOpenedAndNotGivenFailsAndTheLibraryIsStillStopped) {
  Ask<NvidiaCardInfo>(WithNvidia({FullNvidiaCard()}));
  simulation::WatchCalls([](const simulation::Call& call) {
    return call.name == "nvmlDeviceGetHandleByIndex_v2" ? simulation::Disturbance::kNull
                                                        : simulation::Disturbance::kNone;
  });
  const auto answer = Ask<NvidiaCardInfo>(WithNvidia({FullNvidiaCard()}));
  simulation::WatchCalls({});
  EXPECT_EQ(answer.error.code, 999);
  EXPECT_THAT(answer.cards, IsEmpty());
  EXPECT_EQ(Calls("nvmlDeviceGetSerial"), 0U);
  EXPECT_EQ(Calls("nvmlShutdown"), 1U);
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
