// Other components of the host read and write the database at the same time: what a collection waits for, what it sees
// meanwhile, and what it leaves alone.
#include <algorithm>

#include <nlohmann/json.hpp>

#include "store_test.h"
#include "support/watched_files.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

constexpr int kPatienceMs = 200;
constexpr const char* kTime = "2026-03-07T12:00:30.000Z";

class LockTest : public StoreTest {
 protected:
  LockTest() { store_.AddThermal(kTime); }

  // A wait takes what it takes, on a busy machine more than was asked for: then fewer are left.
  void ExpectPatienceUsedUp() const {
    EXPECT_LE(files_.WaitedMs(), kPatienceMs);
    EXPECT_GE(files_.WaitedMs(), kPatienceMs / 4);
  }

  tests::SampleStore store_ = NewStore();
  tests::WatchedFiles files_;
};

TEST_F(LockTest, ASummaryWaits200MillisecondsForAWriterInAll) {
  store_.Execute("BEGIN EXCLUSIVE");
  EXPECT_THAT(Query(), IsEmpty());
  ExpectPatienceUsedUp();
}

TEST_F(LockTest, AnyOtherQueryWaitsNoLonger) {
  store_.Execute("BEGIN EXCLUSIVE");
  EXPECT_THAT(QueryPlainly(path_), IsEmpty());
  ExpectPatienceUsedUp();
}

TEST_F(LockTest, TheSecondAttemptOfASummaryHasWhatTheFirstLeftOfThePatience) {
  tests::SampleStore other(path_);
  store_.Execute("ALTER TABLE NetworkData ADD COLUMN hour_window");  // no table for a first attempt
  constexpr int kFirstWaits = 2;
  int waits = 0;
  store_.Execute("BEGIN EXCLUSIVE");
  files_.on_wait = [&] {
    if (++waits == kFirstWaits) store_.Execute("COMMIT");
  };
  int released = 0;
  files_.on_release = [&] {
    if (waits >= kFirstWaits && ++released == 2) store_.Execute("BEGIN EXCLUSIVE");
  };
  EXPECT_THAT(Query(), IsEmpty());
  EXPECT_LE(files_.WaitedMs(), kPatienceMs);
  EXPECT_GE(released, 2);
  EXPECT_GT(waits, kFirstWaits) << "the second attempt waits too";
}

TEST_F(LockTest, AWriterThatEndsInTimeIsWaitedFor) {
  store_.Execute("BEGIN EXCLUSIVE");
  files_.on_wait = [&] { store_.Execute("COMMIT"); };
  EXPECT_THAT(Query()["thermal"], SizeIs(1));
  EXPECT_LT(files_.WaitedMs(), kPatienceMs);
}

TEST_F(LockTest, AReaderIsNotWaitedFor) {
  store_.Execute("BEGIN");
  EXPECT_EQ(store_.Count("ThermalData"), 1);
  EXPECT_THAT(Query()["thermal"], SizeIs(1));
  EXPECT_EQ(files_.WaitedMs(), 0);
}

TEST_F(LockTest, ACountDoesNotWait) {
  store_.Execute("BEGIN EXCLUSIVE");
  EXPECT_FALSE(SampleTableHasRows(path_, "ThermalData"));
  EXPECT_EQ(files_.WaitedMs(), 0);
}

TEST_F(LockTest, ADeleteDoesNotWaitForAWriterWhoseNewSamplesItWouldDelete) {
  store_.Execute("BEGIN IMMEDIATE");
  store_.AddThermal("2026-03-07T13:00:30.000Z");
  files_.on_wait = [&] { store_.Execute("COMMIT"); };
  DeleteSampleRows(path_, {"ThermalData"});
  EXPECT_EQ(files_.WaitedMs(), 0);
  store_.Execute("COMMIT");
  EXPECT_EQ(store_.Count("ThermalData"), 2);
}

TEST_F(LockTest, ADeleteDoesNotWaitForAReader) {
  store_.Execute("BEGIN");
  EXPECT_EQ(store_.Count("ThermalData"), 1);
  DeleteSampleRows(path_, {"ThermalData"});
  EXPECT_EQ(files_.WaitedMs(), 0);
  store_.Execute("COMMIT");
  EXPECT_EQ(store_.Count("ThermalData"), 1);
}

TEST_F(LockTest, ADeleteDoesNotWaitForAWriterOfAWriteAheadLog) {
  ASSERT_EQ(store_.Value("PRAGMA journal_mode=WAL"), "wal");
  store_.Execute("BEGIN IMMEDIATE");
  DeleteSampleRows(path_, {"ThermalData"});
  EXPECT_EQ(files_.WaitedMs(), 0);
  store_.Execute("COMMIT");
  EXPECT_EQ(store_.Count("ThermalData"), 1);
}

