#include <algorithm>
#include <functional>
#include <string_view>
#include <typeinfo>
#include <vector>

#include "collector/sources.h"
#include "samplers/battery_info_msg.h"
#include "samplers/device_state_info_msg.h"
#include "samplers/gpu/gpu_info_msg.h"
#include "samplers/memory_info_msg.h"
#include "samplers/npu_msg.h"
#include "samplers/operating_system_info_msg.h"
#include "samplers/storage_info_msg.h"
#include "simulation/bios_clients.h"
#include "simulation/calls.h"
#include "simulation/profile.h"
#include "store/summary_query.h"
#include "support/collector_fixture.h"
#include "support/sample_store_fixture.h"
#include "support/sql_trace.h"

// What follows what in a cycle, and what a step's failure leaves of the later ones.
namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::Pair;
using testing::SizeIs;
using tests::SampleStore;

constexpr char kThermalDeletion[] = "DELETE FROM ThermalData;";
constexpr char kNetworkDeletion[] = "DELETE FROM NetworkData;";

// A receiver that looks around before it keeps a record.
class WatchingSink : public tests::RecordingSink {
 public:
  using RecordingSink::Send;
  Error Send(const google::protobuf::Message& record) override {
    if (on_send) on_send();
    return RecordingSink::Send(record);
  }

  std::function<void()> on_send;
};

// As long as it lives, calls of a name end with an exception.
class WhileItThrows {
 public:
  explicit WhileItThrows(std::string name) {
    simulation::WatchCalls([name = std::move(name)](const simulation::Call& call) {
      return call.name == name ? simulation::Disturbance::kThrows : simulation::Disturbance::kNone;
    });
  }
  ~WhileItThrows() { simulation::WatchCalls({}); }
  WhileItThrows(const WhileItThrows&) = delete;
  WhileItThrows& operator=(const WhileItThrows&) = delete;
};

class CycleOrderTest : public CollectorTest {
 protected:
  CycleOrderTest() {
    simulation::UseMachine(Laptop());
    common::RegisterTelemetrySink(watching_sink_);
  }

  // It has no sensors, so that its posture is asked of WMI too.
  static simulation::Machine Laptop() {
    simulation::Machine machine = simulation::ReadShippedProfile("convertible-laptop");
    machine.sensors = {};
    return machine;
  }

  static void UseFailure(const std::string& query_contains) {
    simulation::Machine machine = Laptop();
    machine.wmi.failures = {{query_contains, -1, std::nullopt, 0}};
    simulation::UseMachine(machine);
  }

  // A store with an hour in each table.
  SampleStore MakeStore() {
    SampleStore store = SampleStore::WithTables(folder_.File("ssm.db"));
    store.AddThermal("2026-03-07T10:00:30.000Z");
    store.AddNetwork("2026-03-07T10:00:30.000Z");
    return store;
  }

  std::shared_ptr<WatchingSink> watching_sink_ = std::make_shared<WatchingSink>();
};

TEST_F(CycleOrderTest, ATableIsEmptiedOnceItsHoursAreHandedOver) {
  SampleStore store = MakeStore();
  std::vector<std::pair<std::int64_t, std::int64_t>> rows;
  watching_sink_->on_send = [&] { rows.emplace_back(store.Count("ThermalData"), store.Count("NetworkData")); };
  Execute(50);
  EXPECT_THAT(rows, ElementsAre(Pair(1, 1), Pair(0, 1), Pair(0, 0)));
}

TEST_F(CycleOrderTest, ATableThatIsEmptyByThenIsNeitherSummarisedNorEmptied) {
  SampleStore store = MakeStore();
  tests::SqlTrace trace;
  // The summary has found an hour in each table; then somebody empties them.
  trace.on_statement = [&](const std::string& sql) {
    if (sql.starts_with("SELECT COUNT(*) FROM \"ThermalData\"")) store.Execute("DELETE FROM ThermalData");
    if (sql.starts_with("SELECT COUNT(*) FROM \"NetworkData\"")) store.Execute("DELETE FROM NetworkData");
  };
  Execute(50);
  EXPECT_EQ(store.Count("ThermalData") + store.Count("NetworkData"), 0);
  ASSERT_THAT(watching_sink_->sent, SizeIs(1));
  EXPECT_TRUE(watching_sink_->sent[0].hw_info().has_system_memory_info());
  EXPECT_THAT(trace.statements, Not(Contains(kThermalDeletion)));
  EXPECT_THAT(trace.statements, Not(Contains(kNetworkDeletion)));
}

TEST_F(CycleOrderTest, ADeletionThatFailsStopsNothing) {
  SampleStore store = MakeStore();
  store.Execute("CREATE TRIGGER keep BEFORE DELETE ON ThermalData BEGIN SELECT RAISE(ABORT, 'kept'); END");
  Execute(50);
  EXPECT_EQ(store.Count("ThermalData"), 1);
  EXPECT_EQ(store.Count("NetworkData"), 0);
  ASSERT_THAT(watching_sink_->sent, SizeIs(3));
  EXPECT_TRUE(watching_sink_->sent[2].hw_info().has_system_memory_info());
  EXPECT_THAT(log_.Messages(plog::error), IsEmpty());
}

