// NVIDIA's cards of this very system, compared with what NVIDIA's own query tool says in the same second. Skipped where
// there is none.
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "query_tool.h"
#include "samplers/gpu/nvidia_card_info.h"
#include "samplers/gpu/nvml_texts.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using types::GraphicCardInfo;
using Row = std::vector<std::string>;

constexpr char kFields[] =
    "serial,pci.bus,temperature.gpu,clocks.current.memory,clocks.current.graphics,memory.total,memory.used,"
    "utilization.gpu,clocks_throttle_reasons.active";
enum Field { kSerial, kBus, kCelsius, kMemoryMhz, kGraphicsMhz, kTotalMib, kUsedMib, kLoad, kReasons, kFieldCount };

// Figures move between two readings of the same second: by so much at most on a card that is left alone.
constexpr double kCelsiusApart = 3;
constexpr double kMhzApart = 400;
constexpr double kPercentApart = 25;
constexpr double kMegabytesApart = 64;
constexpr double kMegabytesPerMib = 1.048576;

// Absent for a figure that the card does not have ("[N/A]", "[Not Supported]").
std::optional<double> Number(const std::string& text) {
  return text.empty() || text.front() == '[' ? std::nullopt : std::optional(std::stod(text));
}

void ExpectNear(const char* name, double ours, const std::string& tools, double apart) {
  const std::optional<double> number = Number(tools);
  std::cout << name << ": " << ours << ", the tool says " << tools << '\n';
  EXPECT_NEAR(ours, number.value_or(0), number ? apart : 0) << name;
}

void CompareCard(const GraphicCardInfo& card, const Row& row) {
  ASSERT_EQ(row.size(), kFieldCount);
  EXPECT_EQ(card.serial_number, Number(row[kSerial]) ? row[kSerial] : "");
  // The tool writes "0x1A"; the back-end reads the digits in base 10.
  EXPECT_EQ(card.bus_number, std::strtoul(row[kBus].substr(2).c_str(), nullptr, 10));
  ExpectNear("temperature", card.temperature_celsius, row[kCelsius], kCelsiusApart);
  ExpectNear("memory clock", card.memory_clock_mhz, row[kMemoryMhz], kMhzApart);
  ExpectNear("graphics clock", card.gpu_clock_mhz, row[kGraphicsMhz], kMhzApart);
  ExpectNear("load", card.gpu_utilization_percent, row[kLoad], kPercentApart);
  const std::string reasons = DescribeThrottleReasons(std::stoull(row[kReasons], nullptr, 16));
  std::cout << "status: \"" << card.status_text << "\", the tool's reasons " << row[kReasons] << '\n';
  EXPECT_EQ(card.status_text, reasons);
}

// The library counts reserved memory as used, and the tool may not: the share of the card tells how much that may be.
void CompareMemory(const GraphicCardInfo& card, const Row& row) {
  const double total_mb = Number(row[kTotalMib]).value_or(0) * kMegabytesPerMib;
  const double used_mb = Number(row[kUsedMib]).value_or(0) * kMegabytesPerMib;
  constexpr double kReservedShare = 0.05;
  std::cout << "memory used: " << card.memory_used_mb << " MB of " << total_mb << ", the tool says " << used_mb << '\n';
  EXPECT_GE(card.memory_used_mb, used_mb - kMegabytesApart);
  EXPECT_LE(card.memory_used_mb, used_mb + kMegabytesApart + total_mb * kReservedShare);
  EXPECT_NEAR(card.memory_controller_utilization_percent, card.memory_used_mb / total_mb * 100, 0.1);
}

class NvidiaLiveTest : public testing::Test {
 protected:
  // Reads the cards and asks the tool; skips the test where there is nothing to compare.
  void SetUp() override {
    const common::Error error = nvidia_.QueryValues(&cards_);
    if (error.code == kNoLibrary || error.code == kNoDriver) {
      GTEST_SKIP() << "no NVIDIA driver here: " << error.description;
    }
    ASSERT_EQ(error, common::Error());
    if (cards_.empty()) GTEST_SKIP() << "the driver knows no NVIDIA card";
    auto rows = tests::QueryCards(kFields);
    if (!rows) GTEST_SKIP() << "the driver's query tool (nvidia-smi) is missing or failed";
    rows_ = std::move(*rows);
    ASSERT_EQ(rows_.size(), cards_.size());
  }

  static constexpr std::int64_t kNoLibrary = 12;
  static constexpr std::int64_t kNoDriver = 9;
  NvidiaCardInfo nvidia_;
  std::vector<GraphicCardInfo> cards_;
  std::vector<Row> rows_;
};

TEST_F(NvidiaLiveTest, EveryFigureIsWhatTheDriversOwnToolSays) {
  for (std::size_t i = 0; i < cards_.size(); ++i) {
    SCOPED_TRACE("card " + std::to_string(i));
    CompareCard(cards_[i], rows_[i]);
    CompareMemory(cards_[i], rows_[i]);
    EXPECT_EQ(cards_[i].video_engine_utilization_percent, 0.0F);
    EXPECT_LE(cards_[i].encoder_utilization_percent, 100.0F);
    EXPECT_LE(cards_[i].decoder_utilization_percent, 100.0F);
  }
}

// No promise but a figure to read: what one pass costs on a real card, the first with the loading of the library.
TEST_F(NvidiaLiveTest, TellsWhatAPassCosts) {
  constexpr int kPasses = 20;
  for (int i = 0; i < kPasses; ++i) {
    std::vector<GraphicCardInfo> cards;
    const auto start = std::chrono::steady_clock::now();
    common::Error error;
    {
      NvidiaCardInfo nvidia;
      error = nvidia.QueryValues(&cards);
    }
    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
    std::cout << "pass " << i << ": " << took.count() << " ms for " << cards.size() << " cards\n";
    EXPECT_EQ(error, common::Error());
    EXPECT_EQ(cards.size(), cards_.size());
  }
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
