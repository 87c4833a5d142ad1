// What of a card reaches its entry of the record.
#include "samplers/gpu/gpu_entry.h"

#include <cmath>
#include <limits>

#include "gpu_fixture.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using tests::FullAmdCard;
using tests::FullNvidiaCard;
using tests::Machine;
using tests::WithAmd;
using tests::WithNvidia;

class GpuEntryTest : public GpuSamplerTest {};

TEST_F(GpuEntryTest, FillsEveryFieldOfAnNvidiaCard) {
  const auto& entry = SampleOne(WithNvidia({FullNvidiaCard()}));
  EXPECT_EQ(entry.gpus_utilization_percent(), 98.0F);
  EXPECT_EQ(entry.gpus_clock_mhz(), 2505.0F);
  EXPECT_EQ(entry.memory_bandwidth_gb(), 384.0F) << "the width of the memory bus";
  EXPECT_EQ(entry.memory_clock_mhz(), 9001.0F);
  EXPECT_EQ(entry.memory_used_mb(), 2000.0F);
  EXPECT_EQ(entry.memory_controller_utilization_percent(), 25.0F);
  EXPECT_EQ(entry.performance_capped_reason(), "Clocks have been optimized to not exceed set power limits");
  EXPECT_EQ(entry.decoder_utilization_percent(), 5.0F);
  EXPECT_EQ(entry.encoder_utilization_percent(), 12.0F);
  EXPECT_EQ(entry.video_engine_utilization_percent(), 0.0F);
  EXPECT_EQ(entry.bus_id(), "12");
  EXPECT_EQ(entry.temperature_celsius(), 71U);
  EXPECT_EQ(entry.graphics_card_serial_number(), "1650000000001");
}

TEST_F(GpuEntryTest, SetsEveryFieldEvenWhereItIsZero) {
  Machine machine = WithAmd({tests::AdlxGpu()});
  machine.adlx->gpus[0].total_memory_mb = 1U;
  const auto& entry = SampleOne(machine);
  EXPECT_TRUE(entry.has_gpus_utilization_percent());
  EXPECT_TRUE(entry.has_gpus_clock_mhz());
  EXPECT_TRUE(entry.has_memory_bandwidth_gb());
  EXPECT_TRUE(entry.has_memory_clock_mhz());
  EXPECT_TRUE(entry.has_memory_used_mb());
  EXPECT_TRUE(entry.has_memory_controller_utilization_percent());
  EXPECT_TRUE(entry.has_performance_capped_reason());
  EXPECT_TRUE(entry.has_decoder_utilization_percent());
  EXPECT_TRUE(entry.has_encoder_utilization_percent());
  EXPECT_TRUE(entry.has_video_engine_utilization_percent());
  EXPECT_TRUE(entry.has_bus_id());
  EXPECT_TRUE(entry.has_temperature_celsius());
  EXPECT_TRUE(entry.has_graphics_card_serial_number());
  EXPECT_EQ(entry.memory_controller_utilization_percent(), 0.0F);
}

TEST_F(GpuEntryTest, AMemoryShareThatIsNoNumberStaysUnset) {
  tests::NvmlDevice card = FullNvidiaCard();
  card.memory_total_bytes = std::uint64_t{0};
  card.memory_used_bytes = std::uint64_t{0};
  const auto& entry = SampleOne(WithNvidia({card}));
  EXPECT_FALSE(entry.has_memory_controller_utilization_percent());
  EXPECT_TRUE(entry.has_memory_used_mb());
}

TEST_F(GpuEntryTest, AMemoryShareOfZeroIsWritten) {
  tests::NvmlDevice card = FullNvidiaCard();
  card.memory_used_bytes = std::uint64_t{0};
  const auto& entry = SampleOne(WithNvidia({card}));
  EXPECT_TRUE(entry.has_memory_controller_utilization_percent());
  EXPECT_EQ(entry.memory_controller_utilization_percent(), 0.0F);
}

TEST_F(GpuEntryTest, AnInfiniteMemoryShareIsWritten) {
  tests::AdlxGpu card = FullAmdCard();
  card.total_memory_mb = 0U;
  const auto& entry = SampleOne(WithAmd({card}));
  EXPECT_EQ(entry.memory_controller_utilization_percent(), std::numeric_limits<float>::infinity());
}

TEST_F(GpuEntryTest, ASerialNumberIsCutToSixtyFourBytes) {
  const std::string kept(64, 's');
  EXPECT_EQ(SampleOne(WithAmd({FullAmdCard(kept + "tail")})).graphics_card_serial_number(), kept);
  EXPECT_EQ(SampleOne(WithAmd({FullAmdCard(kept)})).graphics_card_serial_number(), kept);
}

TEST_F(GpuEntryTest, ACardWithoutAStatusTextIsCappedForAnUnknownReason) {
  EXPECT_EQ(SampleOne(WithAmd({FullAmdCard()})).performance_capped_reason(), "unknown");
}

TEST(GpuEntryTextsTest, TextsAreCutToSixtyFourBytes) {
  GraphicCardInfo card;
  card.status_text = std::string(65, 'r');
  card.serial_number = std::string(65, 's');
  PcLogPerformanceSamplesAsCDM_HwInfo_GraphicsCardInfo entry;
  FillEntry(card, entry);
  EXPECT_EQ(entry.performance_capped_reason(), std::string(64, 'r'));
  EXPECT_EQ(entry.graphics_card_serial_number(), std::string(64, 's'));
}

TEST_F(GpuEntryTest, EveryReasonThatCardsGiveFitsItsField) {
  for (const std::uint64_t reason : {0U, 1U, 2U, 4U, 8U, 0x10U, 0x20U, 0x40U, 0x80U, 0x100U}) {
    tests::NvmlDevice card = FullNvidiaCard();
    card.throttle_reasons = reason;
    const std::string text = SampleOne(WithNvidia({card})).performance_capped_reason();
    EXPECT_NE(text, "unknown") << reason;
    EXPECT_LE(text.size(), 64U) << reason;
  }
}

TEST_F(GpuEntryTest, BusNumbersAreWrittenInDecimal) {
  const auto bus_id = [this](const std::string& nvidia_bus) {
    tests::NvmlDevice card = FullNvidiaCard();
    card.bus_id = nvidia_bus;
    return SampleOne(WithNvidia({card})).bus_id();
  };
  EXPECT_EQ(bus_id("00000000:10:00.0"), "10");
  EXPECT_EQ(bus_id("00000000:01:00.0"), "1");
  EXPECT_EQ(bus_id("00000000:00:00.0"), "0");
  EXPECT_EQ(bus_id("00000000:A1:00.0"), "0");
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