TEST_F(CycleOrderTest, TheThermalTableIsEmptiedBeforeTheNetworkTable) {
  SampleStore store = MakeStore();
  const tests::SqlTrace trace;
  Execute(20);
  std::vector<std::string> deletions;
  std::copy_if(trace.statements.begin(), trace.statements.end(), std::back_inserter(deletions),
               [](const std::string& sql) { return sql.starts_with("DELETE FROM "); });
  EXPECT_THAT(deletions, ElementsAre(kThermalDeletion, kNetworkDeletion));
}

TEST_F(CycleOrderTest, EveryEventTypeReadsTheDatabase) {
  SampleStore store = MakeStore();
  for (const int event_type : {51, 7, 0, 50}) {
    const tests::SqlTrace trace;
    Execute(event_type);
    // The summary query, of which only the place of the profiles may be another.
    const std::string_view whole = kSummaryQuery;
    const std::string beginning(whole.substr(0, whole.find("FROM NetworkData np")));
    EXPECT_THAT(trace.statements, Contains(testing::StartsWith(beginning))) << event_type;
  }
}

TEST_F(CycleOrderTest, EventTypesThatCollectNothingChangeNoRow) {
  SampleStore store = MakeStore();
  for (const int event_type : {51, 7, 0, -1}) {
    const tests::SqlTrace trace;
    Execute(event_type);
    EXPECT_THAT(trace.statements, Not(Contains(testing::StartsWith("DELETE")))) << event_type;
  }
  EXPECT_EQ(store.Count("ThermalData") + store.Count("NetworkData"), 2);
}

// A source's builder: its class, and the clients that it was made with.
struct MadeBuilder {
  std::string_view source;
  const std::type_info* type;
  const shared::wmi::WMIClient* wmi;
  const shared::ztbios::PrivateBiosWmi* bios;
  bool operator==(const MadeBuilder& other) const {
    return source == other.source && *type == *other.type && wmi == other.wmi && bios == other.bios;
  }
};

class BuilderMembers : public PerfMessages {
 public:
  static MadeBuilder Of(const char* source, const PerfMessages& builder) {
    return {source, &typeid(builder), builder.*(&BuilderMembers::wmi_client_),
            builder.*(&BuilderMembers::private_bios_wmi_)};
  }
};

TEST_F(CycleOrderTest, TheBuildersAreMadeInTheirOrderWithTheirClients) {
  Clients clients;
  const BuilderList builders = MakeBuilders(clients);
  ASSERT_THAT(builders, SizeIs(Sources().size()));
  std::vector<MadeBuilder> made;
  for (std::size_t i = 0; i < builders.size(); ++i) made.push_back(BuilderMembers::Of(Sources()[i].name, *builders[i]));
  const std::vector<MadeBuilder> expected = {
      {"Batteries", &typeid(BatteryInfoMsg), nullptr, nullptr},
      {"Posture", &typeid(DeviceStateInfoMsg), clients.Wmi(), nullptr},
      {"Memory", &typeid(MemoryInfoMsg), clients.Wmi(), nullptr},
      {"Graphics cards", &typeid(GPUInfoMsg), clients.Wmi(), clients.Bios()},
      {"NPUs", &typeid(NPUMsg), nullptr, nullptr},
      {"Storage drives", &typeid(StorageInfoMsg), clients.Wmi(), clients.Bios()},
      {"Processes and session", &typeid(OperatingSystemInfoMsg), clients.Wmi(), nullptr},
  };
  // A source that is new here stands somewhere among them.
  std::erase_if(made, [&](const MadeBuilder& builder) {
    return std::none_of(expected.begin(), expected.end(),
                        [&](const auto& known) { return *known.type == *builder.type; });
  });
  EXPECT_TRUE(made == expected);
}

TEST_F(CycleOrderTest, TheBuildersRunInTheirOrder) {
  Execute(50);
  const std::vector<std::string> queries = simulation::RecordedQueries();
  std::vector<std::ptrdiff_t> places;
  for (const char* from : {"FROM Win32_PnPEntity", "FROM Win32_PhysicalMemory", "FROM Win32_VideoController",
                           "FROM Win32_DiskDrive", "FROM Win32_PerfFormattedData_PerfProc_Process"}) {
    const auto query = std::find_if(queries.begin(), queries.end(),
                                    [&](const std::string& wql) { return wql.find(from) != std::string::npos; });
    ASSERT_NE(query, queries.end()) << from;
    places.push_back(query - queries.begin());
  }
  EXPECT_TRUE(std::is_sorted(places.begin(), places.end())) << testing::PrintToString(queries);
}

