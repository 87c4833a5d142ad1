#include "store/sample_copies.h"

#include <filesystem>

#include "store/sqlite_handles.h"
#include "store/store_test.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::HasSubstr;
using testing::Not;

class SampleCopiesTest : public StoreTest {
 protected:
  static std::string Plan(tests::SampleStore& store) {
    const Statement statement = Prepare(store.Handle(), std::string("EXPLAIN QUERY PLAN ") + kSummaryQuery);
    std::string plan;
    while (sqlite3_step(statement.get()) == SQLITE_ROW) plan += std::string(ColumnText(statement.get(), 3)) + "\n";
    return plan;
  }
};

TEST_F(SampleCopiesTest, TheUnchangedQueryFindsTheProfilesOfAGroupByTheIndexOfTheCopies) {
  tests::SampleStore store = NewStore();
  EXPECT_THAT(Plan(store), Not(HasSubstr("INDEX")));
  ASSERT_TRUE(MakeSampleCopies(store.Handle()));
  EXPECT_THAT(Plan(store), HasSubstr("SCAN NetworkData USING INDEX zt_network_by_hour_and_interface"));
  EXPECT_THAT(Plan(store), HasSubstr("SEARCH np USING INDEX zt_network_by_hour_and_interface "
                                     "(<expr>=? AND interface_device_id=?)"));
}

TEST_F(SampleCopiesTest, TheTablesAreFreeForWritersOnceTheyAreCopied) {
  tests::SampleStore store = NewStore();
  tests::SampleStore writer(path_);
  ASSERT_TRUE(MakeSampleCopies(store.Handle()));
  writer.AddThermal("2026-03-07T12:00:30.000Z");
  EXPECT_EQ(store.Count("temp.ThermalData"), 0);
  EXPECT_EQ(store.Count("main.ThermalData"), 1);
}

TEST_F(SampleCopiesTest, AConnectionThatMayOnlyReadMakesCopiesToo) {
  NewStore().AddNetwork("2026-03-07T12:00:30.000Z");
  sqlite3* handle = nullptr;
  const int outcome = sqlite3_open_v2(path_.c_str(), &handle, SQLITE_OPEN_READONLY, nullptr);
  const Database reader(handle);
  ASSERT_EQ(outcome, SQLITE_OK);
  EXPECT_TRUE(MakeSampleCopies(handle));
}

TEST_F(SampleCopiesTest, ValuesKeepTheirKindsWhateverTheTypeOfTheirColumn) {
  tests::SampleStore store(path_);
  std::string columns = std::string(tests::kNetworkColumns) +
                        ", none, numeric NUMERIC, real DOUBLE PRECISION, "
                        "odd \"a \"\"type\"\" (1)\", chars VARCHAR(10), any ANY";
  store.CreateTables(tests::kThermalColumns, columns);
  store.AddNetwork(
      "2026-03-07T12:00:30.000Z",
      {{"none", "'1'"}, {"numeric", "'1'"}, {"real", "1"}, {"odd", "'1'"}, {"chars", "1"}, {"any", "'1'"}});
  const std::string kinds =
      "SELECT typeof(none) || typeof(numeric) || typeof(real) || typeof(odd) || typeof(chars) || typeof(any) || "
      "typeof(profile_name_hash) || typeof(id) FROM ";
  ASSERT_EQ(store.Value(kinds + "main.NetworkData"), "textintegerrealintegertextintegerblobinteger");
  ASSERT_TRUE(MakeSampleCopies(store.Handle()));
  EXPECT_EQ(store.Value(kinds + "temp.NetworkData"), store.Value(kinds + "main.NetworkData"));
}

TEST_F(SampleCopiesTest, AStrictTableKeepsItsTextsThatLookLikeNumbers) {
  tests::SampleStore store(path_);
  store.CreateTables();
  store.Execute("DROP TABLE NetworkData");
  std::string columns = tests::kNetworkColumns;
  columns.replace(columns.find("radio_type TEXT"), 15, "radio_type ANY");
  store.Execute("CREATE TABLE NetworkData(" + columns + ") STRICT");
  store.AddNetwork("2026-03-07T12:00:30.000Z", {{"radio_type", "'007'"}});
  ASSERT_TRUE(MakeSampleCopies(store.Handle()));
  EXPECT_EQ(store.Value("SELECT radio_type FROM temp.NetworkData"), "007");
}

TEST_F(SampleCopiesTest, AnIndexOnTheTimeDoesNotStandInTheWay) {
  tests::SampleStore store = NewStore();
  store.Execute("CREATE INDEX by_time ON NetworkData(date_time)");
  store.Execute("CREATE UNIQUE INDEX once ON NetworkData(date_time, interface_device_id)");
  EXPECT_TRUE(MakeSampleCopies(store.Handle()));
}

TEST_F(SampleCopiesTest, AnIndexThatTheQueryWouldWalkLeavesTheTablesAsTheyAre) {
  for (const char* columns : {"interface_device_id", "profile_name_hash, profile_authentication, profile_encryption",
                              "profile_name_hash) WHERE (interface_device_id IS NOT NULL"}) {
    tests::SampleStore store = tests::SampleStore::WithTables(folder_.File("indexed.db"));
    store.Execute("CREATE INDEX walked ON NetworkData(" + std::string(columns) + ")");
    EXPECT_FALSE(MakeSampleCopies(store.Handle())) << columns;
    store.Close();
    std::filesystem::remove(folder_.Path() / "indexed.db");
  }
}

TEST_F(SampleCopiesTest, AViewIsNotCopied) {
  tests::SampleStore store = NewStore();
  store.Execute("ALTER TABLE NetworkData RENAME TO Samples");
  store.Execute("CREATE VIEW NetworkData AS SELECT * FROM Samples ORDER BY date_time DESC");
  EXPECT_FALSE(MakeSampleCopies(store.Handle()));
}

TEST_F(SampleCopiesTest, AVirtualTableIsNotCopied) {
  tests::SampleStore store = NewStore();
  if (store.Value("SELECT name FROM pragma_module_list WHERE name = 'fts5'").empty()) {
    GTEST_SKIP() << "this SQLite has no virtual tables of its own";
  }
  store.Execute("DROP TABLE ThermalData");
  store.Execute(
      "CREATE VIRTUAL TABLE ThermalData USING fts5(date_time, cpu_temp, ext_sensor_temp, loc_sensor_temp, "
      "fan1_current_tach_speed, fan1_target_tach_speed, fan1_speed_step, fan2_current_tach_speed, "
      "fan2_target_tach_speed, fan2_speed_step)");
  EXPECT_FALSE(MakeSampleCopies(store.Handle()));
}

TEST_F(SampleCopiesTest, ATimeThatMeansTheMomentOfReadingCannotBeIndexed) {
  tests::SampleStore store = NewStore();
  store.AddNetwork("now");
  EXPECT_FALSE(MakeSampleCopies(store.Handle()));
}

TEST_F(SampleCopiesTest, AMissingTableGivesNoCopies) {
  tests::SampleStore store = NewStore();
  store.Execute("DROP TABLE ThermalData");
  EXPECT_FALSE(MakeSampleCopies(store.Handle()));
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
