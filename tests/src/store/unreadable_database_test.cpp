// Databases that cannot be read, or not like any other: what the collector's host may leave on a machine.
#include <filesystem>
#include <fstream>

#include "store_test.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::IsEmpty;

class UnreadableDatabaseTest : public StoreTest {
 protected:
  std::filesystem::path File() const { return folder_.Path() / "ssm.db"; }

  void Write(const std::string& content) const { std::ofstream(File(), std::ios::binary) << content; }
  std::string Read() const {
    std::ifstream file(File(), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  void ExpectNothingToSummarise() const {
    EXPECT_THAT(Query(), IsEmpty());
    EXPECT_FALSE(SampleTableHasRows(path_, "ThermalData"));
    EXPECT_NO_THROW(DeleteSampleRows(path_, {"ThermalData", "NetworkData"}));
  }

  /// A closed database of `minutes` samples in both tables.
  void FillStore(int minutes) const {
    tests::SampleStore store = NewStore();
    store.Execute("BEGIN");
    for (int i = 0; i < minutes; ++i) {
      const std::string minute = std::to_string(i % 60 + 100).substr(1);
      store.AddThermal("2026-03-07T12:" + minute + ":00.000Z");
      store.AddNetwork("2026-03-07T13:" + minute + ":00.000Z");
    }
    store.Execute("COMMIT");
  }
};

TEST_F(UnreadableDatabaseTest, AMissingFileHasNoRowsAndIsNotCreated) {
  ExpectNothingToSummarise();
  EXPECT_FALSE(std::filesystem::exists(File()));
}

TEST_F(UnreadableDatabaseTest, AMissingFolderHasNoRowsAndIsNotCreated) {
  const std::string path = folder_.File("none/ssm.db");
  EXPECT_THAT(Query(path), IsEmpty());
  EXPECT_FALSE(SampleTableHasRows(path, "ThermalData"));
  DeleteSampleRows(path, {"ThermalData"});
  EXPECT_FALSE(std::filesystem::exists(folder_.Path() / "none"));
}

TEST_F(UnreadableDatabaseTest, AnEmptyFileHasNoRowsAndStaysEmpty) {
  Write("");
  ExpectNothingToSummarise();
  EXPECT_EQ(std::filesystem::file_size(File()), 0U);
}

TEST_F(UnreadableDatabaseTest, AForeignFileHasNoRowsAndStaysAsItIs) {
  const std::string content(10000, 'x');
  Write(content);
  ExpectNothingToSummarise();
  EXPECT_EQ(Read(), content);
}

TEST_F(UnreadableDatabaseTest, AFolderInPlaceOfTheFileHasNoRows) {
  std::filesystem::create_directory(File());
  ExpectNothingToSummarise();
  EXPECT_TRUE(std::filesystem::is_directory(File()));
}

TEST_F(UnreadableDatabaseTest, ADatabaseWithoutTheTablesHasNoRows) {
  tests::SampleStore(path_).Execute("CREATE TABLE Other(a)");
  ExpectNothingToSummarise();
}

TEST_F(UnreadableDatabaseTest, OneMissingTableStopsTheQueryButNotTheCountOfTheOther) {
  tests::SampleStore store = NewStore();
  store.AddThermal("2026-03-07T12:00:30.000Z");
  store.Execute("DROP TABLE NetworkData");
  EXPECT_THAT(Query(), IsEmpty());
  EXPECT_TRUE(SampleTableHasRows(path_, "ThermalData"));
}

TEST_F(UnreadableDatabaseTest, ATableWithoutAnExpectedColumnStopsTheQuery) {
  tests::SampleStore store = NewStore();
  store.AddThermal("2026-03-07T12:00:30.000Z");
  store.Execute("ALTER TABLE NetworkData DROP COLUMN tx_rate");
  EXPECT_THAT(Query(), IsEmpty());
}

TEST_F(UnreadableDatabaseTest, AFileCutToHalfGivesWhatTheQueryItselfGives) {
  FillStore(3000);
  std::filesystem::resize_file(File(), std::filesystem::file_size(File()) / 2);
  EXPECT_EQ(Query(), QueryPlainly(path_));
  EXPECT_NO_THROW(SampleTableHasRows(path_, "ThermalData"));
  EXPECT_NO_THROW(DeleteSampleRows(path_, {"ThermalData", "NetworkData"}));
}

TEST_F(UnreadableDatabaseTest, ABrokenPageGivesWhatTheQueryItselfGives) {
  constexpr std::size_t kPageSize = 4096;
  FillStore(1000);
  const std::string content = Read();
  ASSERT_GT(content.size(), 20 * kPageSize);
  for (std::size_t page = 1; page < 20; ++page) {
    std::string broken = content;
    broken.replace(page * kPageSize, kPageSize, kPageSize, '\xFF');
    Write(broken);
    EXPECT_EQ(Query(), QueryPlainly(path_)) << "page " << page;
    EXPECT_NO_THROW(SampleTableHasRows(path_, "NetworkData"));
  }
}

TEST_F(UnreadableDatabaseTest, AFolderNamedInUnicodeIsFound) {
  const std::filesystem::path folder = folder_.Path() / std::filesystem::path(u8"Messwerte für 測定 🌡");
  std::filesystem::create_directory(folder);
  const std::string path = folder_.File("Messwerte für 測定 🌡/ssm.db");
  tests::SampleStore store = tests::SampleStore::WithTables(path);
  store.AddThermal("2026-03-07T12:00:30.000Z");
  EXPECT_TRUE(std::filesystem::exists(folder / "ssm.db"));
  EXPECT_EQ(Query(path)["thermal"].size(), 1U);
  EXPECT_TRUE(SampleTableHasRows(path, "ThermalData"));
  DeleteSampleRows(path, {"ThermalData"});
  EXPECT_EQ(store.Count("ThermalData"), 0);
}

TEST_F(UnreadableDatabaseTest, AWriteAheadLogIsReadBesideItsWriter) {
  tests::SampleStore store(path_);
  ASSERT_EQ(store.Value("PRAGMA journal_mode=WAL"), "wal");
  store.CreateTables();
  store.AddThermal("2026-03-07T12:00:30.000Z");
  store.Execute("BEGIN IMMEDIATE");
  store.AddThermal("2026-03-07T12:01:30.000Z");
  EXPECT_EQ(Query()["thermal"].at(0).at("num_samples"), "1");
  store.Execute("COMMIT");
  EXPECT_EQ(Query()["thermal"].at(0).at("num_samples"), "2");
  DeleteSampleRows(path_, {"ThermalData"});
  EXPECT_EQ(store.Count("ThermalData"), 0);
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
