// The figures of NVIDIA's cards.
#include <cmath>
#include <iterator>

#include "gpu_fixture.h"
#include "samplers/gpu/nvidia_card_info.h"
#include "samplers/gpu/nvml_api.h"
#include "samplers/gpu/nvml_texts.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::IsEmpty;
using testing::SizeIs;
using tests::Failure;
using tests::FullNvidiaCard;
using tests::Machine;
using tests::NvmlDevice;
using tests::WithNvidia;

Error NvmlError(std::int64_t code, const std::string& text) {
  return {5, code, text, typeid(nvmlReturn_t).name(), ""};
}

GraphicCardInfo AskOne(const NvmlDevice& device) {
  const Answer answer = Ask<NvidiaCardInfo>(WithNvidia({device}));
  EXPECT_EQ(answer.error, Error());
  EXPECT_THAT(answer.cards, SizeIs(1));
  return answer.cards.at(0);
}

std::uint32_t BusOf(const std::string& bus_id) {
  NvmlDevice device = FullNvidiaCard();
  device.bus_id = bus_id;
  return AskOne(device).bus_number;
}

std::string StatusOf(std::uint64_t reasons) {
  NvmlDevice device = FullNvidiaCard();
  device.throttle_reasons = reasons;
  return AskOne(device).status_text;
}

TEST(NvidiaCardsTest, AMachineWithoutTheLibraryFailsWithItsCodeAndText) {
  const Answer answer = Ask<NvidiaCardInfo>({});
  EXPECT_EQ(answer.error, NvmlError(12, "NVML Shared Library couldn't be found or loaded"));
  EXPECT_THAT(answer.cards, IsEmpty());
}

TEST(NvidiaCardsTest, ADriverThatIsNotLoadedIsOneErrorAndNoCard) {
  Machine machine = WithNvidia({FullNvidiaCard()});
  machine.nvml->init = 9;
  const Answer answer = Ask<NvidiaCardInfo>(machine);
  EXPECT_EQ(answer.error, NvmlError(9, "NVIDIA driver is not loaded"));
  EXPECT_THAT(answer.cards, IsEmpty());
}

TEST(NvidiaCardsTest, AnUnlistedCodeHasNoText) {
  Machine machine = WithNvidia({FullNvidiaCard()});
  machine.nvml->init = 998;
  EXPECT_EQ(Ask<NvidiaCardInfo>(machine).error, NvmlError(998, ""));
}

TEST(NvidiaCardsTest, NoCardIsASuccess) {
  const Answer answer = Ask<NvidiaCardInfo>(WithNvidia({}));
  EXPECT_EQ(answer.error, Error());
  EXPECT_THAT(answer.cards, IsEmpty());
}

TEST(NvidiaCardsTest, ACountThatFailsIsASuccessWithoutCards) {
  Machine machine = WithNvidia({FullNvidiaCard()});
  machine.nvml->count = Failure{999};
  const Answer answer = Ask<NvidiaCardInfo>(machine);
  EXPECT_EQ(answer.error, Error());
  EXPECT_THAT(answer.cards, IsEmpty());
}

TEST(NvidiaCardsTest, ACountBelowZeroIsASuccessWithoutCards) {
  for (const std::uint32_t count : {4294967295U, 2147483648U}) {
    Machine machine = WithNvidia({FullNvidiaCard()});
    machine.nvml->count = count;
    const Answer answer = Ask<NvidiaCardInfo>(machine);
    EXPECT_EQ(answer.error, Error());
    EXPECT_THAT(answer.cards, IsEmpty());
    EXPECT_EQ(Calls("nvmlDeviceGetHandleByIndex_v2"), 0U);
  }
}

TEST(NvidiaCardsTest, ThirtyThreeCardsAreAllTold) {
  const Answer answer = Ask<NvidiaCardInfo>(WithNvidia(std::vector<NvmlDevice>(33, FullNvidiaCard())));
  EXPECT_EQ(answer.error, Error());
  EXPECT_THAT(answer.cards, SizeIs(33));
}

TEST(NvidiaCardsTest, AreAppendedToWhatIsThere) {
  simulation::UseMachine(WithNvidia({FullNvidiaCard()}));
  std::vector<GraphicCardInfo> cards(2);
  cards[0].serial_number = "there";
  NvidiaCardInfo().QueryValues(&cards);
  ASSERT_THAT(cards, SizeIs(3));
  EXPECT_EQ(cards[0].serial_number, "there");
  EXPECT_EQ(cards[2].serial_number, "1650000000001");
}

