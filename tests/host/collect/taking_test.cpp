// Samples and the records of an outbox, wherever the program ends.
#include "host/collect/taking.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "host/failure.h"
#include "host/outbox/kept_record.h"
#include "performance_samples_upload.pb.h"
#include "support/sample_store_fixture.h"
#include "support/temporary_folder.h"
#include "tests/host/program_run.h"

namespace zt::telemetry::host {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using zt::tests::SampleStore;

class TakingTest : public testing::Test {
 protected:
  TakingTest() {
    command_.takes_samples = true;
    command_.outbox = folder_.Path() / "outbox";
    store_.AddThermal("2026-03-07T12:00:30.000Z");
    store_.AddThermal("2026-03-07T12:01:30.000Z");
  }

  // A collection up to where its records are kept.
  void Keep(Taking& taking) {
    SampleStore(ToText(taking.Folder() / "ssm.db")).Execute("DELETE FROM ThermalData");
    taking.KeepInOutbox({KeptText("record")}, out_);
  }

  std::string Left() { return store_.Value("SELECT count(*) FROM ThermalData"); }
  Outbox Records() const { return Outbox::Existing(*command_.outbox); }

  zt::tests::TemporaryFolder folder_;
  const fs::path file_ = folder_.Path() / "ssm.db";
  SampleStore store_ = SampleStore::WithTables(ToText(file_));
  CollectCommand command_;
  std::ostringstream out_;
  std::ostringstream err_;
};

TEST_F(TakingTest, DeletesTheSamplesWhoseRecordsAreKept) {
  Taking taking(command_, file_, err_);
  Keep(taking);
  EXPECT_EQ(Left(), "2");
  EXPECT_TRUE(taking.Take());
  EXPECT_EQ(Left(), "0");
  EXPECT_EQ(Records().Figures().current, 1);
  EXPECT_THAT(Records().Taken(), IsEmpty());
}

TEST_F(TakingTest, AnHourWhoseRowsTheCollectionCouldNotDeleteIsTakenWithItsRecord) {
  contract::upload::log::PcLogPerformanceSamplesAsCDM hour;
  hour.set_collection_id("2026-03-07T12H_ZT12345678-TH");
  store_.AddThermal("2026-03-07T13:00:30.000Z");
  Taking taking(command_, file_, err_);
  taking.KeepInOutbox({Kept(kSendKind, hour)}, out_);
  EXPECT_TRUE(taking.Take());
  EXPECT_EQ(store_.Value("SELECT group_concat(date_time) FROM ThermalData"), "2026-03-07T13:00:30.000Z");
}

TEST_F(TakingTest, AProgramThatEndedBeforeTheRecordsWereKeptHasTakenNothing) {
  {
    const Taking taking(command_, file_, err_);
    SampleStore(ToText(taking.Folder() / "ssm.db")).Execute("DELETE FROM ThermalData");
  }
  const Taking next(command_, file_, err_);
  EXPECT_EQ(SampleStore(ToText(next.Folder() / "ssm.db")).Value("SELECT count(*) FROM ThermalData"), "2");
}

TEST_F(TakingTest, AProgramThatEndedBeforeItDeletedIsFinishedByTheNext) {
  {
    Taking taking(command_, file_, err_);
    Keep(taking);
  }
  EXPECT_EQ(Left(), "2");
  const Taking next(command_, file_, err_);
  EXPECT_EQ(Left(), "0");
  EXPECT_EQ(SampleStore(ToText(next.Folder() / "ssm.db")).Value("SELECT count(*) FROM ThermalData"), "0");
  EXPECT_THAT(Records().Taken(), IsEmpty());
}

TEST_F(TakingTest, WhatCannotBeDeletedYetIsInNoSecondRecord) {
  command_.takes_samples = true;
  {
    Taking taking(command_, file_, err_);
    Keep(taking);
    store_.Execute("BEGIN IMMEDIATE");
    EXPECT_FALSE(taking.Take());
  }
  EXPECT_THAT(err_.str(), AllOf(HasSubstr("cannot be deleted"), HasSubstr("the next collection does it")));
  const Taking next(command_, file_, err_);
  EXPECT_EQ(SampleStore(ToText(next.Folder() / "ssm.db")).Value("SELECT count(*) FROM ThermalData"), "0");
  EXPECT_THAT(Records().Taken(), SizeIs(1));
  store_.Execute("COMMIT");
}

TEST_F(TakingTest, SamplesOfAnotherDatabaseAreFinishedThere) {
  {
    Taking taking(command_, file_, err_);
    Keep(taking);
  }
  const fs::path other = folder_.Path() / "other.db";
  SampleStore second = SampleStore::WithTables(ToText(other));
  second.AddThermal("2026-03-07T12:00:30.000Z");
  const Taking next(command_, other, err_);
  EXPECT_EQ(Left(), "0");
  EXPECT_EQ(second.Value("SELECT count(*) FROM ThermalData"), "1");
}

TEST_F(TakingTest, FilesThatACollectionHasLeftAreRemoved) {
  { const Taking first(command_, file_, err_); }
  WriteFile(*command_.outbox / "left.taken.db", "");
  const Taking taking(command_, file_, err_);
  EXPECT_FALSE(fs::exists(*command_.outbox / "left.taken.db"));
}

TEST_F(TakingTest, NothingOfACollectionIsLeftBesideTheOutbox) {
  {
    Taking taking(command_, file_, err_);
    Keep(taking);
    EXPECT_TRUE(taking.Take());
  }
  for (const auto& entry : fs::directory_iterator(*command_.outbox)) {
    EXPECT_THAT(ToText(entry.path()), testing::Not(HasSubstr("taken")));
  }
}

// Half an hour's record may say the very same as that of the other half.
TEST_F(TakingTest, TheFirstHalfOfAnHourStaysWhenTheSecondIsCollected) {
  const std::vector<std::string> collect = {"collect",
                                            "--machine",
                                            "convertible-laptop",
                                            "--database-dir",
                                            ToText(folder_.Path()),
                                            "--outbox",
                                            ToText(*command_.outbox)};
  EXPECT_EQ(RunProgram(collect).exit_code, kExitDone);
  store_.AddThermal("2026-03-07T12:30:30.000Z");
  store_.AddThermal("2026-03-07T12:31:30.000Z");
  EXPECT_EQ(RunProgram(collect).exit_code, kExitDone);
  int samples = 0;
  const ProgramRun exported = RunProgram({"outbox", "export", "--outbox", ToText(*command_.outbox)});
  for (const auto& line : JsonLinesOf(exported.out)) {
    if (line["record"].value("collectionId", "").ends_with("-TH"))
      samples += line["record"]["samplePointsActual"].get<int>();
  }
  EXPECT_EQ(samples, 4);
}

TEST_F(TakingTest, AnHourOfTheVerySamplesReplacesTheOneThatWasNotDelivered) {
  const std::string folder = ToText(folder_.Path());
  const std::vector<std::string> collect = {"collect", "--machine", "convertible-laptop",    "--database-dir",
                                            folder,    "--outbox",  ToText(*command_.outbox)};
  fs::copy_file(file_, folder_.Path() / "saved.db");
  EXPECT_EQ(RunProgram(collect).exit_code, kExitDone);
  SampleStore saved(ToText(folder_.Path() / "saved.db"));
  store_.Execute("ATTACH '" + ToText(folder_.Path() / "saved.db") + "' AS saved");
  store_.Execute("INSERT INTO ThermalData SELECT * FROM saved.ThermalData");  // as from a backup
  EXPECT_EQ(RunProgram(collect).exit_code, kExitDone);
  EXPECT_EQ(Records().Figures().replaced, 1);
}

}  // namespace
}  // namespace zt::telemetry::host
