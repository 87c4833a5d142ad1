// The figures of AMD's cards.
#include <cmath>
#include <limits>

#include "gpu_fixture.h"
#include "samplers/gpu/adlx_pointer.h"
#include "samplers/gpu/amd_card_info.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::IsEmpty;
using testing::SizeIs;
using tests::AdlxGpu;
using tests::FullAmdCard;
using tests::Machine;
using tests::WithAmd;

GraphicCardInfo AskOne(const AdlxGpu& gpu) {
  const Answer answer = Ask<AmdCardInfo>(WithAmd({gpu}));
  EXPECT_EQ(answer.error, Error());
  EXPECT_THAT(answer.cards, SizeIs(1));
  return answer.cards.at(0);
}

TEST(AmdCardsTest, FillsWhatTheLibraryTells) {
  Machine machine = WithAmd({FullAmdCard()});
  tests::AddAdapter(machine, "VEN_1002&DEV_744C&SUBSYS_1&REV_C8", "PCI bus 3, device 0, function 0;(3,0,0)");
  const Answer answer = Ask<AmdCardInfo>(machine);
  EXPECT_EQ(answer.error, Error());
  GraphicCardInfo expected;
  expected.serial_number = "744C";
  expected.bus_number = 3;
  expected.temperature_celsius = 63;
  expected.gpu_clock_mhz = 2304;
  expected.gpu_utilization_percent = 41.5F;
  expected.memory_clock_mhz = 2487;
  expected.memory_used_mb = 2048;
  expected.memory_controller_utilization_percent = 25;
  ASSERT_THAT(answer.cards, SizeIs(1));
  EXPECT_EQ(Describe(answer.cards[0]), Describe(expected));
}

TEST(AmdCardsTest, TheLibraryIsLookedForInTheFoldersOfApplicationUserAndSystem) {
  Ask<AmdCardInfo>(WithAmd({}));
  constexpr std::uint32_t kApplicationUserSystemAndDefaultFolders = 0x200 | 0x400 | 0x800 | 0x1000;
  EXPECT_THAT(CurrentVendorRecord().search_flags,
              testing::ElementsAre(testing::Pair("amdadlx64.dll", kApplicationUserSystemAndDefaultFolders)));
}

TEST(AmdCardsTest, AMachineWithoutTheLibraryFails) {
  const Answer answer = Ask<AmdCardInfo>({});
  EXPECT_EQ(answer.error, Error(5, 3, "Error while initializing ADLX lib", typeid(ADLX_RESULT).name(), ""));
  EXPECT_THAT(answer.cards, IsEmpty());
}

TEST(AmdCardsTest, TellsOfItsLibraryWhetherItIsThereAndItsVersion) {
  std::vector<GraphicCardInfo> cards;
  simulation::UseMachine({});
  AmdCardInfo without;
  without.QueryValues(&cards);
  EXPECT_FALSE(without.Library().IsLoaded());
  EXPECT_EQ(without.Library().Version(), "");
  simulation::UseMachine(WithAmd({}));
  AmdCardInfo with;
  with.QueryValues(&cards);
  EXPECT_TRUE(with.Library().IsLoaded());
  EXPECT_EQ(with.Library().Version(), "1.2.0.72");
}

TEST(AmdCardsTest, ASuccessThatHandsOutNothingIsAFailure) {
  AdlxPointer<adlx::IADLXGPU> card;
  EXPECT_EQ(Obtain(card, [](adlx::IADLXGPU** /*out*/) { return adlx::ADLX_OK; }), adlx::ADLX_FAIL);
  EXPECT_EQ(card, nullptr);
}

TEST(AmdCardsTest, ATextThatIsGivenAsNoneIsEmpty) {
  AdlxGpu gpu = FullAmdCard();
  gpu.device_id = tests::Failure{0};
  EXPECT_EQ(AskOne(gpu).serial_number, "");
}

TEST(AmdCardsTest, NoCardIsASuccess) {
  const Answer answer = Ask<AmdCardInfo>(WithAmd({}));
  EXPECT_EQ(answer.error, Error());
  EXPECT_THAT(answer.cards, IsEmpty());
  ExpectNoReferenceLeft();
}

