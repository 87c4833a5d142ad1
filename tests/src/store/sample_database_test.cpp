#include "store/sample_database.h"

#include "store_test.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class SampleDatabaseTest : public StoreTest {
 protected:
  using StoreTest::Query;
  SummaryRowsBySource QueryText(const std::string& query_text) const { return Query(path_, query_text); }
};

TEST_F(SampleDatabaseTest, RowsAreGroupedByTheirSourceInTheOrderOfTheQuery) {
  NewStore();
  EXPECT_THAT(QueryText("VALUES('b', 1)").size(), 0U);
  EXPECT_THAT(QueryText("SELECT 'b' AS source, 1 AS n UNION ALL SELECT 'a', 2 UNION ALL SELECT 'b', 3"),
              ElementsAre(Pair("a", ElementsAre(SummaryRow{{"n", "2"}})),
                          Pair("b", ElementsAre(SummaryRow{{"n", "1"}}, SummaryRow{{"n", "3"}}))));
}

TEST_F(SampleDatabaseTest, ANullSourceIsTheEmptyText) {
  NewStore();
  EXPECT_THAT(QueryText("SELECT 'x' AS a, NULL AS source"), ElementsAre(Pair("", ElementsAre(SummaryRow{{"a", "x"}}))));
}

TEST_F(SampleDatabaseTest, ANullColumnIsAbsentAndAnEmptyOneIsNot) {
  NewStore();
  EXPECT_THAT(QueryText("SELECT '' AS empty, NULL AS absent, 's' AS source"),
              ElementsAre(Pair("s", ElementsAre(SummaryRow{{"empty", ""}}))));
}

TEST_F(SampleDatabaseTest, ARowOfNullsIsAnEmptyRow) {
  NewStore();
  EXPECT_THAT(QueryText("SELECT NULL AS a, 's' AS source"), ElementsAre(Pair("s", ElementsAre(IsEmpty()))));
}

TEST_F(SampleDatabaseTest, AQueryWithoutASourceColumnAddsNothing) {
  NewStore();
  EXPECT_THAT(QueryText("SELECT 'thermal' AS Source, 'x' AS source_"), IsEmpty());
}

TEST_F(SampleDatabaseTest, EveryKindOfValueArrivesAsItsText) {
  NewStore();
  EXPECT_THAT(QueryText("SELECT 's' AS source, 7 AS whole, 0.1 AS real, 'text' AS text, x'4142' AS bytes"),
              ElementsAre(Pair(
                  "s", ElementsAre(SummaryRow{{"whole", "7"}, {"real", "0.1"}, {"text", "text"}, {"bytes", "AB"}}))));
}

TEST_F(SampleDatabaseTest, ATextEndsAtItsFirstNul) {
  NewStore();
  EXPECT_THAT(QueryText("SELECT 's' || char(0) || 't' AS source, 'a' || char(0) || 'b' AS text"),
              ElementsAre(Pair("s", ElementsAre(SummaryRow{{"text", "a"}}))));
}

TEST_F(SampleDatabaseTest, RowsAreAddedToWhatTheResultHolds) {
  NewStore().AddThermal("2026-03-07T12:00:30.000Z");
  SummaryRowsBySource result{{"thermal", {SummaryRow{{"kept", "yes"}}}}, {"other", {}}};
  QuerySampleSummaries(path_, kSummaryQuery, &result);
  ASSERT_EQ(result["thermal"].size(), 2U);
  EXPECT_EQ(result["thermal"][0], (SummaryRow{{"kept", "yes"}}));
  EXPECT_EQ(result["thermal"][1].at("num_samples"), "1");
  EXPECT_TRUE(result.contains("other"));
}

TEST_F(SampleDatabaseTest, RowsBeforeAFailureInTheMiddleAreKept) {
  tests::SampleStore store = NewStore();
  store.Execute("CREATE TABLE texts(json TEXT)");
  store.Execute("INSERT INTO texts VALUES('[1]'), ('[2]'), ('broken'), ('[4]')");
  EXPECT_THAT(QueryText("SELECT 's' AS source, json(json) AS j FROM texts"),
              ElementsAre(Pair("s", ElementsAre(SummaryRow{{"j", "[1]"}}, SummaryRow{{"j", "[2]"}}))));
}

TEST_F(SampleDatabaseTest, AQueryThatCannotBePreparedAddsNothing) {
  NewStore();
  EXPECT_THAT(QueryText("SELECT * FROM NoSuchTable"), IsEmpty());
  EXPECT_THAT(QueryText("no query at all"), IsEmpty());
  EXPECT_THAT(QueryText(""), IsEmpty());
}

