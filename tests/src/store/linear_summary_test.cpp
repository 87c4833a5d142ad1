// The linear summary gives what the query gives over the tables themselves, row map by row map.
#include "store/linear_summary.h"

#include "random_samples.h"
#include "store/profile_table.h"
#include "table_definitions.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

class SeededLinearSummaryTest : public LinearSummaryTest, public testing::WithParamInterface<unsigned> {};

TEST_P(SeededLinearSummaryTest, ThousandsOfShuffledSamplesGiveTheSameRows) {
  tests::SampleStore store = NewStore();
  RandomSamples(GetParam()).Fill(store, 2000);
  ExpectSameAsPlain();
}

INSTANTIATE_TEST_SUITE_P(Seeds, SeededLinearSummaryTest, testing::Values(1U, 20U, 300U));

TEST_F(LinearSummaryTest, TheOrderOfTheProfilesIsThatOfTheRowsAndNotThatOfAnIndex) {
  tests::SampleStore store = NewStore();
  store.AddNetwork("2026-03-07T06:30:00", {{"profile_name_hash", "x'02'"}});
  store.AddNetwork("2026-03-07T06:31:00", {{"profile_name_hash", "x'01'"}});
  const SummaryRowsBySource in_order_of_rows = QueryPlainly(path_);
  store.Execute("CREATE INDEX i ON NetworkData(interface_device_id, profile_name_hash)");
  ASSERT_NE(QueryPlainly(path_), in_order_of_rows);
  EXPECT_EQ(Query(), in_order_of_rows);
}

TEST_F(LinearSummaryTest, AnIndexDoesNotDecideWhereRowsHaveNoNumbersEither) {
  tests::SampleStore store = NewStore();
  store.Execute("ALTER TABLE ThermalData ADD COLUMN _rowid_ INTEGER DEFAULT 1");
  for (const char* reading : {"1e16", "1", "-1e16", "3"}) {
    store.AddThermal("2026-03-07T06:30:00", {{"cpu_temp", reading}});
  }
  const SummaryRowsBySource in_order_of_rows = QueryPlainly(path_);
  store.Execute(
      "CREATE INDEX i ON ThermalData(cpu_temp, date_time, ext_sensor_temp, loc_sensor_temp, fan1_current_tach_speed, "
      "fan1_target_tach_speed, fan1_speed_step, fan2_current_tach_speed, fan2_target_tach_speed, fan2_speed_step)");
  ASSERT_NE(QueryPlainly(path_), in_order_of_rows);
  EXPECT_EQ(Query(), in_order_of_rows);
}

TEST_F(LinearSummaryTest, AColumnNamedLikeTheHourIsWhatSamplesAreGroupedByInManyHoursToo) {
  tests::SampleStore store = NewStore();
  store.Execute("ALTER TABLE ThermalData ADD COLUMN hour_window TEXT DEFAULT 'x'");
  store.Execute(
      "WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i < 10000) INSERT INTO "
      "ThermalData(date_time) SELECT strftime('%Y-%m-%dT%H:%M:%S', '2026-03-07', i || ' minutes') FROM n");
  ExpectSameAsPlain();
}

// Without the type the profiles could not be looked up by their index, and without the collation not all found.
TEST_F(LinearSummaryTest, TheTableOfProfilesComparesLikeTheSamples) {
  tests::SampleStore store(path_);
  CreateWithInterface(store, "BIGINT COLLATE NOCASE");
  ASSERT_TRUE(MakeProfileTable(store.Handle()));
  const char* type = nullptr;
  const char* collation = nullptr;
  ASSERT_EQ(sqlite3_table_column_metadata(store.Handle(), "temp", kProfileTable, "interface_device_id", &type,
                                          &collation, nullptr, nullptr, nullptr),
            SQLITE_OK);
  EXPECT_STREQ(type, "INT");
  EXPECT_STREQ(collation, "NOCASE");
}

TEST_F(LinearSummaryTest, TheTableOfProfilesComparesInAnOrderOfAnyName) {
  tests::SampleStore store(path_);
  const auto by_length = [](void*, int left, const void*, int right, const void*) { return left - right; };
  ASSERT_EQ(sqlite3_create_collation(store.Handle(), "by \"length\"", SQLITE_UTF8, nullptr, by_length), SQLITE_OK);
  CreateWithInterface(store, "TEXT COLLATE \"by \"\"length\"\"\"");
  ASSERT_TRUE(MakeProfileTable(store.Handle()));
  store.Execute(std::string("INSERT INTO temp.") + kProfileTable + "(interface_device_id) VALUES('abc'), ('d')");
  EXPECT_EQ(store.Value(std::string("SELECT interface_device_id FROM ") + kProfileTable +
                        " WHERE interface_device_id = 'xyz'"),
            "abc");
}

