// Whatever SQLite refuses of the linear summary's own steps: the samples are summarised all the same.
#include <cstring>
#include <ostream>

#include "random_samples.h"
#include "store/hour_function.h"
#include "store/linear_summary.h"
#include "store/repetition_filter.h"
#include "store/sqlite_handles.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

/// What a connection is not allowed to do: an action of SQLite's authorizer, with the name that it is about.
struct RefusedStep {
  const char* name;
  int action;
  const char* object;
};

void PrintTo(const RefusedStep& step, std::ostream* out) {
  *out << step.name;
}

const RefusedStep* refused_step = nullptr;

int Authorize(void* /*context*/, int action, const char* first, const char* second, const char* /*database*/,
              const char* /*cause*/) {
  const auto is_refused = [](const char* name) {
    return name != nullptr && std::strcmp(name, refused_step->object) == 0;
  };
  return action == refused_step->action && (is_refused(first) || is_refused(second)) ? SQLITE_DENY : SQLITE_OK;
}

int RefuseOnANewConnection(sqlite3* database, const char** /*error*/, const void* /*api*/) {
  return sqlite3_set_authorizer(database, &Authorize, nullptr);
}

/// Refuses a step on all connections that are opened while it lives.
class Refusal {
 public:
  explicit Refusal(const RefusedStep& step) {
    refused_step = &step;
    sqlite3_auto_extension(reinterpret_cast<void (*)()>(&RefuseOnANewConnection));
  }
  ~Refusal() { sqlite3_cancel_auto_extension(reinterpret_cast<void (*)()>(&RefuseOnANewConnection)); }
  Refusal(const Refusal&) = delete;
  Refusal& operator=(const Refusal&) = delete;
};

class RefusedStepTest : public LinearSummaryTest, public testing::WithParamInterface<RefusedStep> {
 protected:
  // Another connection than the summary's and one on which nothing is refused.
  static bool RunOn(const std::string& path) {
    const tests::SampleStore connection(path);
    SummaryRowsBySource rows;
    return LinearSummary(connection.Handle()).Run(&rows);
  }
};

TEST_P(RefusedStepTest, LeavesTheSummaryToTheQueryOverTheTables) {
  tests::SampleStore store = NewStore();
  RandomSamples(8).Fill(store, 300);
  const SummaryRowsBySource undisturbed = Query();
  ASSERT_FALSE(undisturbed.empty());
  ASSERT_TRUE(RunOn(path_));
  const Refusal refusal(GetParam());
  EXPECT_FALSE(RunOn(path_));
  EXPECT_EQ(Query(), undisturbed);
}

INSTANTIATE_TEST_SUITE_P(Steps, RefusedStepTest,
                         testing::Values(RefusedStep{"Transaction", SQLITE_TRANSACTION, "BEGIN"},
                                         RefusedStep{"ListOfTables", SQLITE_PRAGMA, "table_list"},
                                         RefusedStep{"TypesOfTheProfiles", SQLITE_CREATE_TEMP_TABLE, "zt_types"},
                                         RefusedStep{"RemovalOfTheTypes", SQLITE_DROP_TEMP_TABLE, "zt_types"},
                                         RefusedStep{"TableOfProfiles", SQLITE_CREATE_TEMP_TABLE, "zt_profiles"},
                                         RefusedStep{"NewsOfAnHour", SQLITE_FUNCTION, "zt_is_news"},
                                         RefusedStep{"Profiles", SQLITE_INSERT, "zt_profiles"},
                                         RefusedStep{"IndexOfTheProfiles", SQLITE_CREATE_TEMP_INDEX,
                                                     "zt_profiles_by_hour_and_interface"},
                                         RefusedStep{"ThermalRowsOfARun", SQLITE_CREATE_TEMP_VIEW, "ThermalData"},
                                         RefusedStep{"NetworkRowsOfARun", SQLITE_CREATE_TEMP_VIEW, "NetworkData"}),
                         [](const auto& step) { return step.param.name; });

class BusyConnectionTest : public LinearSummaryTest {
 protected:
  // Whether the summary runs on the store's own connection, of which a row is being read.
  static bool RunsWhileReading(const tests::SampleStore& store) {
    const Statement reading = Prepare(store.Handle(), "SELECT 1;");
    EXPECT_EQ(sqlite3_step(reading.get()), SQLITE_ROW);
    SummaryRowsBySource rows;
    return LinearSummary(store.Handle()).Run(&rows);
  }
};

TEST_F(RefusedStepTest, SamplesThatMayNotBeReadGiveNoRows) {
  NewStore().AddThermal("2026-03-07T12:00:30.000Z");
  const RefusedStep reading{"Reading", SQLITE_READ, "ThermalData"};
  const Refusal refusal(reading);
  EXPECT_FALSE(RunOn(path_));
  EXPECT_THAT(Query(), testing::IsEmpty());
}

TEST_F(BusyConnectionTest, WhoseHoursCannotBeReplacedGivesNoSummary) {
  const tests::SampleStore store = NewStore();
  ASSERT_TRUE(UseFastHours(store.Handle()));
  EXPECT_FALSE(RunsWhileReading(store));
}

TEST_F(BusyConnectionTest, WhoseRepetitionsAreAnothersGivesNoSummary) {
  const tests::SampleStore store = NewStore();
  RepetitionFilter filter;
  ASSERT_TRUE(filter.AddTo(store.Handle()));
  EXPECT_FALSE(RunsWhileReading(store));
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
