#include "plugin/plugin_export.h"
#include "support/collector_fixture.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

// The collector with its protected operations within reach.
class AnnouncingCollector : public PerformanceSamples {
 public:
  using PerformanceSamples::GetDatabases;
};

TEST(PluginEntryTest, GivesANewCollectorAtEachCall) {
  const std::unique_ptr<shared::plugin::IDynamicPluginModule> one(LoadPlugin());
  const std::unique_ptr<shared::plugin::IDynamicPluginModule> other(LoadPlugin());
  EXPECT_NE(one, other);
  EXPECT_NE(dynamic_cast<PerformanceSamples*>(one.get()), nullptr);
}

TEST(PluginEntryTest, TouchesNeitherTheSharedRecordsNorTheMachine) {
  const std::unique_ptr<shared::plugin::IDynamicPluginModule> module(LoadPlugin());
  EXPECT_EQ(PerfMessages::static_cdm_, nullptr);
  EXPECT_EQ(PerfMessages::perf_handle_, nullptr);
  EXPECT_TRUE(simulation::RecordedQueries().empty());
}

TEST(PluginEntryTest, TheSharedRecordsOutliveTheModule) {
  const auto sink = tests::RegisterRecordingSink();
  {
    const std::unique_ptr<shared::plugin::IDynamicPluginModule> module(LoadPlugin());
    module->Execute(R"({"eventType": 7})", nullptr);
  }
  ASSERT_NE(PerfMessages::static_cdm_, nullptr);
  EXPECT_EQ(PerfMessages::static_cdm_->sample_points_actual(), 1U);
  EXPECT_EQ(PerfMessages::perf_handle_, nullptr);
}

TEST(CollectorEntryTest, AnnouncesOnePrototypeAndNoDatabase) {
  AnnouncingCollector collector;
  std::vector<std::shared_ptr<google::protobuf::Message>> messages;
  std::vector<std::string> databases;
  collector.GetDatabases(messages, databases);
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_EQ(messages[0]->GetTypeName(), "zt.telemetry.contract.storage.device_performance.ThermalZTBiosSamples");
  EXPECT_EQ(messages[0]->ByteSizeLong(), 0U);
  EXPECT_TRUE(databases.empty());
}

TEST(CollectorEntryTest, AddsItsPrototypeBehindWhatIsThere) {
  AnnouncingCollector collector;
  std::vector<std::shared_ptr<google::protobuf::Message>> messages = {std::make_shared<AmdPmfSamples>()};
  std::vector<std::string> databases = {"other"};
  collector.GetDatabases(messages, databases);
  EXPECT_EQ(messages.size(), 2U);
  EXPECT_EQ(databases, std::vector<std::string>{"other"});
}

TEST(CollectorEntryTest, EachNewOneRefillsTheSensorIndex) {
  const std::map<std::string, int> expected = {
      {"cpu_temperature", 0},     {"gpu_temperature", 1},  {"system_temperature", 2}, {"fan_speed_percent", 3},
      {"battery_temperature", 4}, {"fan_tach_current", 7}, {"fan_tach_target", 8}};
  EXPECT_TRUE(sensor_index_.empty());
  const PerformanceSamples first;
  EXPECT_EQ(sensor_index_, expected);
  sensor_index_.clear();
  const PerformanceSamples second;
  EXPECT_EQ(sensor_index_, expected);
}

TEST(CollectorEntryTest, ItsWrappersReturnTheHostsAnswerUnchanged) {
  const auto sink = tests::RegisterRecordingSink();
  sink->store_outcome = {5, 1, "a", "b", "c"};
  sink->send_outcome = {1, 2, "d", "e", "f"};
  PerformanceSamples collector;
  EXPECT_EQ(collector.AddStoreWrapper(AmdPmfSamples()), sink->store_outcome);
  EXPECT_EQ(collector.AddSendWrapper(PcLogPerformanceSamplesAsCDM()), sink->send_outcome);
  EXPECT_EQ(sink->stored.size(), 1U);
  EXPECT_EQ(sink->sent.size(), 1U);
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
