#include "host/collect/sample_copy.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <set>

#include "host/database/database_file.h"
#include "support/sample_store_fixture.h"
#include "support/temporary_folder.h"
#include "tests/host/program_run.h"

namespace zt::telemetry::host {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using zt::tests::SampleStore;

constexpr int kNoPatience = 0;

std::set<std::string> FilesIn(const fs::path& folder) {
  std::set<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder)) names.insert(ToText(entry.path().filename()));
  return names;
}

class SampleCopyTest : public testing::Test {
 protected:
  SampleCopyTest() {
    store_.AddThermal("2026-03-07T12:00:30.000Z", {{"cpu_temp", "51"}});
    store_.AddThermal("2026-03-07T12:01:30.000Z", {{"cpu_temp", "52"}});
    store_.AddNetwork("2026-03-07T12:00:30.000Z");
  }

  // As a collection does to the samples that it has sent.
  static void Empty(const SampleCopy& copy, const std::string& table = "ThermalData") {
    SampleStore(ToText(copy.Folder() / "ssm.db")).Execute("DELETE FROM " + table);
  }

  // What is left of the samples after the collection's rows were deleted.
  std::int64_t Take(const SampleCopy& copy) const {
    const fs::path taken = folder_.Path() / "taken.db";
    if (copy.KeepTaken(taken) == 0) return 0;
    const std::int64_t deleted = DeleteTakenSamples(file_, taken, kNoPatience);
    fs::remove(taken);
    return deleted;
  }

  std::string Temperatures() { return store_.Value("SELECT group_concat(cpu_temp) FROM ThermalData"); }

  zt::tests::TemporaryFolder folder_;
  const fs::path file_ = folder_.Path() / "ssm.db";
  SampleStore store_ = SampleStore::WithTables(ToText(file_));
};

TEST_F(SampleCopyTest, HoldsTheSamplesUnderTheNameThatACollectionOpens) {
  const SampleCopy copy(file_);
  EXPECT_FALSE(copy.Trouble().has_value());
  SampleStore copied(ToText(copy.Folder() / "ssm.db"));
  EXPECT_EQ(copied.Value("SELECT group_concat(cpu_temp) FROM ThermalData"), Temperatures());
}

TEST_F(SampleCopyTest, WhatACollectionDeletesInItStaysInTheDatabase) {
  const SampleCopy copy(file_);
  Empty(copy);
  EXPECT_EQ(store_.Value("SELECT count(*) FROM ThermalData"), "2");
}

TEST_F(SampleCopyTest, TakingDeletesTheRowsThatTheCollectionDeleted) {
  const SampleCopy copy(file_);
  Empty(copy);
  EXPECT_EQ(Take(copy), 2);
  EXPECT_EQ(store_.Value("SELECT count(*) FROM ThermalData"), "0");
  EXPECT_EQ(store_.Value("SELECT count(*) FROM NetworkData"), "1");
}

TEST_F(SampleCopyTest, ACollectionThatDeletedNothingTakesNothing) {
  const SampleCopy copy(file_);
  EXPECT_EQ(Take(copy), 0);
  EXPECT_EQ(store_.Value("SELECT count(*) FROM ThermalData"), "2");
}

TEST_F(SampleCopyTest, ARowThatWasAddedMeanwhileStays) {
  const SampleCopy copy(file_);
  store_.AddThermal("2026-03-07T12:02:30.000Z", {{"cpu_temp", "53"}});
  Empty(copy);
  EXPECT_EQ(Take(copy), 2);
  EXPECT_EQ(Temperatures(), "53.0");
}

TEST_F(SampleCopyTest, ARowOfTheSameNumberAndOtherValuesStays) {
  const SampleCopy copy(file_);
  Empty(copy);
  store_.Execute("DELETE FROM ThermalData");
  store_.AddThermal("2026-03-07T12:02:30.000Z", {{"id", "1"}, {"cpu_temp", "53"}});
  EXPECT_EQ(Take(copy), 0);
  EXPECT_EQ(Temperatures(), "53.0");
}

TEST_F(SampleCopyTest, ARowWithNullsIsTakenToo) {
  store_.AddThermal("2026-03-07T12:02:30.000Z", {{"cpu_temp", "NULL"}});
  const SampleCopy copy(file_);
  Empty(copy);
  EXPECT_EQ(Take(copy), 3);
}

TEST_F(SampleCopyTest, TakingTwiceDeletesNothingMore) {
  const SampleCopy copy(file_);
  Empty(copy);
  const fs::path taken = folder_.Path() / "taken.db";
  ASSERT_EQ(copy.KeepTaken(taken), 2);
  EXPECT_EQ(DeleteTakenSamples(file_, taken, kNoPatience), 2);
  store_.AddThermal("2026-03-07T12:02:30.000Z");
  EXPECT_EQ(DeleteTakenSamples(file_, taken, kNoPatience), 0);
}

