// What one call that fails, or one function that is missing, costs of AMD's cards; and that no interface is lost.
#include <functional>
#include <limits>
#include <ostream>

#include "gpu_fixture.h"
#include "samplers/gpu/amd_card_info.h"
#include "simulation/calls.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::IsEmpty;
using testing::SizeIs;
using tests::AdlxGpu;
using tests::Failure;
using tests::FullAmdCard;
using tests::Machine;
using tests::WithAmd;

constexpr Failure kFails{3};

Machine OneCard() {
  Machine machine = WithAmd({FullAmdCard()});
  tests::AddAdapter(machine, "VEN_1002&DEV_744C", "(3,0,0)");
  return machine;
}

GraphicCardInfo FullAnswer() {
  GraphicCardInfo card;
  card.serial_number = "744C";
  card.bus_number = 3;
  card.temperature_celsius = 63;
  card.gpu_clock_mhz = 2304;
  card.gpu_utilization_percent = 41.5F;
  card.memory_clock_mhz = 2487;
  card.memory_used_mb = 2048;
  card.memory_controller_utilization_percent = 25;
  return card;
}

void LoseMetrics(GraphicCardInfo& card) {
  const std::string serial = card.serial_number;
  const std::uint32_t bus = card.bus_number;
  card = GraphicCardInfo();
  card.serial_number = serial;
  card.bus_number = bus;
}

void LoseMemory(GraphicCardInfo& card) {
  card.memory_used_mb = 0;
  card.memory_controller_utilization_percent = 0;
}

void LoseIdentity(GraphicCardInfo& card) {
  card.serial_number.clear();
  card.bus_number = 0;
}

struct AdlxCase {
  std::string name;
  std::function<void(AdlxGpu&)> break_it;
  std::function<void(GraphicCardInfo&)> take_away;
};

// The name under which the test runs.
void PrintTo(const AdlxCase& tested, std::ostream* out) {
  *out << tested.name;
}

const std::vector<AdlxCase>& AdlxCases() {
  static const std::vector<AdlxCase> cases = {
      {"WithoutSupportInterface", [](auto& gpu) { gpu.metrics_support = 3; }, LoseMetrics},
      {"SupportQuestions", [](auto& gpu) { gpu.support_questions = 3; }, LoseMetrics},
      {"WithoutMetricsInterface", [](auto& gpu) { gpu.current_metrics = 3; }, LoseMetrics},
      {"DeviceId", [](auto& gpu) { gpu.device_id = kFails; }, LoseIdentity},
      {"VendorId", [](auto& gpu) { gpu.vendor_id = kFails; }, [](auto& card) { card.bus_number = 0; }},
      {"TotalVRAM", [](auto& gpu) { gpu.total_memory_mb = kFails; },
       [](auto& card) { card.memory_controller_utilization_percent = std::numeric_limits<float>::infinity(); }},
      {"GPUUsage", [](auto& gpu) { gpu.usage_percent = kFails; }, [](auto& card) { card.gpu_utilization_percent = 0; }},
      {"GPUClockSpeed", [](auto& gpu) { gpu.clock_mhz = kFails; }, [](auto& card) { card.gpu_clock_mhz = 0; }},
      {"GPUVRAMClockSpeed", [](auto& gpu) { gpu.memory_clock_mhz = kFails; },
       [](auto& card) { card.memory_clock_mhz = 0; }},
      {"GPUTemperature", [](auto& gpu) { gpu.temperature_celsius = kFails; },
       [](auto& card) { card.temperature_celsius = 0; }},
      {"GPUVRAM", [](auto& gpu) { gpu.memory_used_mb = kFails; }, LoseMemory},
      {"UsageUnsupported", [](auto& gpu) { gpu.usage_percent.reset(); },
       [](auto& card) { card.gpu_utilization_percent = 0; }},
      {"ClockUnsupported", [](auto& gpu) { gpu.clock_mhz.reset(); }, [](auto& card) { card.gpu_clock_mhz = 0; }},
      {"MemoryClockUnsupported", [](auto& gpu) { gpu.memory_clock_mhz.reset(); },
       [](auto& card) { card.memory_clock_mhz = 0; }},
      {"TemperatureUnsupported", [](auto& gpu) { gpu.temperature_celsius.reset(); },
       [](auto& card) { card.temperature_celsius = 0; }},
      {"MemoryUnsupported", [](auto& gpu) { gpu.memory_used_mb.reset(); }, LoseMemory},
  };
  return cases;
}

