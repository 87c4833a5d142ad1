#include <exception>
#include <fstream>

#include "collector/example_upload.h"
#include "simulation/profile.h"
#include "store/summary_query.h"
#include "support/collector_fixture.h"
#include "support/sample_store_fixture.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using tests::SampleStore;

constexpr char kReadSource[] = "zt::telemetry::collector::performancesamples::PerformanceSamples::ReadSource";
constexpr char kSuccess[] = R"("code":0)";

class CollectionCycleTest : public CollectorTest {
 protected:
  CollectionCycleTest() { simulation::UseMachine(simulation::ReadShippedProfile("convertible-laptop")); }

  SampleStore MakeStore() { return SampleStore::WithTables(folder_.File("ssm.db")); }
};

TEST_F(CollectionCycleTest, StoresOneRecordAndSendsOne) {
  EXPECT_THAT(Execute(50), HasSubstr(kSuccess));
  EXPECT_THAT(sink_->stored, SizeIs(1));
  EXPECT_THAT(sink_->sent, SizeIs(1));
  EXPECT_THAT(sink_->texts, IsEmpty());
  EXPECT_TRUE(OnlySent().hw_info().system_memory_info().has_used_physical_memory_kb());
}

TEST_F(CollectionCycleTest, EventType20IsTheSameAs50) {
  Execute(20);
  EXPECT_THAT(sink_->stored, SizeIs(1));
  EXPECT_THAT(sink_->sent, SizeIs(1));
}

TEST_F(CollectionCycleTest, LogsItsBeginAndItsEnd) {
  Execute(50);
  const auto messages = log_.Messages(plog::info);
  EXPECT_THAT(messages, ElementsAre(std::string("Started ") + kReadSource, std::string("Finished ") + kReadSource));
  for (const auto& line : log_.lines) EXPECT_EQ(line.function, kReadSource);
}

TEST_F(CollectionCycleTest, AnnouncesItsPrototypeInTheOutcome) {
  EXPECT_THAT(Execute(50), HasSubstr("ThermalZTBiosSamples"));
}

TEST_F(CollectionCycleTest, EventType51SendsTheExampleAndDoesNothingElse) {
  auto store = MakeStore();
  store.AddThermal("2026-03-07T12:00:30.000Z");
  EXPECT_THAT(Execute(51), HasSubstr(kSuccess));
  EXPECT_THAT(sink_->texts, ElementsAre(example_upload_));
  EXPECT_THAT(sink_->stored, IsEmpty());
  EXPECT_THAT(sink_->sent, IsEmpty());
  EXPECT_EQ(store.Count("ThermalData"), 1);
  EXPECT_EQ(PerfMessages::static_cdm_, nullptr);
  EXPECT_THAT(simulation::RecordedQueries(), IsEmpty());
}

TEST_F(CollectionCycleTest, EventType51LogsItsBeginOnly) {
  Execute(51);
  EXPECT_THAT(log_.Messages(), ElementsAre(std::string("Started ") + kReadSource));
}

TEST_F(CollectionCycleTest, EventType51IgnoresAFailedSend) {
  sink_->send_outcome = {5, 1, "no upload today", "", ""};
  EXPECT_THAT(Execute(51), HasSubstr(kSuccess));
}

TEST_F(CollectionCycleTest, AnotherEventTypeHandsNothingOverButFixesHandleAndEventType) {
  auto store = MakeStore();
  store.AddThermal("2026-03-07T12:00:30.000Z");
  PerformanceSamples other;
  EXPECT_THAT(Execute(other, 7), HasSubstr(kSuccess));
  EXPECT_THAT(sink_->stored, IsEmpty());
  EXPECT_THAT(sink_->sent, IsEmpty());
  EXPECT_EQ(store.Count("ThermalData"), 1);
  EXPECT_THAT(simulation::RecordedQueries(), IsEmpty());
  EXPECT_THAT(log_.Messages(),
              ElementsAre(std::string("Started ") + kReadSource, std::string("Finished ") + kReadSource));

  Execute(50);
  EXPECT_EQ(PerfMessages::perf_handle_, &other);
  EXPECT_EQ(PerfMessages::event_type_, 7);
}

