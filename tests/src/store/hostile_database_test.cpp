// Who can write the file can define anything in it under the names of the tables.
#include <sqlite3.h>

#include <chrono>

#include "store_test.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using std::chrono::milliseconds;
using testing::IsEmpty;

constexpr const char* kTimeOfSample = "2026-03-07T12:00:30.000Z";
constexpr const char* kNumbersWithoutEnd =
    "WITH RECURSIVE numbers(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM numbers) SELECT n FROM numbers";
constexpr StoreLimits kShort{
    .summary_locks = milliseconds(1), .summary_work = milliseconds(20), .table_work = milliseconds(20)};

// While it lives, every new connection of this process has the function "leave_mark", as a host's connections may have
// functions of the host's.
class HostsFunction {
 public:
  HostsFunction() {
    calls_ = 0;
    sqlite3_auto_extension(EntryPoint());
  }
  ~HostsFunction() { sqlite3_cancel_auto_extension(EntryPoint()); }
  HostsFunction(const HostsFunction&) = delete;
  HostsFunction& operator=(const HostsFunction&) = delete;

  int Calls() const { return calls_; }

 private:
  static int Add(sqlite3* database, const char** /*error*/, const void* /*api*/) {
    return sqlite3_create_function_v2(database, "leave_mark", 0, SQLITE_UTF8, nullptr, &LeaveMark, nullptr, nullptr,
                                      nullptr);
  }
  static void LeaveMark(sqlite3_context* context, int /*count*/, sqlite3_value** /*arguments*/) {
    sqlite3_result_int(context, ++calls_);
  }
  static void (*EntryPoint())() { return reinterpret_cast<void (*)()>(&Add); }

  static inline int calls_ = 0;
};

class HostileDatabaseTest : public StoreTest {
 protected:
  HostileDatabaseTest() { store_.AddThermal(kTimeOfSample); }

  /// `ThermalData` becomes the samples joined with `other`.
  void MakeThermalDataAView(const std::string& other) {
    store_.Execute("ALTER TABLE ThermalData RENAME TO samples");
    store_.Execute("CREATE VIEW ThermalData AS SELECT samples.* FROM samples, (" + other + ")");
  }

  SummaryRowsBySource QueryShortly(const std::string& query_text = kSummaryQuery) const {
    SummaryRowsBySource rows;
    QuerySampleSummaries(path_, query_text, &rows, kShort);
    return rows;
  }

  tests::SampleStore store_ = NewStore();
};

TEST_F(HostileDatabaseTest, AViewWithoutEndEndsTheSummaryAtItsLimit) {
  MakeThermalDataAView(kNumbersWithoutEnd);
  EXPECT_THAT(QueryShortly(), IsEmpty());
}

TEST_F(HostileDatabaseTest, AnInterruptedQueryHasNoneOfTheRowsThatItCameTo) {
  const std::string rows_without_end = std::string("SELECT 'thermal' AS source, n FROM (") + kNumbersWithoutEnd + ")";
  EXPECT_THAT(QueryShortly(rows_without_end), IsEmpty());
}

TEST_F(HostileDatabaseTest, RowsWithoutEndCannotBeCounted) {
  MakeThermalDataAView(kNumbersWithoutEnd);
  EXPECT_FALSE(SampleTableHasRows(path_, "ThermalData", kShort));
}

TEST_F(HostileDatabaseTest, ATriggerWithoutEndLeavesItsTableAsItWas) {
  store_.Execute(std::string("CREATE TRIGGER endless AFTER DELETE ON ThermalData BEGIN SELECT count(*) FROM (") +
                 kNumbersWithoutEnd + "); END");
  DeleteSampleRows(path_, {"ThermalData"}, kShort);
  EXPECT_TRUE(SampleTableHasRows(path_, "ThermalData"));
}

TEST_F(HostileDatabaseTest, AViewCallsNoFunctionOfTheHosts) {
  const HostsFunction function;
  MakeThermalDataAView("SELECT leave_mark()");
  EXPECT_THAT(Query(), IsEmpty());
  EXPECT_FALSE(SampleTableHasRows(path_, "ThermalData"));
  EXPECT_EQ(function.Calls(), 0);
}

TEST_F(HostileDatabaseTest, ATriggerCallsNoFunctionOfTheHosts) {
  const HostsFunction function;
  tests::SampleStore(path_).Execute("CREATE TRIGGER mark AFTER DELETE ON ThermalData BEGIN SELECT leave_mark(); END");
  DeleteSampleRows(path_, {"ThermalData"});
  EXPECT_TRUE(SampleTableHasRows(path_, "ThermalData"));
  EXPECT_EQ(function.Calls(), 0);
}

TEST_F(HostileDatabaseTest, AViewOfSamplesAloneIsSummarised) {
  MakeThermalDataAView("SELECT 1");
  const SummaryRowsBySource rows = Query();
  ASSERT_TRUE(rows.contains("thermal"));
  EXPECT_EQ(rows.at("thermal").front().at("num_samples"), "1");
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
