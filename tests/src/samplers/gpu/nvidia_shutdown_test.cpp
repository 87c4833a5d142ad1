// When NVIDIA's library is stopped: with every back-end that ends, once any of them has opened a card.
#include "gpu_fixture.h"
#include "samplers/gpu/nvidia_card_info.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using tests::FullNvidiaCard;
using tests::Machine;
using tests::WithNvidia;

Machine WithoutLibrary() {
  return {};
}
Machine NotStarting() {
  Machine machine = WithNvidia({FullNvidiaCard()});
  machine.nvml->init = 9;
  return machine;
}
Machine NotOpening() {
  Machine machine = WithNvidia({FullNvidiaCard()});
  machine.nvml->devices[0].open = 4;
  return machine;
}

// How often a back-end that is asked once stops the library at its end.
std::uint64_t StopsAfter(Machine machine) {
  Ask<NvidiaCardInfo>(std::move(machine));
  return Calls("nvmlShutdown");
}

TEST(NvidiaShutdownTest, DoesNotHappenBeforeAnyCardWasOpened) {
  EXPECT_EQ(StopsAfter(WithoutLibrary()), 0U);
  EXPECT_EQ(StopsAfter(NotStarting()), 0U);
  EXPECT_EQ(StopsAfter(WithNvidia({})), 0U);
  EXPECT_EQ(StopsAfter(NotOpening()), 0U);
}

TEST(NvidiaShutdownTest, HappensOnceForEveryPassFromTheFirstOpenedCardOn) {
  EXPECT_EQ(StopsAfter(WithNvidia({})), 0U);
  EXPECT_EQ(StopsAfter(WithNvidia({FullNvidiaCard()})), 1U);
  EXPECT_EQ(StopsAfter(NotStarting()), 1U) << "also after a pass in which it did not start";
  EXPECT_EQ(StopsAfter(WithNvidia({})), 1U);
  EXPECT_EQ(StopsAfter(NotOpening()), 1U);
  EXPECT_EQ(StopsAfter(WithNvidia({FullNvidiaCard(), FullNvidiaCard()})), 1U) << "once, however many cards";
}

TEST(NvidiaShutdownTest, HappensWithABackEndThatWasNeverAsked) {
  StopsAfter(WithNvidia({FullNvidiaCard()}));
  { const NvidiaCardInfo unasked; }
  EXPECT_EQ(Calls("nvmlShutdown"), 2U);
  EXPECT_EQ(Calls("nvmlInit_v2"), 1U);
}

TEST(NvidiaShutdownTest, DoesNotHappenWithABackEndThatWasNeverAskedBeforeAnyCard) {
  simulation::UseMachine(WithNvidia({FullNvidiaCard()}));
  { const NvidiaCardInfo unasked; }
  EXPECT_TRUE(CurrentVendorRecord().calls.empty());
}

TEST(NvidiaShutdownTest, HappensOnceForABackEndThatIsAskedTwice) {
  simulation::UseMachine(WithNvidia({FullNvidiaCard()}));
  {
    NvidiaCardInfo nvidia;
    std::vector<GraphicCardInfo> cards;
    nvidia.QueryValues(&cards);
    nvidia.QueryValues(&cards);
    EXPECT_EQ(Calls("nvmlInit_v2"), 2U);
    EXPECT_EQ(Calls("nvmlShutdown"), 0U);
  }
  EXPECT_EQ(Calls("nvmlShutdown"), 1U);
}

TEST(NvidiaShutdownTest, HappensAfterACardWasOpenedThoughAnotherWasNot) {
  Machine machine = WithNvidia({FullNvidiaCard(), FullNvidiaCard()});
  machine.nvml->devices[1].open = 15;
  EXPECT_EQ(StopsAfter(machine), 1U);
}

TEST(NvidiaShutdownTest, LetsTheLibraryStartAnew) {
  for (int i = 0; i < 3; ++i) {
    const Answer answer = Ask<NvidiaCardInfo>(WithNvidia({FullNvidiaCard()}));
    EXPECT_EQ(answer.error, Error());
    EXPECT_EQ(answer.cards.size(), 1U);
  }
}

TEST(NvidiaLibraryTest, ThatAppearsWhileTheHostRunsIsFound) {
  EXPECT_EQ(Ask<NvidiaCardInfo>(WithoutLibrary()).error.code, 12);
  EXPECT_EQ(Ask<NvidiaCardInfo>(WithNvidia({FullNvidiaCard()})).cards.size(), 1U);
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