TEST_F(LockTest, SamplesThatAreAddedWhileASummaryReadsAreInItWithAllTheirFiguresOrNotAtAll) {
  int added = 0;
  const auto add = [&] {
    ++added;
    store_.AddNetwork(kTime, {{"profile_name_hash", "x'" + std::to_string(1000 + added) + "'"}});
  };
  add();
  files_.on_release = add;
  const auto rows = Query();
  const auto hour = nlohmann::json::parse(rows.at("network").at(0).at("network_info"));
  EXPECT_GT(added, 1);
  EXPECT_EQ(hour["interfaces_info"][0]["w_lan_profiles"].size(), hour["num_samples"].get<std::size_t>());
}

TEST_F(LockTest, NoWriterGetsInBeforeTheLastRowIsRead) {
  // Hours for several runs of the query.
  store_.Execute(
      "WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i < 20000) INSERT INTO "
      "ThermalData(date_time) "
      "SELECT strftime('%Y-%m-%dT%H:%M:%S', '2026-03-07', i || ' minutes') FROM n");
  sqlite3_int64 read_until_release = 0;
  sqlite3_int64 most_between_releases = 0;
  files_.on_release = [&] {
    most_between_releases = std::max(most_between_releases, files_.BytesRead() - read_until_release);
    read_until_release = files_.BytesRead();
  };
  EXPECT_GT(Query()["thermal"].size(), 300U);
  constexpr sqlite3_int64 kDefinitionsOfTables = 64 * 1024;
  EXPECT_GT(most_between_releases, 512 * 1024);
  EXPECT_GT(most_between_releases, files_.BytesRead() - kDefinitionsOfTables);
}

TEST_F(LockTest, AReadErrorOfTheFirstAttemptDoesNotCostTheSummary) {
  store_.Execute(
      "WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i < 80000) INSERT INTO "
      "ThermalData(date_time) "
      "SELECT strftime('%Y-%m-%dT%H:%M:%S', '2026-03-07', i || ' minutes') FROM n");
  const SummaryRowsBySource plain = QueryPlainly(path_);
  int reads = 0;
  files_.read_fails = [&](int /*number*/) {
    ++reads;
    return false;
  };
  ASSERT_EQ(Query(), plain);
  const int reads_of_a_summary = reads;
  ASSERT_GT(reads_of_a_summary, 100);
  for (const int failing : {1, reads_of_a_summary / 4, reads_of_a_summary * 3 / 4}) {
    reads = 0;
    files_.read_fails = [&](int /*number*/) { return ++reads == failing; };
    EXPECT_EQ(Query(), plain) << failing << " of " << reads_of_a_summary;
  }
}

TEST_F(LockTest, ColumnsThatNoFigureIsMadeOfAreNotRead) {
  store_.Execute("ALTER TABLE ThermalData ADD COLUMN raw BLOB");
  store_.Execute("ALTER TABLE NetworkData ADD COLUMN raw BLOB");
  constexpr int kRows = 20;
  constexpr int kBytes = 50000;
  for (int i = 0; i < kRows; ++i) {
    store_.AddThermal(kTime, {{"raw", "zeroblob(" + std::to_string(kBytes) + ")"}});
    store_.AddNetwork(kTime, {{"raw", "zeroblob(" + std::to_string(kBytes) + ")"}});
  }
  EXPECT_THAT(Query(), SizeIs(2));
  EXPECT_GT(files_.BytesRead(), 0);
  EXPECT_LT(files_.BytesRead(), kRows * kBytes / 2);
}

TEST_F(LockTest, ASummaryOfOrderlySamplesNeedsNoTemporaryFile) {
  store_.Execute(
      "WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i < 60000) INSERT INTO "
      "ThermalData(date_time, "
      "cpu_temp) SELECT strftime('%Y-%m-%dT%H:%M:%S', '2026-03-07', i || ' minutes'), i FROM n");
  EXPECT_GT(Query()["thermal"].size(), 1000U);
  EXPECT_THAT(files_.TemporaryFiles(), IsEmpty());
}

TEST_F(LockTest, WhatDoesNotFitIntoMemoryGoesToFilesThatVanishWhenTheyAreClosed) {
  store_.Execute(
      "WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i < 60000) INSERT INTO "
      "ThermalData(date_time, "
      "cpu_temp) SELECT strftime('%Y-%m-%dT%H:%M:%S', '2026-03-07', (i * 7919 % 60000) || ' minutes'), i FROM n");
  EXPECT_THAT(Query()["thermal"], SizeIs(1000));
  EXPECT_THAT(files_.TemporaryFiles(), testing::Not(IsEmpty()));
  for (const int flags : files_.TemporaryFiles()) EXPECT_NE(flags & SQLITE_OPEN_DELETEONCLOSE, 0);
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
