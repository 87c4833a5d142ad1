#include "fleet/forward/spool_forwarder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <system_error>
#include <thread>

#include "fleet/tests/in_memory_sink.h"
#include "host/failure.h"

namespace zt::telemetry::fleet {
namespace {

namespace fs = std::filesystem;

constexpr char kSpooledLine[] =
    R"({"handover":"send","type":"zt.telemetry.contract.upload.log.PcLogPerformanceSamplesAsCDM","record":)"
    R"({"collectionId":"5CG1_2026-03-07T12:00:00","localTime":"2026-03-07T12:00:00.000Z"}})";

// A folder of its own for each test: they run side by side.
fs::path NewFolder() {
  std::string name = testing::TempDir() + "zt-spool-XXXXXX";
  if (mkdtemp(name.data()) == nullptr) throw std::system_error(errno, std::generic_category(), name);
  return name;
}

constexpr int kMostTicks = 10'000;

class SpoolForwarderTest : public testing::Test {
 protected:
  SpoolForwarderTest() {
    spool_.folder = folder_;
    spool_.retry_seconds = 3600;
  }
  ~SpoolForwarderTest() override { fs::remove_all(folder_); }

  fs::path Put(const std::string& name, const std::string& text) const {
    std::ofstream(folder_ / name) << text;
    return folder_ / name;
  }

  // Runs once; everything is answered for as `is_delivered` says.
  bool Run(bool is_delivered, bool keeps_files = false) {
    sink_.on_tick = [this, is_delivered] { sink_.Answer(is_delivered); };
    return SpoolForwarder(spool_, keeps_files, maker_, sink_, counters_, log_).Run(/*once=*/true);
  }