class AmdCallTest : public testing::TestWithParam<AdlxCase> {};

TEST_P(AmdCallTest, ThatFailsCostsItsOwnFieldsOnly) {
  Machine machine = OneCard();
  GetParam().break_it(machine.adlx->gpus[0]);
  const Answer answer = Ask<AmdCardInfo>(machine);
  EXPECT_EQ(answer.error, Error());
  ASSERT_THAT(answer.cards, SizeIs(1));
  GraphicCardInfo expected = FullAnswer();
  GetParam().take_away(expected);
  EXPECT_EQ(Describe(answer.cards[0]), Describe(expected));
  ExpectNoReferenceLeft();
}
INSTANTIATE_TEST_SUITE_P(Each, AmdCallTest, testing::ValuesIn(AdlxCases()),
                         [](const auto& tested) { return tested.param.name; });

TEST(AmdCallsTest, ThatAllSucceedReleaseEveryInterfaceOnce) {
  const Answer answer = Ask<AmdCardInfo>(OneCard());
  EXPECT_EQ(Describe(answer.cards.at(0)), Describe(FullAnswer()));
  constexpr std::uint64_t kServicesListAndThreeForTheCard = 5;
  EXPECT_EQ(CurrentVendorRecord().interfaces_handed_out, kServicesListAndThreeForTheCard);
  ExpectNoReferenceLeft();
}

TEST(AmdCallsTest, RunInTheirOrder) {
  Ask<AmdCardInfo>(OneCard());
  EXPECT_THAT(
      CallsInOrder(),
      testing::ElementsAre("ADLXQueryVersion", "ADLXInitialize", "IADLXSystem::GetPerformanceMonitoringServices",
                           "IADLXSystem::GetGPUs", "IADLXGPUList::Begin", "IADLXGPUList::End",
                           "IADLXGPUList::At_GPUList", "IADLXPerformanceMonitoringServices::GetSupportedGPUMetrics",
                           "IADLXPerformanceMonitoringServices::GetCurrentGPUMetrics", "IADLXGPU::DeviceId",
                           "IADLXGPUMetricsSupport::IsSupportedGPUUsage", "IADLXGPUMetrics::GPUUsage",
                           "IADLXGPUMetricsSupport::IsSupportedGPUClockSpeed", "IADLXGPUMetrics::GPUClockSpeed",
                           "IADLXGPUMetricsSupport::IsSupportedGPUVRAMClockSpeed", "IADLXGPUMetrics::GPUVRAMClockSpeed",
                           "IADLXGPUMetricsSupport::IsSupportedGPUTemperature", "IADLXGPUMetrics::GPUTemperature",
                           "IADLXGPUMetricsSupport::IsSupportedGPUVRAM", "IADLXGPUMetrics::GPUVRAM",
                           "IADLXGPU::TotalVRAM", "IADLXGPU::VendorId", "IADLXGPUMetrics::Release",
                           "IADLXGPUMetricsSupport::Release", "IADLXGPU::Release", "IADLXGPUList::Release",
                           "IADLXPerformanceMonitoringServices::Release", "ADLXTerminate"));
}

TEST(AmdCallsTest, ACardThatTheListDoesNotGiveIsPassedOver) {
  Machine machine = WithAmd({FullAmdCard("a"), FullAmdCard("b"), FullAmdCard("c")});
  machine.adlx->gpus[1].open = 3;
  const Answer answer = Ask<AmdCardInfo>(machine);
  EXPECT_EQ(answer.error, Error());
  ASSERT_THAT(answer.cards, SizeIs(2));
  EXPECT_EQ(answer.cards[0].serial_number, "a");
  EXPECT_EQ(answer.cards[1].serial_number, "c");
  ExpectNoReferenceLeft();
}