TEST_F(CollectionCycleTest, ASecondCycleSendsARecordOfItsOwnWithoutSamplePoints) {
  Execute(50);
  Execute(50);
  ASSERT_THAT(sink_->sent, SizeIs(2));
  EXPECT_EQ(sink_->sent[0].sample_points_actual(), 1U);
  EXPECT_FALSE(sink_->sent[1].has_sample_points_actual());
  EXPECT_TRUE(sink_->sent[1].hw_info().system_memory_info().has_used_physical_memory_kb());
}

TEST_F(CollectionCycleTest, ACollectorMadeAfterTheFirstWasDeletedStillHandsOver) {
  {
    PerformanceSamples first;
    Execute(first, 50);
  }
  Execute(50);
  EXPECT_THAT(sink_->sent, SizeIs(2));
  EXPECT_EQ(PerfMessages::perf_handle_, &collector_);
}

TEST_F(CollectionCycleTest, ABuilderThatFailsIsLoggedAndTheOthersAndTheUploadStillRun) {
  simulation::Machine machine = simulation::ReadShippedProfile("convertible-laptop");
  machine.wmi.failures = {{"Win32_PhysicalMemory", -1, std::nullopt, 0}};
  simulation::UseMachine(machine);
  Execute(50);
  EXPECT_THAT(log_.Messages(plog::error),
              ElementsAre("Error handling message. Details: Error while querying Win32_PhysicalMemory"));
  for (const auto& line : log_.lines) EXPECT_EQ(line.function, kReadSource);
  EXPECT_THAT(sink_->stored, SizeIs(1));
  EXPECT_THAT(sink_->sent, SizeIs(1));
}

TEST_F(CollectionCycleTest, AnExceptionWithoutWordsCostsItsBuilderOnly) {
  struct Wordless : std::exception {
    const char* what() const noexcept override { return nullptr; }
  };
  shared::wmi::ObserveQueries([](const std::wstring& wql) {
    if (wql.find(L"Win32_PhysicalMemory") != std::wstring::npos) throw Wordless();
  });
  EXPECT_THAT(Execute(50), HasSubstr(kSuccess));
  shared::wmi::ObserveQueries({});
  EXPECT_THAT(log_.Messages(plog::error), ElementsAre("Error handling message. Details: Unknown exception type."));
  EXPECT_THAT(sink_->stored, SizeIs(1));
  EXPECT_GT(OnlySent().hw_info().batteries_info_size(), 0);
  EXPECT_GT(OnlySent().hw_info().storage_drives_info_size(), 0);
}

TEST_F(CollectionCycleTest, AFailedStoreDoesNotStopTheUpload) {
  sink_->store_outcome = {5, 1, "the store is full", "", ""};
  EXPECT_THAT(Execute(50), HasSubstr(kSuccess));
  EXPECT_THAT(log_.Messages(plog::error), ElementsAre("the store is full"));
  EXPECT_THAT(sink_->sent, SizeIs(1));
}

TEST_F(CollectionCycleTest, WithoutADatabaseNoFileIsCreated) {
  Execute(50);
  EXPECT_TRUE(std::filesystem::is_empty(folder_.Path()));
}

TEST_F(CollectionCycleTest, AFileThatIsNoDatabaseDoesNotDisturbIt) {
  std::ofstream(folder_.Path() / "ssm.db") << std::string(5000, 'x');
  EXPECT_THAT(Execute(50), HasSubstr(kSuccess));
  EXPECT_THAT(sink_->sent, SizeIs(1));
  EXPECT_EQ(std::filesystem::file_size(folder_.Path() / "ssm.db"), 5000U);
}

TEST_F(CollectionCycleTest, EmptyTablesAreNotSummarised) {
  auto store = MakeStore();
  Execute(50);
  EXPECT_THAT(sink_->sent, SizeIs(1));
  EXPECT_THAT(simulation::RecordedQueries(), testing::Not(testing::Contains(HasSubstr("Win32_Processor"))));
}

