#include "disk_fixture.h"

// What a writer leaves behind that was ended in the middle: as it lay on the disk then.
namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::IsEmpty;
using testing::SizeIs;
using tests::SampleStore;

class DeadWriterTest : public StoredSamplesTest {
 protected:
  std::string WriterFile() const { return writers_folder_.File("ssm.db"); }

  SampleStore MakeWriter() { return SampleStore::WithTables(WriterFile()); }

  // A writer whose samples are in the log alone.
  SampleStore MakeLogWriter() {
    SampleStore writer = MakeWriter();
    writer.Execute("PRAGMA journal_mode=WAL");
    writer.Execute("PRAGMA wal_autocheckpoint=0");
    return writer;
  }

  // Takes what lies on the disk of a writer that is in the middle of its work.
  void Leave(std::initializer_list<const char*> files) {
    for (const char* file : files) {
      std::filesystem::copy_file(DiskPath(WriterFile() + file), DiskPath(File() + file));
    }
  }

  void CutOff(const char* file, std::uintmax_t bytes) {
    const auto path = DiskPath(File() + file);
    std::filesystem::resize_file(path, std::filesystem::file_size(path) - bytes);
  }

  void Change(const char* file, std::streamoff place) {
    std::fstream stream(DiskPath(File() + file), std::ios::binary | std::ios::in | std::ios::out);
    stream.seekg(place);
    const int byte = stream.get();
    stream.seekp(place);
    stream.put(static_cast<char>(byte ^ 0xFF));
  }

  static std::filesystem::path DiskPath(const std::string& utf8) { return std::u8string(utf8.begin(), utf8.end()); }

  // The next cycle sends so many thermal samples, and nothing is left behind.
  void ExpectSent(std::uint64_t samples) {
    Cycle();
    EXPECT_EQ(SamplesOf(Thermal()), samples);
    SampleStore store(File());
    EXPECT_EQ(store.Value("PRAGMA integrity_check"), "ok");
    EXPECT_EQ(store.Count("ThermalData"), 0);
    store.AddThermal("2026-03-07T12:00:30.000Z");
    store.Close();
    Cycle();
    EXPECT_EQ(SamplesOf(Thermal()), 1U);
  }

  tests::TemporaryFolder writers_folder_;
};

TEST_F(DeadWriterTest, SamplesInTheLogOfADeadWriterAreSent) {
  SampleStore writer = MakeLogWriter();
  writer.AddThermal("2026-03-07T10:00:30.000Z");
  writer.AddThermal("2026-03-07T10:01:30.000Z");
  Leave({"", "-wal"});
  ExpectSent(2);
}

TEST_F(DeadWriterTest, SoTheyAreBesideTheIndexOfTheLog) {
  SampleStore writer = MakeLogWriter();
  writer.AddThermal("2026-03-07T10:00:30.000Z");
  writer.AddThermal("2026-03-07T10:01:30.000Z");
  Leave({"", "-wal", "-shm"});
  ExpectSent(2);
}

TEST_F(DeadWriterTest, ALogThatEndsInTheMiddleOfASampleHasThoseBeforeIt) {
  SampleStore writer = MakeLogWriter();
  writer.AddThermal("2026-03-07T10:00:30.000Z");
  writer.AddThermal("2026-03-07T10:01:30.000Z");
  for (const std::uintmax_t missing : {1U, 100U, 4000U}) {
    SCOPED_TRACE(missing);
    Leave({"", "-wal", "-shm"});
    CutOff("-wal", missing);
    ExpectSent(1);
    for (const char* file : {"", "-wal", "-shm"}) std::filesystem::remove(DiskPath(File() + file));
  }
}

TEST_F(DeadWriterTest, ALogWhoseLastPageIsTornHasTheSamplesBeforeIt) {
  SampleStore writer = MakeLogWriter();
  writer.AddThermal("2026-03-07T10:00:30.000Z");
  writer.AddThermal("2026-03-07T10:01:30.000Z");
  Leave({"", "-wal"});
  Change("-wal", static_cast<std::streamoff>(std::filesystem::file_size(DiskPath(File() + "-wal"))) - 10);
  ExpectSent(1);
}

