#include "shipped_plugin_fixture.h"

namespace zt::tests {
namespace {

using telemetry::common::Error;
using testing::EndsWith;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

constexpr std::size_t kExampleLength = 6311;

TEST_F(ShippedPluginTest, RunsACycleForItsHost) {
  auto plugin = Load();
  EXPECT_EQ(plugin.Execute(50), Error());
  EXPECT_THAT(sink_->stored, SizeIs(1));
  ASSERT_THAT(sink_->sent, SizeIs(1));
  EXPECT_TRUE(sink_->sent[0].hw_info().has_system_memory_info());
}

TEST_F(ShippedPluginTest, HandsOverTheStoredHoursOnce) {
  auto store = SampleStore::WithTables(folder_.File("ssm.db"));
  store.AddThermal("2026-03-07T10:00:30.000Z");
  store.AddNetwork("2026-03-07T10:00:30.000Z");
  auto plugin = Load();
  plugin.Execute(20);
  ASSERT_THAT(sink_->sent, SizeIs(3));
  EXPECT_THAT(sink_->sent[0].collection_id(), StartsWith("2026-03-07T10H_"));
  EXPECT_EQ(sink_->sent[0].hw_info().system_board_info().temperature_sensors_info(0).temperature_celsius(), 40U);
  EXPECT_EQ(sink_->sent[1].hw_info().network_info().interfaces_info(0).device_id(), "{A}");
  EXPECT_EQ(store.Count("ThermalData") + store.Count("NetworkData"), 0);
  plugin.Execute(20);
  EXPECT_THAT(sink_->sent, SizeIs(4));
}

TEST_F(ShippedPluginTest, SendsTheExampleForEventType51) {
  auto plugin = Load();
  plugin.Execute(51);
  ASSERT_THAT(sink_->texts, SizeIs(1));
  EXPECT_THAT(sink_->texts[0], SizeIs(kExampleLength));
}

TEST_F(ShippedPluginTest, TagsItsLogWithItsOwnFileName) {
  auto plugin = Load();
  plugin.Execute(50);
  ASSERT_FALSE(log_.lines.empty());
  EXPECT_THAT(log_.lines[0].object, StartsWith(L"zt-telemetry-performance-samples-collector."));
  EXPECT_THAT(log_.lines[0].message, StartsWith("Started "));
  EXPECT_THAT(log_.lines[0].function, EndsWith("PerformanceSamples::ReadSource"));
}

// The exported name of the function in its namespace, as the compiler that built the plugin makes it.
#if defined(_MSC_VER)
constexpr char kNameInItsNamespace[] =
    "?LoadPlugin@performancesamples@collector@telemetry@zt@@YAPEAVIDynamicPluginModule@plugin@shared@4@XZ";
#else
constexpr char kNameInItsNamespace[] = "_ZN2zt9telemetry9collector18performancesamples10LoadPluginEv";
#endif

TEST_F(ShippedPluginTest, HasOneEntryUnderTwoNames) {
  const telemetry::host::LoadedLibrary library(telemetry::host::DefaultPluginFile());
  void* const plain = library.Find("LoadPlugin");
  EXPECT_NE(plain, nullptr);
  EXPECT_EQ(library.Find(kNameInItsNamespace), plain);
}

TEST_F(ShippedPluginTest, CanBeUnloadedAndLoadedAgain) {
  for (int i = 0; i < 3; ++i) {
    auto plugin = Load();
    EXPECT_EQ(plugin.Execute(50), Error());
  }
  EXPECT_THAT(sink_->sent, SizeIs(3));
}

TEST_F(ShippedPluginTest, TwoModuleObjectsOfOneProcessBothHandOver) {
  auto first = Load();
  auto second = Load();
  first.Execute(50);
  second.Execute(50);
  EXPECT_THAT(sink_->sent, SizeIs(2));
}

TEST_F(ShippedPluginTest, WithoutASinkItReportsSuccessAndLogsTheStore) {
  telemetry::common::RegisterTelemetrySink(nullptr);
  auto plugin = Load();
  EXPECT_EQ(plugin.Execute(50), Error());
  EXPECT_THAT(log_.Messages(plog::error), testing::Contains("No telemetry sink is registered"));
  EXPECT_THAT(sink_->sent, IsEmpty());
}

}  // namespace
}  // namespace zt::tests
