// Collections into an outbox whose files fail: wherever that is, each sample is in the database or in one record.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <string_view>

#include "host/failure.h"
#include "host/outbox/outbox.h"
#include "support/file_calls.h"
#include "support/sample_store_fixture.h"
#include "support/temporary_folder.h"
#include "tests/host/program_run.h"

namespace zt::telemetry::host {
namespace {

namespace fs = std::filesystem;
using zt::tests::FileCall;
using zt::tests::FileCallKind;
using zt::tests::FileCalls;
using zt::tests::SampleStore;

using SamplesByHour = std::map<std::string, int>;

// What a file's call can fail with, where nothing else is said: the answer of a drive that is gone.
int LostDriveCode(FileCallKind kind) {
  switch (kind) {
    case FileCallKind::kOpen:
      return SQLITE_CANTOPEN;
    case FileCallKind::kRead:
      return SQLITE_IOERR_READ;
    case FileCallKind::kLock:
    case FileCallKind::kSharedMemoryLock:
      return SQLITE_IOERR_LOCK;
    default:
      return SQLITE_IOERR;
  }
}

// Which calls fail, one test's each time: every so-many-th, or every one where ZT_CALLS is "every".
int Stride() {
  constexpr int kSample = 29;
  const char* const calls = std::getenv("ZT_CALLS");
  return calls != nullptr && std::string_view(calls) == "every" ? 1 : kSample;
}

// How the database of the samples is kept.
class FailingFilesTest : public testing::TestWithParam<const char*> {
 protected:
  FailingFilesTest() {
    SampleStore store = SampleStore::WithTables(Database());
    store.Execute(std::string("PRAGMA journal_mode = ") + GetParam());
    Add("2026-03-07T10:00:30.000Z");
    Collect();  // the outbox that the failures meet has a record
    fs::copy(Outbox(), folder_.Path() / "first outbox", fs::copy_options::recursive);
    Add("2026-03-07T10:30:30.000Z");
    Add("2026-03-07T11:00:30.000Z");
    Add("2026-03-07T11:01:30.000Z");
    fs::copy_file(PathOf(Database()), folder_.Path() / "first.db");
  }

  static fs::path PathOf(const std::string& text) { return {std::u8string(text.begin(), text.end())}; }
  std::string Database() const { return ToText(folder_.Path() / "ssm.db"); }
  fs::path Outbox() const { return folder_.Path() / "outbox"; }

  void Add(const std::string& time) {
    SampleStore store(Database());
    store.AddThermal(time);
    ++written_[time.substr(0, kHourLength)];
  }

  // Database and outbox as they were first.
  void PutBack() {
    for (const char* suffix : {"", "-journal", "-wal", "-shm"}) fs::remove(PathOf(Database() + suffix));
    fs::copy_file(folder_.Path() / "first.db", PathOf(Database()));
    fs::remove_all(Outbox());
    fs::copy(folder_.Path() / "first outbox", Outbox(), fs::copy_options::recursive);
  }

  ProgramRun Collect() const {
    return RunProgram({"collect", "--machine", "convertible-laptop", "--database-dir", ToText(folder_.Path()),
                       "--outbox", ToText(Outbox())});
  }

  SamplesByHour InRecords() const {
    SamplesByHour samples;
    const ProgramRun exported = RunProgram({"outbox", "export", "--outbox", ToText(Outbox())});
    EXPECT_EQ(exported.exit_code, kExitDone) << exported.err;
    for (const auto& line : JsonLinesOf(exported.out)) {
      const std::string id = line["record"].value("collectionId", "");
      if (id.ends_with("-TH")) samples[id.substr(0, kHourLength)] += line["record"]["samplePointsActual"].get<int>();
    }
    return samples;
  }

  std::vector<FileCallKind> Calls() {
    PutBack();
    std::vector<FileCallKind> kinds;
    const FileCalls files([&](const FileCall& call) {
      kinds.push_back(call.kind);
      return SQLITE_OK;
    });
    EXPECT_EQ(Collect().exit_code, kExitDone);
    return kinds;
  }

  // One that the failures disturb, then one without any: no sample may be gone, and none be told twice.
  void CollectWith(const FileCalls::Decision& decide) {
    PutBack();
    ProgramRun disturbed;
    {
      const FileCalls files(decide);
      disturbed = Collect();
      EXPECT_EQ(files.OpenFiles(), 0);
    }
    SCOPED_TRACE(disturbed.out + disturbed.err);
    const ProgramRun next = Collect();
    EXPECT_EQ(next.exit_code, kExitDone) << next.err;
    EXPECT_EQ(next.err, "");
    EXPECT_EQ(InRecords(), written_);
    EXPECT_EQ(SampleStore(Database()).Count("ThermalData"), 0);
  }

 private:
  static constexpr std::size_t kHourLength = 13;

  zt::tests::TemporaryFolder folder_;
  SamplesByHour written_;
};

TEST_P(FailingFilesTest, ADriveThatIsLostFromAnyCallOnLosesAndRepeatsNoSample) {
  const std::size_t calls = Calls().size();
  ASSERT_GT(calls, 100U);
  for (int number = 1; number <= static_cast<int>(calls); number += Stride()) {
    SCOPED_TRACE("from call " + std::to_string(number));
    CollectWith([&](const FileCall& call) { return call.number < number ? SQLITE_OK : LostDriveCode(call.kind); });
  }
  RecordProperty("calls", static_cast<int>(calls));
}

TEST_P(FailingFilesTest, OneCallThatFailsLosesAndRepeatsNoSample) {
  const int calls = static_cast<int>(Calls().size());
  ASSERT_GT(calls, 100);
  for (int number = 1; number <= calls; number += Stride()) {
    SCOPED_TRACE("call " + std::to_string(number));
    CollectWith([&](const FileCall& call) { return call.number == number ? LostDriveCode(call.kind) : SQLITE_OK; });
  }
}

TEST_P(FailingFilesTest, ADiskThatIsFullFromAnyWriteOnLosesAndRepeatsNoSample) {
  const std::vector<FileCallKind> calls = Calls();
  const auto writes = static_cast<int>(std::count(calls.begin(), calls.end(), FileCallKind::kWrite));
  constexpr int kMoreOften = 4;  // than calls of every kind
  for (int first = 1; first <= writes; first += std::max(1, Stride() / kMoreOften)) {
    SCOPED_TRACE("full from write " + std::to_string(first));
    int write = 0;
    CollectWith([&](const FileCall& call) {
      return call.kind == FileCallKind::kWrite && ++write >= first ? SQLITE_FULL : SQLITE_OK;
    });
  }
  EXPECT_GT(writes, 0);
}

INSTANTIATE_TEST_SUITE_P(Journals, FailingFilesTest, testing::Values("DELETE", "WAL"),
                         [](const auto& test) { return std::string(test.param); });

}  // namespace
}  // namespace zt::telemetry::host
