#include "shipped_plugin_fixture.h"
#include "simulation/profile.h"
#include "simulation/vendor_record.h"

namespace zt::tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

std::vector<std::string> CardsOf(const PcLogPerformanceSamplesAsCDM& record) {
  std::vector<std::string> serials;
  for (const auto& card : record.hw_info().gpus_info()) serials.push_back(card.graphics_card_serial_number());
  return serials;
}

class SimulatedMachineTest : public ShippedPluginTest {};

TEST_F(SimulatedMachineTest, LoadsTheVendorsLibrariesOfItsMachine) {
  simulation::UseMachine(simulation::ReadShippedProfile("workstation"));
  auto plugin = Load();
  plugin.Execute(50);
  ASSERT_THAT(sink_->sent, SizeIs(1));
  const std::string first = "1650000000001";
  const std::string second = "1650000000002";
  EXPECT_THAT(CardsOf(sink_->sent[0]),
              ElementsAre(first, second, first, second, "744C", first, second, "744C", "5CG0000002"));
  EXPECT_EQ(sink_->sent[0].hw_info().gpus_info(4).bus_id(), "3");
  EXPECT_EQ(simulation::CurrentVendorRecord().calls["nvmlInit_v2"], 1U);
  EXPECT_EQ(simulation::CurrentVendorRecord().calls["ADLXInitialize"], 1U);
}

TEST_F(SimulatedMachineTest, LeavesTheVendorsLibrariesAsItFoundThem) {
  simulation::UseMachine(simulation::ReadShippedProfile("workstation"));
  auto plugin = Load();
  plugin.Execute(50);
  plugin.Execute(50);
  const simulation::VendorRecord& record = simulation::CurrentVendorRecord();
  EXPECT_EQ(simulation::CurrentVendorRecord().calls["nvmlShutdown"], 2U);
  EXPECT_EQ(simulation::CurrentVendorRecord().calls["ADLXTerminate"], 2U);
  EXPECT_EQ(record.live_references, 0);
  EXPECT_THAT(record.faults, IsEmpty());
}

TEST_F(SimulatedMachineTest, FindsTheVendorsLibrariesAgainAfterItWasUnloaded) {
  simulation::UseMachine(simulation::ReadShippedProfile("workstation"));
  constexpr std::size_t kEntries = 9;
  for (std::size_t i = 0; i < 3; ++i) {
    auto plugin = Load();
    plugin.Execute(50);
    ASSERT_THAT(sink_->sent, SizeIs(i + 1));
    EXPECT_THAT(CardsOf(sink_->sent[i]), SizeIs(kEntries));
  }
}

TEST_F(SimulatedMachineTest, LoadsNoVendorsLibraryThatItsMachineDoesNotHave) {
  simulation::UseMachine(simulation::ReadShippedProfile("bare"));
  auto plugin = Load();
  plugin.Execute(50);
  ASSERT_THAT(sink_->sent, SizeIs(1));
  EXPECT_THAT(CardsOf(sink_->sent[0]), IsEmpty());
  EXPECT_THAT(simulation::CurrentVendorRecord().calls, IsEmpty());
}

}  // namespace
}  // namespace zt::tests