TEST(AmdCardsTest, ThirtyThreeCardsAreAllToldAndReleased) {
  EXPECT_THAT(Ask<AmdCardInfo>(WithAmd(std::vector<AdlxGpu>(33, FullAmdCard()))).cards, SizeIs(33));
  ExpectNoReferenceLeft();
}

TEST(AmdCardsTest, AreAppendedToWhatIsThere) {
  simulation::UseMachine(WithAmd({FullAmdCard("a"), FullAmdCard("b")}));
  std::vector<GraphicCardInfo> cards(1);
  AmdCardInfo().QueryValues(&cards);
  ASSERT_THAT(cards, SizeIs(3));
  EXPECT_EQ(cards[1].serial_number, "a");
  EXPECT_EQ(cards[2].serial_number, "b");
}

TEST(AmdCardsTest, TheTemperatureIsCutToWholeDegrees) {
  const auto degrees = [](double celsius) {
    AdlxGpu gpu = FullAmdCard();
    gpu.temperature_celsius = celsius;
    return AskOne(gpu).temperature_celsius;
  };
  EXPECT_EQ(degrees(63.9), 63U);
  EXPECT_EQ(degrees(0.99), 0U);
  EXPECT_EQ(degrees(-1.5), 4294967295U);
  EXPECT_EQ(degrees(std::numeric_limits<double>::quiet_NaN()), 0U);
}

TEST(AmdCardsTest, AClockBelowZeroIsPassedOn) {
  AdlxGpu gpu = FullAmdCard();
  gpu.clock_mhz = -1;
  EXPECT_EQ(AskOne(gpu).gpu_clock_mhz, -1.0F);
}

TEST(AmdCardsTest, TheMemoryShareIsThatOfMemoryInUse) {
  EXPECT_EQ(AskOne(FullAmdCard()).memory_controller_utilization_percent, 25.0F);
}

TEST(AmdCardsTest, TheMemoryShareIsComputedInSinglePrecision) {
  AdlxGpu gpu = FullAmdCard();
  gpu.memory_used_mb = 1234;
  gpu.total_memory_mb = 16368U;
  // In double precision it would be 7.53910065.
  EXPECT_EQ(AskOne(gpu).memory_controller_utilization_percent, 7.53910112F);
}

TEST(AmdCardsTest, WithoutATotalTheMemoryShareIsNoNumberOrInfinite) {
  AdlxGpu gpu = FullAmdCard();
  gpu.total_memory_mb = 0U;
  EXPECT_EQ(AskOne(gpu).memory_controller_utilization_percent, std::numeric_limits<float>::infinity());
  gpu.memory_used_mb = 0;
  EXPECT_TRUE(std::isnan(AskOne(gpu).memory_controller_utilization_percent));
  gpu.memory_used_mb.reset();
  EXPECT_TRUE(std::isnan(AskOne(gpu).memory_controller_utilization_percent));
}

TEST(AmdCardsTest, AnAskedBackEndCanBeAskedAgain) {
  simulation::UseMachine(WithAmd({FullAmdCard()}));
  {
    AmdCardInfo amd;
    std::vector<GraphicCardInfo> cards;
    EXPECT_EQ(amd.QueryValues(&cards), Error());
    EXPECT_EQ(amd.QueryValues(&cards), Error());
    EXPECT_THAT(cards, SizeIs(2));
    EXPECT_EQ(Calls("ADLXInitialize"), 2U);
    EXPECT_EQ(Calls("ADLXTerminate"), 0U);
  }
  EXPECT_EQ(Calls("ADLXTerminate"), 1U);
  ExpectNoReferenceLeft();
}

TEST(AmdCardsTest, ABackEndThatIsNeverAskedLoadsNothing) {
  simulation::UseMachine(WithAmd({FullAmdCard()}));
  { const AmdCardInfo unasked; }
  EXPECT_THAT(CurrentVendorRecord().calls, IsEmpty());
}

TEST(AmdHelperTest, TellsTheLibrarysVersion) {
  simulation::UseMachine(WithAmd({}));
  ADLXHelper helper;
  EXPECT_EQ(helper.Version(), "");
  const Error started = helper.Start();
  EXPECT_FALSE(started.Failed());
  EXPECT_EQ(started.description, "No error");
  EXPECT_EQ(helper.Version(), "1.2.0.72");
  EXPECT_NE(helper.System(), nullptr);
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
