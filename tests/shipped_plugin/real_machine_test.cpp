#include <regex>
#include <string>

#include "shipped_plugin_fixture.h"

namespace zt::tests {
namespace {

using testing::SizeIs;

// By the standard library: GoogleTest's own expressions know no sets of characters on Windows.
const std::string kWallClock = R"(20\d\d-[01]\d-[0-3]\dT[0-2]\d:[0-5]\d:[0-5]\d)";

bool IsOfForm(const std::string& text, const std::string& form) {
  return std::regex_match(text, std::regex(form));
}

class RealMachineTest : public ShippedPluginTest {};

TEST_F(RealMachineTest, ReadsTheMemoryOfThisMachine) {
  auto plugin = Load();
  plugin.Execute(50);
  ASSERT_THAT(sink_->sent, SizeIs(1));
  const auto& memory = sink_->sent[0].hw_info().system_memory_info();
  constexpr std::uint32_t kSixteenMegabytes = 16 * 1024;
  EXPECT_GT(memory.used_physical_memory_kb(), kSixteenMegabytes);
  EXPECT_GT(memory.total_virtual_memory_kb(), kSixteenMegabytes);
  EXPECT_GT(memory.utilization_physical_percent(), 0.0F);
  EXPECT_LE(memory.utilization_physical_percent(), 100.0F);
  EXPECT_TRUE(sink_->stored.at(0).has_memory_clock_mhz());
}

TEST_F(RealMachineTest, StampsWithTheClockOfThisMachine) {
  auto plugin = Load();
  plugin.Execute(50);
  ASSERT_THAT(sink_->sent, SizeIs(1));
  EXPECT_TRUE(IsOfForm(sink_->sent[0].local_time(), kWallClock + "\\.000Z")) << sink_->sent[0].local_time();
  const std::string stored = sink_->stored.at(0).local_time();
  EXPECT_TRUE(IsOfForm(stored, kWallClock + R"([+\-](0\d|1[0-4]):00)")) << stored;
  EXPECT_LE(sink_->sent[0].collection_id().size(), 30U);
}

}  // namespace
}  // namespace zt::tests