TEST_F(CycleOrderTest, TheBuildersAfterOneThatFailedStillRun) {
  UseFailure("Win32_PnPEntity");
  Execute(50);
  ASSERT_THAT(log_.Messages(plog::error), SizeIs(1)) << "the posture fails";
  ASSERT_THAT(watching_sink_->sent, SizeIs(1));
  const auto& sent = watching_sink_->sent[0];
  EXPECT_FALSE(sent.hw_info().has_device_state());
  EXPECT_THAT(sent.hw_info().batteries_info(), Not(IsEmpty()));
  EXPECT_TRUE(sent.hw_info().has_system_memory_info());
  EXPECT_THAT(sent.hw_info().gpus_info(), Not(IsEmpty()));
  EXPECT_THAT(sent.hw_info().npus_info(), Not(IsEmpty()));
  EXPECT_THAT(sent.hw_info().storage_drives_info(), Not(IsEmpty()));
  EXPECT_THAT(sent.operating_system_info().resource_intensive_processes_info(), Not(IsEmpty()));
}

TEST_F(CycleOrderTest, WithoutAWmiClientTheSourcesThatAskNoneAnswerAndTheThermalSamplesWait) {
  SampleStore store = MakeStore();
  const WhileItThrows no_client("WMIClient");
  EXPECT_THAT(Execute(50), HasSubstr(R"("code":0)"));
  EXPECT_EQ(log_.Messages(plog::error).at(0),
            "Error handling message. Details: message: 'the client gave up: Input/output error' system code : "
            "'generic:5'");
  EXPECT_EQ(store.Count("ThermalData"), 1);
  EXPECT_EQ(store.Count("NetworkData"), 0);
  ASSERT_THAT(watching_sink_->sent, SizeIs(2));
  EXPECT_TRUE(watching_sink_->sent[0].collection_id().ends_with("-NE"));
  const auto& live = watching_sink_->sent[1];
  EXPECT_THAT(live.hw_info().batteries_info(), Not(IsEmpty()));
  EXPECT_THAT(live.hw_info().npus_info(), Not(IsEmpty()));
  EXPECT_THAT(live.hw_info().storage_drives_info(), IsEmpty());
}

TEST_F(CycleOrderTest, WithoutAClientOfTheFirmwareTheSourcesStillAnswer) {
  Execute(50);
  SampleStore store = MakeStore();
  const WhileItThrows no_client("PrivateBiosWmi");
  EXPECT_THAT(Execute(50), HasSubstr(R"("code":0)"));
  EXPECT_THAT(log_.Messages(plog::error), SizeIs(1));
  EXPECT_EQ(store.Count("ThermalData") + store.Count("NetworkData"), 0);
  ASSERT_THAT(watching_sink_->sent, SizeIs(4));
  EXPECT_EQ(watching_sink_->sent[3].hw_info().SerializeAsString(),
            watching_sink_->sent[0].hw_info().SerializeAsString());
}

TEST_F(CycleOrderTest, EachBuilderThatFailsIsLoggedInTheirOrder) {
  simulation::Machine machine = Laptop();
  machine.wmi.failures = {{"Win32_PerfFormattedData_PerfProc_Process", -1, std::nullopt, 0},
                          {"Win32_DiskDrive", -1, std::nullopt, 0},
                          {"Win32_PhysicalMemory", -1, std::nullopt, 0}};
  simulation::UseMachine(machine);
  Execute(50);
  EXPECT_THAT(log_.Messages(plog::error),
              ElementsAre("Error handling message. Details: Error while querying Win32_PhysicalMemory",
                          "Error handling message. Details: Error while querying Win32_DiskDrive",
                          "Error handling message. Details: Unknown exception type."));
  EXPECT_THAT(watching_sink_->sent, SizeIs(1));
}

TEST(FirmwareClientsTest, OneIsMadeByTheFirstCollectorAndKept) {
  const simulation::BiosClients& clients = simulation::CurrentBiosClients();
  {
    const PerformanceSamples first;
    EXPECT_EQ(clients.made, 1U);
    const PerformanceSamples second;
    EXPECT_EQ(clients.made, 1U);
  }
  const PerformanceSamples third;
  EXPECT_EQ(clients.made, 1U);
  EXPECT_EQ(clients.alive, 1U);
}

TEST_F(CycleOrderTest, ACyclesOwnFirmwareClientLivesForTheCycle) {
  const simulation::BiosClients& clients = simulation::CurrentBiosClients();
  const std::size_t before = clients.made;
  std::size_t alive_at_the_upload = 0;
  watching_sink_->on_send = [&] { alive_at_the_upload = clients.alive; };
  Execute(50);
  Execute(50);
  EXPECT_EQ(clients.made, before + 2);
  EXPECT_EQ(alive_at_the_upload, 2U);
  EXPECT_EQ(clients.alive, 1U);
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