TEST_F(SampleDatabaseTest, AQueryWithoutAResultToFillDoesNothing) {
  NewStore().AddThermal("2026-03-07T12:00:30.000Z");
  EXPECT_NO_THROW(QuerySampleSummaries(path_, kSummaryQuery, nullptr));
}

TEST_F(SampleDatabaseTest, QueryingLeavesTheFileAsItWas) {
  tests::SampleStore store = NewStore();
  store.AddThermal("2026-03-07T12:00:30.000Z");
  store.AddNetwork("2026-03-07T12:00:30.000Z");
  const std::string tables = "SELECT group_concat(name || ':' || sql) FROM sqlite_master";
  const std::string before = store.Value(tables);
  ASSERT_EQ(Query(path_).size(), 2U);
  EXPECT_EQ(store.Value(tables), before);
  EXPECT_EQ(store.Count("ThermalData"), 1);
  EXPECT_EQ(store.Count("NetworkData"), 1);
}

TEST_F(SampleDatabaseTest, ATableHasRowsFromItsFirstRowOn) {
  tests::SampleStore store = NewStore();
  EXPECT_FALSE(SampleTableHasRows(path_, "ThermalData"));
  store.AddThermal("2026-03-07T12:00:30.000Z");
  EXPECT_TRUE(SampleTableHasRows(path_, "ThermalData"));
  EXPECT_FALSE(SampleTableHasRows(path_, "NetworkData"));
}

TEST_F(SampleDatabaseTest, ATableThatIsNotThereHasNoRows) {
  NewStore();
  EXPECT_FALSE(SampleTableHasRows(path_, "NoSuchTable"));
}

TEST_F(SampleDatabaseTest, ATableIsCountedByItsQuotedName) {
  tests::SampleStore store = NewStore();
  store.Execute("CREATE TABLE \"two words\"(a)");
  store.Execute("INSERT INTO \"two words\" VALUES(1)");
  EXPECT_TRUE(SampleTableHasRows(path_, "two words"));
}

TEST_F(SampleDatabaseTest, ATableNameWithAQuoteBreaksTheCount) {
  tests::SampleStore store = NewStore();
  store.Execute("CREATE TABLE \"a\"\"b\"(a)");
  store.Execute("INSERT INTO \"a\"\"b\" VALUES(1)");
  EXPECT_FALSE(SampleTableHasRows(path_, "a\"b"));
}

TEST_F(SampleDatabaseTest, DeletingEmptiesTheNamedTableOnly) {
  tests::SampleStore store = NewStore();
  for (int i = 0; i < 3; ++i) store.AddThermal("2026-03-07T12:00:30.000Z");
  store.AddNetwork("2026-03-07T12:00:30.000Z");
  DeleteSampleRows(path_, {"ThermalData"});
  EXPECT_EQ(store.Count("ThermalData"), 0);
  EXPECT_EQ(store.Count("NetworkData"), 1);
}

TEST_F(SampleDatabaseTest, DeletingGoesOnAfterATableThatFails) {
  tests::SampleStore store = NewStore();
  store.AddThermal("2026-03-07T12:00:30.000Z");
  store.AddNetwork("2026-03-07T12:00:30.000Z");
  DeleteSampleRows(path_, {"ThermalData", "NoSuchTable", "two words", "NetworkData"});
  EXPECT_EQ(store.Count("ThermalData"), 0);
  EXPECT_EQ(store.Count("NetworkData"), 0);
}

TEST_F(SampleDatabaseTest, DeletingNoTableDeletesNothing) {
  tests::SampleStore store = NewStore();
  store.AddThermal("2026-03-07T12:00:30.000Z");
  DeleteSampleRows(path_, {});
  EXPECT_EQ(store.Count("ThermalData"), 1);
}

TEST_F(SampleDatabaseTest, ADeleteThatIsRefusedLeavesTheRowsToBeSummarisedAgain) {
  tests::SampleStore store = NewStore();
  store.AddThermal("2026-03-07T12:00:30.000Z");
  store.Execute("CREATE TRIGGER keep BEFORE DELETE ON ThermalData BEGIN SELECT RAISE(ABORT, 'kept'); END");
  DeleteSampleRows(path_, {"ThermalData"});
  EXPECT_EQ(store.Count("ThermalData"), 1);
  EXPECT_EQ(Query(path_)["thermal"].size(), 1U);
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