TEST(NvidiaCardsTest, ASecondCardThatDoesNotOpenFailsTheCallAndKeepsTheFirst) {
  Machine machine = WithNvidia({FullNvidiaCard("first"), FullNvidiaCard("second")});
  machine.nvml->devices[1].open = 15;
  const Answer answer = Ask<NvidiaCardInfo>(machine);
  EXPECT_EQ(answer.error, NvmlError(15, "The GPU has fallen off the bus or has otherwise become inaccessible"));
  ASSERT_THAT(answer.cards, SizeIs(1));
  EXPECT_EQ(answer.cards[0].serial_number, "first");
}

TEST(NvidiaCardsTest, CardsBehindOneThatDoesNotOpenAreReadAndTheFailureStays) {
  Machine machine = WithNvidia({FullNvidiaCard("first"), FullNvidiaCard("second"), FullNvidiaCard("third")});
  machine.nvml->devices[0].open = 4;
  const Answer answer = Ask<NvidiaCardInfo>(machine);
  EXPECT_EQ(answer.error, NvmlError(4, "The current user does not have permission for operation"));
  ASSERT_THAT(answer.cards, SizeIs(2));
  EXPECT_EQ(answer.cards[0].serial_number, "second");
  EXPECT_EQ(answer.cards[1].serial_number, "third");
}

TEST(NvidiaCardsTest, TheLastCardThatDoesNotOpenIsTheOneThatIsTold) {
  Machine machine = WithNvidia({FullNvidiaCard(), FullNvidiaCard()});
  machine.nvml->devices[0].open = 4;
  machine.nvml->devices[1].open = 15;
  EXPECT_EQ(Ask<NvidiaCardInfo>(machine).error.code, 15);
}

TEST(NvidiaCardsTest, AnIndexThatTheLibraryCountsAndDoesNotKnowFails) {
  Machine machine = WithNvidia({FullNvidiaCard()});
  machine.nvml->count = 2U;
  const Answer answer = Ask<NvidiaCardInfo>(machine);
  EXPECT_EQ(answer.error.code, 2);
  EXPECT_THAT(answer.cards, SizeIs(1));
}

TEST(NvidiaCardsTest, TheBusIsReadInBaseTenFromAHexadecimalText) {
  EXPECT_EQ(BusOf("00000000:01:00.0"), 1U);
  EXPECT_EQ(BusOf("00000000:12:00.0"), 12U);
  EXPECT_EQ(BusOf("00000000:1A:00.0"), 1U);
  EXPECT_EQ(BusOf("00000000:0A:00.0"), 0U);
  EXPECT_EQ(BusOf("00000000:A1:00.0"), 0U);
  EXPECT_EQ(BusOf("00000000:00:00.0"), 0U);
}

TEST(NvidiaCardsTest, ABusTextOfAnotherFormGivesZeroOrItsDigits) {
  EXPECT_EQ(BusOf(""), 0U);
  EXPECT_EQ(BusOf("12"), 0U);
  EXPECT_EQ(BusOf("00000000:12"), 0U);
  EXPECT_EQ(BusOf(":12:"), 12U);
  EXPECT_EQ(BusOf("0::12:00.0"), 0U);
  EXPECT_EQ(BusOf("0:-5:00.0"), 0U);
  EXPECT_EQ(BusOf("0: 5:00.0"), 0U);
  EXPECT_EQ(BusOf("0:2147483647:00.0"), 2147483647U);
  EXPECT_EQ(BusOf("0:2147483648:00.0"), 0U);
}

// What hosts compare the texts with.
struct ListedText {
  std::uint64_t value;
  const char* text;
};

constexpr ListedText kReasonTexts[] = {
    {0, "Clocks are as high as possible"},
    {0x1, "Clocks are dropping because the GPU is in Idle state"},
    {0x2, "Clocks are limited by current setting of applications clocks"},
    {0x4, "Clocks have been optimized to not exceed set power limits"},
    {0x8, "Hardware Slowdown is engaged"},
    {0x10, "This GPU has been added to a Sync boost group"},
    {0x20, "Software Thermal Slowdown"},
    {0x40, "Hardware Thermal Slowdown"},
    {0x80, "Hardware Power Brake Slowdown"},
    {0x100, "GPU clocks are limited by current setting of Display clocks"},
};