TEST_F(CollectionCycleTest, SummarisesEachTableThenSendsTheLiveRecord) {
  auto store = MakeStore();
  store.AddNetwork("2026-03-07T10:00:30.000Z");
  store.AddThermal("2026-03-07T10:00:30.000Z");
  store.AddThermal("2026-03-07T11:00:30.000Z");
  Execute(50);
  ASSERT_THAT(sink_->sent, SizeIs(4));
  EXPECT_THAT(sink_->sent[0].collection_id(), testing::EndsWith("-TH"));
  EXPECT_THAT(sink_->sent[1].collection_id(), testing::EndsWith("-TH"));
  EXPECT_THAT(sink_->sent[2].collection_id(), testing::EndsWith("-NE"));
  EXPECT_TRUE(sink_->sent[3].hw_info().has_system_memory_info());
  EXPECT_EQ(store.Count("ThermalData"), 0);
  EXPECT_EQ(store.Count("NetworkData"), 0);
}

TEST_F(CollectionCycleTest, ASecondCycleSendsNoHourAgain) {
  auto store = MakeStore();
  store.AddThermal("2026-03-07T10:00:30.000Z");
  store.AddNetwork("2026-03-07T10:00:30.000Z");
  Execute(50);
  Execute(50);
  EXPECT_THAT(sink_->sent, SizeIs(4));
  EXPECT_TRUE(sink_->sent[3].hw_info().has_system_memory_info());
}

TEST_F(CollectionCycleTest, EachTableIsEmptiedAlone) {
  auto store = MakeStore();
  store.AddThermal("2026-03-07T10:00:30.000Z");
  Execute(50);
  EXPECT_THAT(sink_->sent, SizeIs(2));
  EXPECT_EQ(store.Count("ThermalData"), 0);
  store.AddNetwork("2026-03-07T10:00:30.000Z");
  Execute(50);
  EXPECT_THAT(sink_->sent, SizeIs(4));
  EXPECT_EQ(store.Count("NetworkData"), 0);
}

TEST_F(CollectionCycleTest, AHourThatCouldNotBeSentGoesWithTheRest) {
  sink_->send_outcome = {5, 1, "no upload today", "", ""};
  auto store = MakeStore();
  store.AddThermal("2026-03-07T10:00:30.000Z");
  Execute(50);
  EXPECT_EQ(store.Count("ThermalData"), 0);
}

TEST_F(CollectionCycleTest, ATableThatTheQueryCouldNotReadKeepsItsRows) {
  SampleStore store(folder_.File("ssm.db"));
  store.Execute("CREATE TABLE ThermalData(date_time TEXT)");
  store.Execute("INSERT INTO ThermalData VALUES('2026-03-07T10:00:30.000Z')");
  EXPECT_THAT(Execute(50), HasSubstr(kSuccess));
  EXPECT_EQ(store.Count("ThermalData"), 1);
  EXPECT_THAT(sink_->sent, SizeIs(1));
}

// Everything that a machine can be: each shipped profile ends a cycle with one record of each kind.
class CollectionCycleOnMachineTest : public CollectorTest, public testing::WithParamInterface<const char*> {};

TEST_P(CollectionCycleOnMachineTest, AnyMachineEndsWithOneRecordStoredAndOneSent) {
  simulation::UseMachine(simulation::ReadShippedProfile(GetParam()));
  auto store = SampleStore::WithTables(folder_.File("ssm.db"));
  store.AddThermal("2026-03-07T10:00:30.000Z");
  EXPECT_THAT(Execute(50), HasSubstr(kSuccess));
  EXPECT_THAT(sink_->stored, SizeIs(1));
  ASSERT_THAT(sink_->sent, SizeIs(2));
  EXPECT_TRUE(sink_->sent[1].has_collection_id());
  EXPECT_EQ(store.Count("ThermalData"), 0);
}

INSTANTIATE_TEST_SUITE_P(Shipped, CollectionCycleOnMachineTest,
                         testing::Values("bare", "convertible-laptop", "everything", "failing", "workstation"));

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