  fs::path folder_ = NewFolder();
  SpoolSettings spool_;
  RecordMaker maker_{"1.0"};
  InMemorySink sink_;
  Counters counters_;
  std::ostringstream log_;
};

TEST_F(SpoolForwarderTest, RemovesAFileWhenItsRecordsAreDelivered) {
  const fs::path file = Put("a.jsonl", std::string(kSpooledLine) + "\n");
  EXPECT_TRUE(Run(/*is_delivered=*/true));
  EXPECT_EQ(sink_.sent.size(), 1U);
  EXPECT_FALSE(fs::exists(file));
}

TEST_F(SpoolForwarderTest, KeepsAFileUntilTheLastRecordIsAnsweredFor) {
  const fs::path file = Put("a.jsonl", std::string(kSpooledLine) + "\n" + kSpooledLine + "\n");
  sink_.on_tick = [&] {
    EXPECT_TRUE(fs::exists(file));
    if (sink_.ticks == 3) sink_.Answer(true);
  };
  EXPECT_TRUE(SpoolForwarder(spool_, false, maker_, sink_, counters_, log_).Run(/*once=*/true));
  EXPECT_FALSE(fs::exists(file));
  EXPECT_GE(sink_.ticks, 3);
}

TEST_F(SpoolForwarderTest, KeepsAFileOfWhichARecordWasNotDelivered) {
  const fs::path file = Put("a.jsonl", std::string(kSpooledLine) + "\n");
  EXPECT_FALSE(Run(/*is_delivered=*/false));
  EXPECT_TRUE(fs::exists(file));
  EXPECT_EQ(log_.str(), "zt-telemetry-forward: file a.jsonl is kept: 1 of its records were not delivered\n");
}

TEST_F(SpoolForwarderTest, TriesAKeptFileAgainWhenItsTimeHasCome) {
  spool_.retry_seconds = 1;
  const fs::path file = Put("a.jsonl", std::string(kSpooledLine) + "\n");
  sink_.on_tick = [&] {
    sink_.Answer(/*is_delivered=*/sink_.sent.size() > 1);
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
    sink_.stops = !fs::exists(file) || sink_.ticks > kMostTicks;
  };
  SpoolForwarder(spool_, false, maker_, sink_, counters_, log_).Run(/*once=*/false);
  EXPECT_EQ(sink_.sent.size(), 2U);
  EXPECT_FALSE(fs::exists(file));
}

TEST_F(SpoolForwarderTest, LeavesAKeptFileAloneUntilThen) {
  const fs::path file = Put("a.jsonl", std::string(kSpooledLine) + "\n");
  sink_.on_tick = [&] {
    sink_.Answer(/*is_delivered=*/sink_.sent.size() > 1);
    if (sink_.ticks == 3) Put("b.jsonl", std::string(kSpooledLine) + "\n");
    sink_.stops = sink_.sent.size() > 1 || sink_.ticks > kMostTicks;
  };
  SpoolForwarder(spool_, false, maker_, sink_, counters_, log_).Run(/*once=*/false);
  EXPECT_EQ(sink_.sent.size(), 2U);
  EXPECT_TRUE(fs::exists(file));
  EXPECT_FALSE(fs::exists(folder_ / "b.jsonl"));
}

TEST_F(SpoolForwarderTest, MovesAFileWhereDoneOnesGo) {
  spool_.done_folder = folder_ / "done";
  Put("a.jsonl", std::string(kSpooledLine) + "\n");
  EXPECT_TRUE(Run(/*is_delivered=*/true));
  EXPECT_FALSE(fs::exists(folder_ / "a.jsonl"));
  EXPECT_TRUE(fs::exists(folder_ / "done" / "a.jsonl"));
}

TEST_F(SpoolForwarderTest, RefusesAFolderForDoneFilesOnAnotherFileSystem) {
  spool_.done_folder = "/dev/shm/zt-done";
  EXPECT_THROW(Run(true), host::Failure);
  fs::remove("/dev/shm/zt-done");
}

TEST_F(SpoolForwarderTest, KeepsTheWholeFileOfWhichAPartIsInNoTopic) {
  Put("a.pb", std::string("\x05\x0A\x03") + "abc" + "\x7F" + "short");
  EXPECT_TRUE(Run(/*is_delivered=*/true));
  EXPECT_EQ(sink_.dead.size(), 1U);
  EXPECT_FALSE(fs::exists(folder_ / "a.pb"));
  EXPECT_TRUE(fs::exists(folder_ / "rejected" / "a.pb"));
}

TEST_F(SpoolForwarderTest, LeavesFilesAloneThatAreStillWritten) {
  Put(".a.jsonl", kSpooledLine);
  Put("b.jsonl.tmp", kSpooledLine);
  Put("c.partial", kSpooledLine);
  EXPECT_TRUE(Run(/*is_delivered=*/true));
  EXPECT_TRUE(sink_.sent.empty());
}

TEST_F(SpoolForwarderTest, ForwardsAFileAgainThatIsWrittenToWhileItIsForwarded) {
  const fs::path file = Put("a.jsonl", std::string(kSpooledLine) + "\n");
  sink_.on_tick = [&] {
    std::ofstream(file, std::ios::app) << kSpooledLine << "\n";
    sink_.Answer(true);
  };
  SpoolForwarder(spool_, false, maker_, sink_, counters_, log_).Run(/*once=*/true);
  EXPECT_TRUE(fs::exists(file));
}

TEST_F(SpoolForwarderTest, RemovesNothingWhenItOnlyTriesOut) {
  const fs::path file = Put("a.jsonl", std::string(kSpooledLine) + "\n");
  EXPECT_TRUE(Run(/*is_delivered=*/true, /*keeps_files=*/true));
  EXPECT_TRUE(fs::exists(file));
}

TEST_F(SpoolForwarderTest, SharesItsFolderWithNoOther) {
  const SpoolForwarder first(spool_, false, maker_, sink_, counters_, log_);
  try {
    const SpoolForwarder second(spool_, false, maker_, sink_, counters_, log_);
    FAIL();
  } catch (const host::Failure& failure) {
    EXPECT_EQ(std::string(failure.what()), "spool.folder " + folder_.string() + ": another process forwards from it");
  }
}

TEST_F(SpoolForwarderTest, ForwardsWhatComesWhileItRuns) {
  sink_.on_tick = [this] {
    sink_.Answer(true);
    if (sink_.ticks == 2) Put("late.jsonl", std::string(kSpooledLine) + "\n");
    if (sink_.ticks > 2 && !fs::exists(folder_ / "late.jsonl")) sink_.stops = true;
    ASSERT_LT(sink_.ticks, 200);
  };
  SpoolForwarder(spool_, false, maker_, sink_, counters_, log_).Run(/*once=*/false);
  EXPECT_EQ(sink_.sent.size(), 1U);
  EXPECT_EQ(counters_.files_done, 1);
}

}  // namespace
}  // namespace zt::telemetry::fleet
