#include "host/outbox/outbox.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "host/failure.h"
#include "host/outbox/kept_record.h"
#include "performance_samples_upload.pb.h"
#include "support/file_calls.h"
#include "support/temporary_folder.h"
#include "tests/host/program_run.h"

namespace zt::telemetry::host {
namespace {

namespace fs = std::filesystem;
using contract::upload::log::PcLogPerformanceSamplesAsCDM;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

// A record of these samples.
HandOver Hour(const std::string& id, const std::string& samples = "some", std::uint32_t count = 60) {
  PcLogPerformanceSamplesAsCDM record;
  record.set_collection_id(id);
  record.set_local_time("2026-03-07T13:05:00.000Z");
  record.set_sample_points_actual(count);
  HandOver hand_over = Kept(kSendKind, record);
  hand_over.samples = samples;
  return hand_over;
}

class OutboxTest : public testing::Test {
 protected:
  std::vector<KeptHandOver> Listed(bool all = true) const {
    std::vector<KeptHandOver> kept;
    outbox_.ForEach(all, [&](const KeptHandOver& one) { kept.push_back(one); });
    return kept;
  }
  std::vector<Standing> Standings() const {
    std::vector<Standing> standings;
    for (const KeptHandOver& kept : Listed()) standings.push_back(kept.standing);
    return standings;
  }

