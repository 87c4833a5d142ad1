#include "disk_fixture.h"

// Somebody else changes the file at each call that a cycle makes of it.
namespace zt::telemetry::collector::performancesamples {
namespace {

using tests::FileCall;
using tests::FileCallKind;
using tests::SampleStore;

class ChangingFileTest : public DiskTest, public testing::WithParamInterface<Keeping> {
 protected:
  ChangingFileTest() { MakeDatabase(GetParam()); }

  // Runs a cycle during whose call `number` the statement is run, which does not wait for a lock; returns whether it
  // was carried out, and in `first_lock` the number of the cycle's first lock.
  bool CycleWhile(int number, const std::string& statement) {
    PutBack();
    first_lock_ = 0;
    bool done = false;
    const tests::FileCalls files([&](const FileCall& call) {
      if (first_lock_ == 0 && call.kind == FileCallKind::kLock) first_lock_ = call.number;
      if (call.number == number) {
        // Opened here, so that what SQLite waits for on its behalf takes no time either.
        const SampleStore writer(File());
        done = sqlite3_exec(writer.Handle(), statement.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
      }
      return SQLITE_OK;
    });
    Cycle();
    calls_ = files.Count();
    return done;
  }

  int first_lock_ = 0;
  int calls_ = 1;
};

TEST_P(ChangingFileTest, ASampleThatIsAddedMeanwhileIsSentOrStaysOrCameWhenItIsAllowedToBeLost) {
  int added = 0;
  int lost = 0;
  for (int number = 1; number <= calls_; ++number) {
    SCOPED_TRACE("call " + std::to_string(number));
    const bool done =
        CycleWhile(number, "INSERT INTO ThermalData(date_time, cpu_temp) VALUES('2026-03-07T11:02:30.000Z', 50)");
    const auto sent = static_cast<int>(SamplesOf(Thermal()));
    SampleStore store(File());
    EXPECT_EQ(store.Value("PRAGMA integrity_check"), "ok");
    const int left = store.Count("ThermalData");
    const int all = kThermalRows + (done ? 1 : 0);
    added += done ? 1 : 0;
    if (left == 0 || left == 1) {
      EXPECT_GE(sent, kThermalRows);
      EXPECT_LE(sent + left, all);
      if (sent + left < all) {
        ++lost;
        EXPECT_GE(number, first_lock_) << "lost, although it was there before the summary";
      }
    } else {
      EXPECT_EQ(left, all);
    }
  }
  EXPECT_GT(added, 0);
  RecordProperty("added", added);
  RecordProperty("lost", lost);
}

TEST_P(ChangingFileTest, FiguresThatAreChangedMeanwhileAreAllOldOrAllNew) {
  for (int number = 1; number <= calls_; ++number) {
    SCOPED_TRACE("call " + std::to_string(number));
    CycleWhile(number, "UPDATE ThermalData SET cpu_temp = 99, ext_sensor_temp = 88");
    for (const auto& record : Thermal()) {
      const auto processor = record.hw_info().cpus_info(0).temperature_sensors_info(0).temperature_celsius();
      const auto board = record.hw_info().system_board_info().temperature_sensors_info(0).temperature_celsius();
      EXPECT_TRUE((processor == 50 && board == 40) || (processor == 99 && board == 88)) << processor << ' ' << board;
    }
    EXPECT_EQ(SampleStore(File()).Value("PRAGMA integrity_check"), "ok");
  }
}

INSTANTIATE_TEST_SUITE_P(Kept, ChangingFileTest, testing::ValuesIn(kKeepings), NameOf);

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
