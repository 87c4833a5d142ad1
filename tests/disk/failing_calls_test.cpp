#include <algorithm>
#include <array>
#include <span>

#include "agreed_calls.h"
#include "disk_fixture.h"

// Every call that a cycle makes of its files fails, in every way that it can.
namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::IsSubsetOf;
using tests::FileCall;
using tests::FileCallKind;
using tests::SampleStore;

constexpr int kOpenCodes[] = {SQLITE_CANTOPEN, SQLITE_IOERR};
constexpr int kDeleteCodes[] = {SQLITE_IOERR_DELETE};
constexpr int kAccessCodes[] = {SQLITE_IOERR_ACCESS};
constexpr int kReadCodes[] = {SQLITE_IOERR_READ, SQLITE_IOERR_SHORT_READ};
constexpr int kWriteCodes[] = {SQLITE_IOERR_WRITE, SQLITE_FULL};
constexpr int kTruncateCodes[] = {SQLITE_IOERR_TRUNCATE};
constexpr int kSyncCodes[] = {SQLITE_IOERR_FSYNC};
constexpr int kFileSizeCodes[] = {SQLITE_IOERR_FSTAT};
constexpr int kLockCodes[] = {SQLITE_BUSY, SQLITE_IOERR_LOCK};
constexpr int kUnlockCodes[] = {SQLITE_IOERR_UNLOCK};
constexpr int kReservedCodes[] = {SQLITE_IOERR_CHECKRESERVEDLOCK};
constexpr int kMapCodes[] = {SQLITE_IOERR_SHMMAP, SQLITE_READONLY_CANTINIT};
constexpr int kSharedLockCodes[] = {SQLITE_BUSY, SQLITE_IOERR_SHMLOCK};

// By the number of the kind.
constexpr std::array<std::span<const int>, 13> kCodes = {
    kOpenCodes,     kDeleteCodes, kAccessCodes, kReadCodes,     kWriteCodes, kTruncateCodes,  kSyncCodes,
    kFileSizeCodes, kLockCodes,   kUnlockCodes, kReservedCodes, kMapCodes,   kSharedLockCodes};

std::span<const int> CodesOf(FileCallKind kind) {
  return kCodes.at(static_cast<std::size_t>(kind));
}

class FailingCallsTest : public DiskTest, public testing::WithParamInterface<Keeping> {
 protected:
  FailingCallsTest() { MakeDatabase(GetParam()); }

  // The calls of a cycle that nothing disturbs.
  std::vector<FileCallKind> Calls() {
    std::vector<FileCallKind> kinds;
    PutBack();
    const tests::FileCalls files([&](const FileCall& call) {
      kinds.push_back(call.kind);
      return SQLITE_OK;
    });
    Cycle();
    return kinds;
  }

  // What SQLite holds while nothing is open: a connection of the host's takes more as it goes on.
  sqlite3_int64 MemoryAtRest() {
    host_.reset();
    return sqlite3_memory_used();
  }

  void CycleWith(const tests::FileCalls::Decision& decide) {
    const sqlite3_int64 memory = MemoryAtRest();
    PutBack();
    {
      const tests::FileCalls files(decide);
      Cycle();
      EXPECT_EQ(files.OpenFiles(), 0);
    }
    const std::vector<std::string> sent = Texts();
    EXPECT_THAT(sent, IsSubsetOf(undisturbed_));
    const std::vector<std::string> rest = ExpectRowsAccountedFor(sent);
    Cycle();
    EXPECT_EQ(Texts(), rest);
    Cycle();
    EXPECT_EQ(Texts().size(), 0U);
    EXPECT_EQ(MemoryAtRest(), memory);
  }
};

TEST_P(FailingCallsTest, OneCallThatFailsLosesNoRow) {
  const std::vector<FileCallKind> calls = Calls();
  ASSERT_GT(calls.size(), 50U);
  int cycles = 0;
  for (int number = 1; number <= static_cast<int>(calls.size()); ++number) {
    for (const int code : CodesOf(calls[static_cast<std::size_t>(number - 1)])) {
      SCOPED_TRACE("call " + std::to_string(number) + " fails with " + std::to_string(code));
      CycleWith([&](const FileCall& call) { return call.number == number ? code : SQLITE_OK; });
      ++cycles;
    }
  }
  tests::CountsByKind counts = {{"cycles", cycles}};
  for (const FileCallKind kind : calls) ++counts[NameOf(kind)];
  tests::ExpectAgreed(std::string("failing, ") + GetParam().name, counts);
}

