// The profiles that a summary looks up: repetitions are left out, so that a long hour costs what a short one does.
#include <algorithm>

#include "store_test.h"
#include "support/sql_trace.h"
#include "table_definitions.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

class RepetitionsTest : public StoreTest {
 protected:
  void Add(int times, const std::string& date_time, const std::string& hash = "x'AB'",
           const std::string& interface = "'{A}'") {
    for (int i = 0; i < times; ++i) {
      store_.AddNetwork(date_time, {{"profile_name_hash", hash}, {"interface_device_id", interface}});
    }
  }

  // How many rows a summary takes into its table of profiles.
  int Kept() {
    const tests::SqlTrace trace;
    Query();
    return static_cast<int>(std::count_if(trace.statements.begin(), trace.statements.end(), [](const std::string& sql) {
      return sql.starts_with("INSERT INTO temp.zt_profiles");
    }));
  }

  tests::SampleStore store_ = NewStore();
};

TEST_F(RepetitionsTest, AProfileIsKeptOnceForEachHour) {
  Add(20, "2026-03-07T10:00:30");
  EXPECT_EQ(Kept(), 1);
  Add(20, "2026-03-07T11:00:30");
  EXPECT_EQ(Kept(), 2);
}

TEST_F(RepetitionsTest, AnotherProfileOrInterfaceIsKeptToo) {
  Add(20, "2026-03-07T10:00:30");
  Add(20, "2026-03-07T10:01:30", "x'CD'");
  Add(20, "2026-03-07T10:02:30", "x'AB'", "'{B}'");
  EXPECT_EQ(Kept(), 3);
}

TEST_F(RepetitionsTest, ASampleWhoseTimeIsNoTextIsAlwaysKept) {
  store_.Execute("DROP TABLE NetworkData");
  store_.Execute("CREATE TABLE NetworkData(" + Replaced(kColumns, "date_time TEXT", "date_time") + ")");
  Add(3, "2026-03-07T10:00:30");
  store_.Execute("UPDATE NetworkData SET date_time = 2461106.9");
  EXPECT_EQ(Kept(), 3);
}

// What comes behind it is of an hour that begins anew, although the last text said the same hour.
TEST_F(RepetitionsTest, ASampleWhoseTimeIsNoTextHidesNoProfileOfTheHourAroundIt) {
  Add(1, "2026-03-07T10:00:30", "x'AB'", "'{B}'");
  store_.AddNetwork("", {{"date_time", "x'17'"}, {"profile_name_hash", "x'AB'"}});
  Add(1, "2026-03-07T10:01:30");
  EXPECT_EQ(Query(), QueryPlainly(path_));
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