void ExpectFailure(const Machine& machine, std::int64_t code, const std::string& description) {
  const Answer answer = Ask<AmdCardInfo>(machine);
  EXPECT_EQ(answer.error, Error(5, code, description, typeid(ADLX_RESULT).name(), ""));
  EXPECT_THAT(answer.cards, IsEmpty());
  ExpectNoReferenceLeft();
}

TEST(AmdCallsTest, AStartThatFailsIsTold) {
  Machine machine = OneCard();
  machine.adlx->initialize = 5;
  ExpectFailure(machine, 5, "Error while initializing ADLX lib");
  EXPECT_EQ(Calls("ADLXTerminate"), 1U) << "the library is stopped whenever it was loaded";
}

TEST(AmdCallsTest, MonitoringServicesThatFailAreTold) {
  Machine machine = OneCard();
  machine.adlx->performance_services = 12;
  ExpectFailure(machine, 12, "Error while getting ADLX performance monitoring services");
  EXPECT_EQ(Calls("IADLXSystem::GetGPUs"), 0U);
}

TEST(AmdCallsTest, AListOfCardsThatFailsIsTold) {
  Machine machine = OneCard();
  machine.adlx->gpu_list = 9;
  ExpectFailure(machine, 9, "Error while getting availables amd gpus");
  EXPECT_EQ(CurrentVendorRecord().interfaces_handed_out, 1U) << "the services, which are released";
}

TEST(AmdCallsTest, ResultsBelowThreeAreSuccesses) {
  for (const std::uint32_t result : {0U, 1U, 2U}) {
    Machine machine = OneCard();
    machine.adlx->initialize = result;
    machine.adlx->performance_services = result;
    machine.adlx->gpu_list = result;
    EXPECT_THAT(Ask<AmdCardInfo>(machine).cards, SizeIs(1)) << result;
    ExpectNoReferenceLeft();
  }
}

TEST(AmdCallsTest, ResultsFromThreeOnAreFailures) {
  Machine machine = OneCard();
  machine.adlx->performance_services = 3;
  EXPECT_EQ(Ask<AmdCardInfo>(machine).error.code, 3);
  machine.adlx->performance_services = 0;
  machine.adlx->gpu_list = 3;
  EXPECT_EQ(Ask<AmdCardInfo>(machine).error.code, 3);
  machine.adlx->gpu_list = 0;
  machine.adlx->initialize = 3;
  EXPECT_EQ(Ask<AmdCardInfo>(machine).error.code, 3);
}

// All six are asked for, although two are never called.
class AmdFunctionTest : public testing::TestWithParam<const char*> {};

TEST_P(AmdFunctionTest, MissingIsAFailedStart) {
  Machine machine = OneCard();
  machine.adlx->missing_functions = {GetParam()};
  ExpectFailure(machine, 3, "Error while initializing ADLX lib");
  EXPECT_EQ(Calls("ADLXInitialize"), 0U);
  const bool can_be_stopped = GetParam() != std::string("ADLXTerminate");
  EXPECT_EQ(Calls("ADLXTerminate"), can_be_stopped ? 1U : 0U);
}
INSTANTIATE_TEST_SUITE_P(Each, AmdFunctionTest,
                         testing::Values("ADLXQueryFullVersion", "ADLXQueryVersion", "ADLXInitializeWithCallerAdl",
                                         "ADLXInitializeWithIncompatibleDriver", "ADLXInitialize", "ADLXTerminate"),
                         [](const auto& tested) { return std::string(tested.param); });

TEST(AmdAbsurdListTest, AListOfBillionsOfCardsIsNotWalkedToItsEnd) {
  simulation::UseMachine(OneCard());
  simulation::WatchCalls([](const simulation::Call& call) {
    return call.name == "IADLXGPUList::End" ? simulation::Disturbance::kAbsurd : simulation::Disturbance::kNone;
  });
  std::vector<GraphicCardInfo> cards;
  EXPECT_FALSE(AmdCardInfo().QueryValues(&cards).Failed());
  simulation::WatchCalls({});
  EXPECT_THAT(cards, SizeIs(1));
  EXPECT_EQ(Calls("IADLXGPUList::At_GPUList"), static_cast<std::uint64_t>(kMostCardsOfVendor));
  ExpectNoReferenceLeft();
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
