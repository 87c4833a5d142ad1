#include "shipped_plugin_fixture.h"

namespace zt::tests {
namespace {

using testing::SizeIs;

TEST_F(ShippedPlugin, ReadsTheMemoryOfThisMachine) {
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

TEST_F(ShippedPlugin, StampsWithTheClockOfThisMachine) {
  auto plugin = Load();
  plugin.Execute(50);
  ASSERT_THAT(sink_->sent, SizeIs(1));
  EXPECT_THAT(sink_->sent[0].local_time(), testing::MatchesRegex("20..-..-..T..:..:..\\.000Z"));
  EXPECT_THAT(sink_->stored.at(0).local_time(), testing::MatchesRegex("20..-..-..T..:..:...*00"));
  EXPECT_LE(sink_->sent[0].collection_id().size(), 30U);
}

}  // namespace
}  // namespace zt::tests