constexpr ListedText kStatusTexts[] = {
    {0, "The operation was successful"},
    {1, "NVML was not first initialized with nvmlInit()"},
    {2, "A supplied argument is invalid"},
    {3, "The requested operation is not available on target device"},
    {4, "The current user does not have permission for operation"},
    {5, "Deprecated: Multiple initializations are now allowed through ref counting"},
    {6, "A query to find an object was unsuccessful"},
    {7, "An input argument is not large enough"},
    {8, "A device's external power cables are not properly attached"},
    {9, "NVIDIA driver is not loaded"},
    {10, "User provided timeout passed"},
    {11, "NVIDIA Kernel detected an interrupt issue with a GPU"},
    {12, "NVML Shared Library couldn't be found or loaded"},
    {13, "Local version of NVML doesn't implement this function"},
    {14, "infoROM is corrupted"},
    {15, "The GPU has fallen off the bus or has otherwise become inaccessible"},
    {16, "The GPU requires a reset before it can be used again"},
    {17, "The GPU control device has been blocked by the operating system/cgroups"},
    {18, "RM detects a driver/library version mismatch"},
    {19, "An operation cannot be performed because the GPU is currently in use"},
    {20, "Insufficient memory"},
    {21, "No data"},
    {22, "The requested vgpu operation is not available on target device, becasue ECC is enabled"},
    {23, "Ran out of critical resources, other than memory"},
    {24, "Ran out of critical resources, other than memory"},
    {25, "The provided version is invalid/unsupported"},
    {26, "The requested functionality has been deprecated"},
    {27, "The system is not ready for the request"},
    {28, "No GPUs were found"},
    {29, "Resource not in correct state to perform requested operation"},
    {999, "An internal driver error occurred"},
};

TEST(NvidiaCardsTest, EachSingleReasonHasItsText) {
  static_assert(std::size(kReasonTexts) == 10);
  for (const ListedText& listed : kReasonTexts) EXPECT_EQ(StatusOf(listed.value), listed.text) << listed.value;
}

TEST(NvidiaCardsTest, ReasonsTogetherAndUnknownOnesHaveNoText) {
  EXPECT_EQ(StatusOf(0x24), "");
  EXPECT_EQ(StatusOf(0x200), "");
  EXPECT_EQ(StatusOf(0x1'0000'0004), "");
  EXPECT_EQ(StatusOf(0xFFFFFFFFFFFFFFFF), "");
}

TEST(NvidiaCardsTest, MemoryWithoutASizeHasNoShare) {
  NvmlDevice device = FullNvidiaCard();
  device.memory_total_bytes = std::uint64_t{0};
  device.memory_used_bytes = std::uint64_t{0};
  const GraphicCardInfo card = AskOne(device);
  EXPECT_TRUE(std::isnan(card.memory_controller_utilization_percent));
  EXPECT_EQ(card.memory_used_mb, 0.0F);
}

TEST(NvidiaCardsTest, TheMemoryShareIsComputedInSinglePrecision) {
  NvmlDevice device = FullNvidiaCard();
  device.memory_total_bytes = std::uint64_t{51'527'024'640};
  device.memory_used_bytes = std::uint64_t{30'064'771'073};
  const GraphicCardInfo card = AskOne(device);
  const float share = 30'064'771'073.0F / 51'527'024'640.0F * 100.0F;
  EXPECT_EQ(card.memory_controller_utilization_percent, share);
  EXPECT_EQ(card.memory_used_mb, static_cast<float>(30'064'771'073.0 / 1e6));
}

TEST(NvidiaCardsTest, ASerialNumberThatFillsItsBufferIsTaken) {
  EXPECT_EQ(AskOne(FullNvidiaCard(std::string(29, '7'))).serial_number, std::string(29, '7'));
}

TEST(NvidiaCardsTest, ASerialNumberThatDoesNotFitIsNone) {
  EXPECT_EQ(AskOne(FullNvidiaCard(std::string(30, '7'))).serial_number, "");
}

TEST(NvmlTextsTest, EveryListedCodeHasItsText) {
  static_assert(std::size(kStatusTexts) == 31);
  for (const ListedText& listed : kStatusTexts) {
    EXPECT_EQ(DescribeNvmlReturn(static_cast<nvmlReturn_t>(listed.value)), listed.text) << listed.value;
  }
}

TEST(NvidiaCardsTest, AStartThatFailsIsToldWithTheTextOfItsCode) {
  for (const ListedText& listed : kStatusTexts) {
    if (listed.value == nvml::NVML_SUCCESS) continue;
    Machine machine = WithNvidia({FullNvidiaCard()});
    machine.nvml->init = static_cast<std::uint32_t>(listed.value);
    EXPECT_EQ(Ask<NvidiaCardInfo>(machine).error, NvmlError(static_cast<std::int64_t>(listed.value), listed.text));
  }
}

TEST(NvmlTextsTest, AnyOtherCodeHasNone) {
  for (const int code : {-1, 30, 31, 998, 1000}) EXPECT_EQ(DescribeNvmlReturn(nvmlReturn_t(code)), "") << code;
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