TEST_F(SampleCopyTest, NothingIsDeletedWhileAWriterHoldsTheDatabase) {
  const SampleCopy copy(file_);
  Empty(copy);
  const fs::path taken = folder_.Path() / "taken.db";
  ASSERT_EQ(copy.KeepTaken(taken), 2);
  store_.Execute("BEGIN IMMEDIATE");
  EXPECT_THROW(DeleteTakenSamples(file_, taken, kNoPatience), DatabaseError);
  store_.Execute("COMMIT");
  EXPECT_EQ(store_.Value("SELECT count(*) FROM ThermalData"), "2");
}

TEST_F(SampleCopyTest, WhatWasTakenBeforeIsForgottenByALaterCopy) {
  const fs::path taken = folder_.Path() / "taken.db";
  {
    const SampleCopy earlier(file_);
    Empty(earlier);
    ASSERT_EQ(earlier.KeepTaken(taken), 2);
  }
  store_.AddThermal("2026-03-07T12:02:30.000Z", {{"cpu_temp", "53"}});
  const SampleCopy copy(file_);
  copy.Forget(taken);
  EXPECT_EQ(SampleStore(ToText(copy.Folder() / "ssm.db")).Value("SELECT group_concat(cpu_temp) FROM ThermalData"),
            "53.0");
  Empty(copy);
  EXPECT_EQ(Take(copy), 1);
  EXPECT_EQ(Temperatures(), "51.0,52.0");
}

TEST_F(SampleCopyTest, ADatabaseThatIsNotThereGivesAnEmptyFolder) {
  const SampleCopy copy(folder_.Path() / "none.db");
  EXPECT_FALSE(copy.Trouble().has_value());
  EXPECT_TRUE(fs::is_empty(copy.Folder()));
  EXPECT_EQ(Take(copy), 0);
}

TEST_F(SampleCopyTest, AFileThatIsNoDatabaseIsTroubleAndGivesAnEmptyFolder) {
  WriteFile(folder_.Path() / "text.db", "This is no database, whatever its name says.");
  const SampleCopy copy(folder_.Path() / "text.db");
  ASSERT_TRUE(copy.Trouble().has_value());
  EXPECT_THAT(*copy.Trouble(), AllOf(HasSubstr("text.db"), HasSubstr("not a database")));
  EXPECT_FALSE(fs::exists(copy.Folder() / "ssm.db"));
}

TEST_F(SampleCopyTest, TheFolderIsGoneWithTheCopy) {
  fs::path folder;
  {
    const SampleCopy copy(file_);
    folder = copy.Folder();
    EXPECT_TRUE(fs::exists(folder));
  }
  EXPECT_FALSE(fs::exists(folder));
}

TEST_F(SampleCopyTest, NothingIsWrittenBesideTheDatabase) {
  const std::set<std::string> before = FilesIn(folder_.Path());
  const SampleCopy copy(file_);
  EXPECT_EQ(FilesIn(folder_.Path()), before);
}

// A database whose writers keep a write-ahead log.
class LoggedSampleCopyTest : public SampleCopyTest {
 protected:
  LoggedSampleCopyTest() { store_.Execute("PRAGMA journal_mode = WAL"); }
};

TEST_F(LoggedSampleCopyTest, WhatIsInTheLogAloneIsCopied) {
  store_.AddThermal("2026-03-07T12:02:30.000Z", {{"cpu_temp", "53"}});
  const SampleCopy copy(file_);
  EXPECT_EQ(SampleStore(ToText(copy.Folder() / "ssm.db")).Value("SELECT count(*) FROM ThermalData"), "3");
  Empty(copy);
  EXPECT_EQ(Take(copy), 3);
}

TEST_F(LoggedSampleCopyTest, NothingIsWrittenBesideADatabaseThatNobodyHasOpen) {
  const fs::path quiet = folder_.Path() / "quiet";
  fs::create_directory(quiet);
  {
    SampleStore store = SampleStore::WithTables(ToText(quiet / "ssm.db"));
    store.Execute("PRAGMA journal_mode = WAL");
    store.AddThermal("2026-03-07T12:00:30.000Z");
  }
  ASSERT_THAT(FilesIn(quiet), ElementsAre("ssm.db"));
  const SampleCopy copy(quiet / "ssm.db");
  EXPECT_EQ(SampleStore(ToText(copy.Folder() / "ssm.db")).Value("SELECT count(*) FROM ThermalData"), "1");
  EXPECT_THAT(FilesIn(quiet), ElementsAre("ssm.db"));
}

TEST_F(LoggedSampleCopyTest, TheLogOfAWriterThatDiedIsRead) {
  store_.AddThermal("2026-03-07T12:02:30.000Z", {{"cpu_temp", "53"}});
  const fs::path left = folder_.Path() / "left";
  fs::create_directory(left);
  fs::copy_file(file_, left / "ssm.db");
  fs::copy_file(folder_.Path() / "ssm.db-wal", left / "ssm.db-wal");
  const SampleCopy copy(left / "ssm.db");
  EXPECT_EQ(SampleStore(ToText(copy.Folder() / "ssm.db")).Value("SELECT count(*) FROM ThermalData"), "3");
  EXPECT_THAT(FilesIn(left), ElementsAre("ssm.db", "ssm.db-wal"));
}

}  // namespace
}  // namespace zt::telemetry::host