  zt::tests::TemporaryFolder folder_;
  Outbox outbox_{folder_.Path() / "outbox"};
};

TEST_F(OutboxTest, KeepsWhatACollectionHandsOverInItsOrder) {
  outbox_.Keep({Hour("A-TH"), KeptText("text"), Hour("B-NE")}, std::nullopt);
  const std::vector<KeptHandOver> kept = Listed();
  ASSERT_THAT(kept, SizeIs(3));
  EXPECT_EQ(kept[0].hand_over.collection_id, "A-TH");
  EXPECT_EQ(kept[0].hand_over.local_time, "2026-03-07T13:05:00.000Z");
  EXPECT_EQ(kept[0].hand_over.message, "zt.telemetry.contract.upload.log.PcLogPerformanceSamplesAsCDM");
  EXPECT_EQ(kept[1].hand_over.message, "text");
  EXPECT_EQ(kept[1].hand_over.bytes, "text");
  EXPECT_EQ(kept[2].hand_over.collection_id, "B-NE");
}

TEST_F(OutboxTest, ARecordIsTheSameWhenItIsReadBack) {
  outbox_.Keep({Hour("A-TH", "some", 42)}, std::nullopt);
  const auto record = RecordOf(Listed().at(0).hand_over);
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(dynamic_cast<const PcLogPerformanceSamplesAsCDM&>(*record).sample_points_actual(), 42U);
}

TEST_F(OutboxTest, OutlivesTheProgram) {
  const fs::path folder = folder_.Path() / "other";
  Outbox(folder).Keep({Hour("A-TH")}, TakenSamples{"x.taken.db", "/ssm.db"});
  const Outbox again = Outbox::Existing(folder);
  EXPECT_EQ(again.Figures().current, 1);
  ASSERT_THAT(again.Taken(), SizeIs(1));
  EXPECT_EQ(again.Taken()[0].database, "/ssm.db");
}

TEST_F(OutboxTest, AnHourThatIsSentAgainReplacesTheOneThatWasNotDelivered) {
  outbox_.Keep({Hour("A-TH")}, std::nullopt);
  outbox_.Keep({Hour("A-TH")}, std::nullopt);
  EXPECT_THAT(Standings(), ElementsAre(Standing::kReplaced, Standing::kCurrent));
  EXPECT_THAT(Listed(/*all=*/false), SizeIs(1));
}

TEST_F(OutboxTest, AnHourThatIsSentAgainAfterItsDeliveryIsKeptOnceMoreAndMarked) {
  outbox_.Keep({Hour("A-TH")}, std::nullopt);
  outbox_.CountDeliveries({1});
  outbox_.Keep({Hour("A-TH")}, std::nullopt);
  EXPECT_THAT(Standings(), ElementsAre(Standing::kCurrent, Standing::kAgain));
}

TEST_F(OutboxTest, TheTwoHalvesOfAnHourBothCount) {
  outbox_.Keep({Hour("A-TH", "first half")}, std::nullopt);
  outbox_.Keep({Hour("A-TH", "second half")}, std::nullopt);
  EXPECT_THAT(Standings(), ElementsAre(Standing::kCurrent, Standing::kCurrent));
}

TEST_F(OutboxTest, WhatIsMadeOfNoSamplesIsNeverTheSame) {
  outbox_.Keep({KeptText("text")}, std::nullopt);
  outbox_.Keep({KeptText("text")}, std::nullopt);
  EXPECT_THAT(Standings(), ElementsAre(Standing::kCurrent, Standing::kCurrent));
}

TEST_F(OutboxTest, AnOutboxThatIsNotThereIsWrongUsage) {
  try {
    Outbox::Existing(folder_.Path());
    FAIL() << "there is no outbox";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.ExitCode(), kExitWrongUsage);
    EXPECT_THAT(failure.what(), HasSubstr("there is no outbox"));
  }
}

TEST_F(OutboxTest, ADamagedFileIsSetAsideAsItIsAndANewOneBegun) {
  const fs::path folder = folder_.Path() / "damaged";
  fs::create_directory(folder);
  WriteFile(folder / "outbox.db", "no database, but perhaps records");
  Outbox outbox(folder);
  ASSERT_TRUE(outbox.SetAside().has_value());
  EXPECT_EQ(ReadFile(*outbox.SetAside()), "no database, but perhaps records");
  outbox.Keep({Hour("A-TH")}, std::nullopt);
  EXPECT_EQ(outbox.Figures().current, 1);
}

// A drive that does not answer for once looks like a damaged file.
TEST_F(OutboxTest, WhatCannotBeReadForOnceIsNotDamaged) {
  const fs::path folder = folder_.Path() / "sound";
  Outbox(folder).Keep({Hour("A-TH")}, std::nullopt);
  int reads = 0;
  for (int failing = 0; failing <= reads; ++failing) {
    SCOPED_TRACE("read " + std::to_string(failing));
    int read = 0;
    const zt::tests::FileCalls files([&](const zt::tests::FileCall& call) {
      return call.kind == zt::tests::FileCallKind::kRead && ++read == failing ? SQLITE_IOERR_READ : SQLITE_OK;
    });
    try {
      EXPECT_EQ(Outbox(folder).SetAside(), std::nullopt);
    } catch (const DatabaseError& failure) {
      EXPECT_EQ(failure.Code(), SQLITE_IOERR) << failure.what();
    }
    if (failing == 0) reads = read;
  }
  EXPECT_GT(reads, 5);
  EXPECT_EQ(Outbox(folder).Figures().current, 1);
}

TEST_F(OutboxTest, ALayoutOfANewerVersionIsRefusedAndLeftAlone) {
  const fs::path folder = folder_.Path() / "newer";
  Outbox{folder};
  DatabaseFile(folder / "outbox.db", DatabaseFile::Access::kWrite, 0).Run("PRAGMA user_version = 99");
  EXPECT_THROW(Outbox{folder}, Failure);
  EXPECT_EQ(DatabaseFile(folder / "outbox.db", DatabaseFile::Access::kRead, 0).Number("PRAGMA user_version"), 99);
}

TEST_F(OutboxTest, PruningToASizeTakesWhatWasDeliveredFirst) {
  for (int i = 0; i < 10; ++i)
    outbox_.Keep({{kSendKind, kTextMessage, "", "", std::string(100'000, 'x')}}, std::nullopt);
  outbox_.CountDeliveries({8, 9, 10});
  const Pruned pruned = outbox_.Prune({outbox_.Figures().bytes - 250'000, std::chrono::days(90)});
  EXPECT_EQ(pruned.delivered, 3);
  EXPECT_EQ(pruned.undelivered, 0);
  EXPECT_EQ(Listed().size(), 7U);
}

TEST_F(OutboxTest, NoMoreIsDroppedThanTheSizeAsksFor) {
  for (int i = 0; i < 10; ++i)
    outbox_.Keep({{kSendKind, kTextMessage, "", "", std::string(100'000, 'x')}}, std::nullopt);
  EXPECT_EQ(outbox_.Prune({outbox_.Figures().bytes - 250'000, std::chrono::days(90)}).undelivered, 3);
  EXPECT_EQ(Listed().front().id, 4);
}

TEST_F(OutboxTest, WhatWasNotDeliveredIsDroppedForTheSizeAloneAndCounted) {
  for (int i = 0; i < 3; ++i)
    outbox_.Keep({{kSendKind, kTextMessage, "", "", std::string(100'000, 'x')}}, std::nullopt);
  EXPECT_EQ(outbox_.Prune({1'000'000, std::chrono::days(0)}).undelivered, 0);
  EXPECT_EQ(outbox_.Prune({0, std::chrono::days(90)}).undelivered, 3);
  EXPECT_EQ(outbox_.Figures().dropped, 3);
}

TEST_F(OutboxTest, NoMoreIsDroppedForTheSizeThanHasToBe) {
  outbox_.Keep({{kSendKind, kTextMessage, "", "", std::string(1'000'000, 'x')}, Hour("A-TH"), Hour("B-TH")},
               std::nullopt);
  EXPECT_EQ(outbox_.Prune({500'000, std::chrono::days(90)}).undelivered, 1);
  EXPECT_EQ(Listed().size(), 2U);
}

TEST_F(OutboxTest, WhatWasDeliveredGoesWhenItIsTooOld) {
  outbox_.Keep({Hour("A-TH"), Hour("B-TH")}, std::nullopt);
  outbox_.CountDeliveries({1});
  EXPECT_EQ(outbox_.Prune({1'000'000, std::chrono::days(-1)}).delivered, 1);
  EXPECT_EQ(Listed().at(0).hand_over.collection_id, "B-TH");
}

TEST_F(OutboxTest, LongPruningTellsWhatHasGoneSoFar) {
  for (int i = 0; i < 30; ++i)
    outbox_.Keep(std::vector<HandOver>(100, {kSendKind, kTextMessage, "", "", std::string(1000, 'x')}), std::nullopt);
  std::vector<std::int64_t> told;
  const Pruned pruned =
      outbox_.Prune({0, std::chrono::days(90)}, [&](const Pruned& so_far) { told.push_back(so_far.undelivered); });
  EXPECT_EQ(pruned.undelivered, 3000);
  ASSERT_GE(told.size(), 3U);
  EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
  EXPECT_LT(told.front(), told.back());
}

TEST_F(OutboxTest, NewestFirstGoesBackUntilItIsToldToStop) {
  outbox_.Keep({Hour("A-TH"), Hour("B-TH"), Hour("C-TH")}, std::nullopt);
  std::vector<std::string> seen;
  outbox_.ForEachNewestFirst([&](const KeptHandOver& kept) {
    seen.push_back(kept.hand_over.collection_id);
    return seen.size() < 2;
  });
  EXPECT_EQ(seen, (std::vector<std::string>{"C-TH", "B-TH"}));
  EXPECT_EQ(outbox_.LastId(), 3);
}

TEST_F(OutboxTest, TwoCollectionsIntoOneOutboxWaitForEachOther) {
  const CollectingLock lock(outbox_.Folder(), 0);
  EXPECT_THROW(CollectingLock(outbox_.Folder(), 0), Failure);
}

}  // namespace
}  // namespace zt::telemetry::host