TEST_F(LinearSummaryTest, EmptyTablesWhoseRowsHaveNoNumbersGiveNoRows) {
  tests::SampleStore store = NewStore();
  store.Execute("ALTER TABLE ThermalData ADD COLUMN _rowid_ INTEGER DEFAULT 1");
  store.Execute("ALTER TABLE NetworkData ADD COLUMN _rowid_ INTEGER DEFAULT 1");
  SummaryRowsBySource rows;
  EXPECT_TRUE(LinearSummary(store.Handle()).Run(&rows));
  EXPECT_THAT(rows, testing::IsEmpty());
}

TEST_F(LinearSummaryTest, ProfilesThatDifferInTheirLastBitAreTwo) {
  tests::SampleStore store = NewStore();
  store.Execute("DROP TABLE NetworkData");
  store.Execute("CREATE TABLE NetworkData(" + WithoutTypes(tests::kNetworkColumns) + ")");
  for (const char* authentication : {"2.5", "2.5000000000000004", "2.5", "'2.5'", "x'322E35'", "NULL", "NULL"}) {
    store.AddNetwork("2026-03-07T06:30:00", {{"profile_name_hash", authentication}});
  }
  ExpectSameAsPlain();
}

TEST_F(LinearSummaryTest, ProfilesOfAnyLengthAreToldApart) {
  tests::SampleStore store = NewStore();
  for (int repetition = 0; repetition < 2; ++repetition) {
    for (const int length : {0, 1, 100, 230, 240, 250, 260, 5000}) {
      store.AddNetwork("2026-03-07T06:30:00",
                       {{"profile_authentication", "'" + std::string(static_cast<std::size_t>(length), 'a') + "'"}});
    }
  }
  ExpectSameAsPlain();
}

TEST_F(LinearSummaryTest, HoursOfManyRunsGiveTheSameRowsWithSomeSamplesLate) {
  tests::SampleStore store = NewStore();
  store.AddThermal("2026-03-07T00:00:00");
  store.AddNetwork("2026-03-07T00:00:00");
  const std::string times =
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 12000), times(i, t) AS (SELECT i, "
      "strftime('%Y-%m-%dT%H:%M:%S', '2026-03-07', (i * 20 - (i % 500 = 0) * 7000) || ' seconds') FROM n) ";
  store.Execute(times + "INSERT INTO ThermalData(date_time, cpu_temp) SELECT t, i / 7.0 FROM times");
  store.Execute(times +
                "INSERT INTO NetworkData(date_time, interface_device_id, rx_rate, profile_name_hash) SELECT t, i % 3, "
                "i / 7.0, CAST(i % 7 AS BLOB) FROM times");
  ExpectSameAsPlain();
}

TEST_F(LinearSummaryTest, AValueThatJsonCannotHoldStopsTheQueryAllTheSame) {
  tests::SampleStore store = NewStore();
  RandomSamples(7).Fill(store, 600);
  store.AddNetwork("2026-03-07T06:30:00", {{"interface_device_id", "x'00'"}});
  EXPECT_EQ(Query(), QueryPlainly(path_));
  EXPECT_THAT(Query(), testing::IsEmpty());
}

TEST_F(LinearSummaryTest, ASumThatOverflowsStopsTheQueryAllTheSame) {
  tests::SampleStore store = NewStore();
  RandomSamples(7).Fill(store, 600);
  store.AddNetwork("2026-03-07T23:30:00", {{"bytes_received", "9223372036854775807"}});
  store.AddNetwork("2026-03-07T23:30:00", {{"bytes_received", "9223372036854775807"}});
  EXPECT_EQ(Query(), QueryPlainly(path_));
  EXPECT_THAT(Query(), testing::IsEmpty());
}

TEST_F(LinearSummaryTest, ATimeThatMeansTheMomentOfReadingIsSummarisedAllTheSame) {
  tests::SampleStore store = NewStore();
  RandomSamples(8).Fill(store, 300);
  store.AddNetwork("now");
  SummaryRowsBySource before;
  SummaryRowsBySource rows;
  SummaryRowsBySource after;
  do {
    before = QueryPlainly(path_);
    rows = Query();
    after = QueryPlainly(path_);
  } while (before != after);  // the hour ended in between
  EXPECT_EQ(rows, before);
  EXPECT_EQ(rows.at("network").size(), kHours + 2U);
}

TEST_F(LinearSummaryTest, ASampleThatWasDeletedInTheMiddleLeavesTheOrderOfTheOthers) {
  tests::SampleStore store = NewStore();
  RandomSamples(9).Fill(store, 600);
  store.Execute("DELETE FROM NetworkData WHERE id % 3 = 0");
  store.Execute("UPDATE NetworkData SET id = 5000 - id WHERE id % 5 = 0");
  ExpectSameAsPlain();
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