TEST_F(DeadWriterTest, ALogWithoutAReadableBeginningHasNothing) {
  SampleStore writer = MakeLogWriter();
  writer.Execute("PRAGMA wal_checkpoint(TRUNCATE)");
  writer.AddThermal("2026-03-07T10:00:30.000Z");
  Leave({"", "-wal"});
  Change("-wal", 20);
  Cycle();
  EXPECT_THAT(sink_->sent, IsEmpty());
  EXPECT_EQ(SampleStore(File()).Value("PRAGMA integrity_check"), "ok");
}

TEST_F(DeadWriterTest, ATransactionThatIsHalfInTheLogIsNotSent) {
  SampleStore writer = MakeLogWriter();
  writer.AddThermal("2026-03-07T10:00:30.000Z");
  writer.Execute("PRAGMA cache_size=1");
  writer.Execute("BEGIN");
  const auto before = std::filesystem::file_size(DiskPath(WriterFile() + "-wal"));
  for (int i = 0; i < 500; ++i) writer.AddThermal("2026-03-07T11:00:30.000Z");
  ASSERT_GT(std::filesystem::file_size(DiskPath(WriterFile() + "-wal")), before) << "none of it is in the log";
  Leave({"", "-wal"});
  ExpectSent(1);
}

// A writer that has written half of its changes into the database itself, and what was there before into the journal.
class HotJournalTest : public DeadWriterTest {
 protected:
  HotJournalTest() {
    writer_.Execute("BEGIN");
    for (int i = 0; i < 500; ++i) writer_.AddThermal("2026-03-07T10:00:30.000Z");
    writer_.Execute("COMMIT");
    const std::string before = Whole("");
    writer_.Execute("PRAGMA cache_size=1");
    writer_.Execute("BEGIN");
    writer_.Execute("UPDATE ThermalData SET cpu_temp = 99, date_time = '2026-03-07T11:00:30.000Z'");
    EXPECT_NE(Whole(""), before) << "nothing of it is in the database";
  }

  std::string Whole(const char* file) const {
    std::ifstream stream(DiskPath(WriterFile() + file), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  }

  SampleStore writer_ = MakeWriter();
};

TEST_F(HotJournalTest, WhatADeadWriterHasHalfChangedIsSentAsItWasBefore) {
  Leave({"", "-journal"});
  Cycle();
  ASSERT_THAT(Thermal(), SizeIs(1));
  EXPECT_EQ(Thermal()[0].collection_id(), "2026-03-07T10H_ZT12345678-TH");
  EXPECT_EQ(Thermal()[0].sample_points_actual(), 500U);
  EXPECT_EQ(Thermal()[0].hw_info().cpus_info(0).temperature_sensors_info(0).temperature_celsius(), 50U);
  EXPECT_EQ(SampleStore(File()).Count("ThermalData"), 0);
}

TEST_F(HotJournalTest, NothingIsSentOrDeletedWhileItCannotBeTakenBack) {
  Leave({"", "-journal"});
  {
    const tests::FileCalls files(
        [](const tests::FileCall& call) { return call.kind == tests::FileCallKind::kWrite ? SQLITE_FULL : SQLITE_OK; });
    Cycle();
  }
  EXPECT_THAT(sink_->sent, IsEmpty());
  Cycle();
  EXPECT_EQ(SamplesOf(Thermal()), 500U);
}

TEST_F(HotJournalTest, AJournalOfNothingDoesNotDisturb) {
  writer_.Execute("ROLLBACK");
  Leave({""});
  std::ofstream(DiskPath(File() + "-journal"), std::ios::binary) << std::string(600, '?');
  Cycle();
  EXPECT_EQ(SamplesOf(Thermal()), 500U);
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