// A disk that is gone: all calls fail from one on.
TEST_P(FailingCallsTest, CallsThatAllFailFromOneOnLoseNoRow) {
  const int calls = static_cast<int>(Calls().size());
  ASSERT_GT(calls, 50);
  for (int number = 1; number <= calls; ++number) {
    SCOPED_TRACE("from call " + std::to_string(number));
    CycleWith([&](const FileCall& call) { return call.number < number ? SQLITE_OK : CodesOf(call.kind).front(); });
  }
}

// A disk that is full: from one on, all writes fail.
TEST_P(FailingCallsTest, ADiskThatIsFullFromOneWriteOnLosesNoRow) {
  const std::vector<FileCallKind> calls = Calls();
  ASSERT_GT(std::count(calls.begin(), calls.end(), FileCallKind::kWrite), 5);
  for (int number = 1; number <= static_cast<int>(calls.size()); ++number) {
    if (calls[static_cast<std::size_t>(number - 1)] != FileCallKind::kWrite) continue;
    SCOPED_TRACE("full from call " + std::to_string(number));
    CycleWith([&](const FileCall& call) {
      return call.number >= number && call.kind == FileCallKind::kWrite ? SQLITE_FULL : SQLITE_OK;
    });
  }
}

// A summary that cannot be run in parts, and whose rows do not fit into memory: when it breaks off it has given some.
class BrokenOffSummaryTest : public DiskTest {
 protected:
  static constexpr int kHours = 100;

  BrokenOffSummaryTest() {
    auto store = MakeStore();
    store.Execute("DROP TABLE ThermalData");
    store.Execute(
        "CREATE VIEW ThermalData AS SELECT *, NULL AS cpu_temp, NULL AS ext_sensor_temp, NULL AS loc_sensor_temp,"
        " NULL AS fan1_current_tach_speed, NULL AS fan1_target_tach_speed, NULL AS fan1_speed_step,"
        " NULL AS fan2_current_tach_speed, NULL AS fan2_target_tach_speed, NULL AS fan2_speed_step"
        " FROM NetworkData WHERE 0");
    store.Execute("BEGIN");
    for (int hour = 0; hour < kHours; ++hour) {
      store.AddNetwork("2026-03-07T10:00:30.000Z", {{"network_trust_level", "printf('%040000d', 1)"}});
    }
    store.Execute("UPDATE NetworkData SET date_time = strftime('%Y-%m-%dT%H:%M:%S', date_time, '+' || id || ' hours')");
    store.Execute("COMMIT");
  }

  // Reads of a cycle of which one, from 1 on, may fail; returns how many there were.
  int CycleWithFailingRead(int number) {
    int reads = 0;
    const tests::FileCalls files([&](const FileCall& call) {
      return call.kind == FileCallKind::kRead && ++reads == number ? SQLITE_IOERR_READ : SQLITE_OK;
    });
    Cycle();
    return reads;
  }
};

TEST_F(BrokenOffSummaryTest, IsNotSentInPart) {
  const std::filesystem::path beginning = folder_.Path() / "beginning";
  std::filesystem::copy_file(Path(File()), beginning);
  const int reads = CycleWithFailingRead(0);
  ASSERT_THAT(Network(), testing::SizeIs(kHours));
  int broken_off = 0;
  constexpr int kTries = 12;
  for (int i = 1; i <= kTries; ++i) {
    CopyOver(beginning, Path(File()));
    SCOPED_TRACE("read " + std::to_string(reads * i / kTries));
    CycleWithFailingRead(reads * i / kTries);
    const auto sent = static_cast<int>(Network().size());
    EXPECT_TRUE(sent == 0 || sent == kHours) << sent;
    const int left = SampleStore(File()).Count("NetworkData");
    EXPECT_TRUE(left == kHours || (left == 0 && sent == kHours)) << left;
    broken_off += sent == 0 ? 1 : 0;
  }
  EXPECT_GT(broken_off, 0);
}

INSTANTIATE_TEST_SUITE_P(Kept, FailingCallsTest, testing::ValuesIn(kKeepings), NameOf);

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
