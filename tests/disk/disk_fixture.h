#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "support/file_calls.h"
#include "tests/src/collector/stored_samples_fixture.h"

namespace zt::telemetry::collector::performancesamples {

/// How the host keeps its database.
struct Keeping {
  const char* name;
  bool write_ahead_log = false;
  bool indices = false;
  /// Whether the host has it open all the time.
  bool open_host = false;
};

inline constexpr Keeping kKeepings[] = {
    {"Journal"}, {"JournalAndIndices", false, true}, {"Log", true}, {"LogAndIndices", true, true, true}};

inline std::string NameOf(const testing::TestParamInfo<Keeping>& keeping) {
  return keeping.param.name;
}
inline void PrintTo(const Keeping& keeping, std::ostream* stream) {
  *stream << keeping.name;
}

/// A collector beside a database with two hours of thermal and two of network samples, which can be put back to its
/// beginning.
class DiskTest : public StoredSamplesTest {
 protected:
  static constexpr int kThermalRows = 5;
  static constexpr int kNetworkRows = 7;

  void MakeDatabase(const Keeping& keeping) {
    {
      auto store = MakeStore();
      if (keeping.write_ahead_log) store.Execute("PRAGMA journal_mode=WAL");
      if (keeping.indices) {
        store.Execute("CREATE INDEX thermal_by_time ON ThermalData(date_time)");
        store.Execute("CREATE INDEX network_by_time ON NetworkData(date_time, interface_device_id)");
      }
      AddSamples(store);
    }
    beginning_ = Bytes(File());
    open_host_ = keeping.open_host;
    PutBack();
    Cycle();
    undisturbed_ = Texts();
    ASSERT_EQ(undisturbed_.size(), 4U);
  }

  static void AddSamples(tests::SampleStore& store) {
    for (const char* time : {"2026-03-07T10:00:30.000Z", "2026-03-07T10:01:30.000Z", "2026-03-07T10:02:30.000Z",
                             "2026-03-07T11:00:30.000Z", "2026-03-07T11:01:30.000Z"}) {
      store.AddThermal(time);
    }
    for (const char* time : {"2026-03-07T10:00:30.000Z", "2026-03-07T10:01:30.000Z", "2026-03-07T10:02:30.000Z",
                             "2026-03-07T10:03:30.000Z", "2026-03-07T11:00:30.000Z", "2026-03-07T11:01:30.000Z",
                             "2026-03-07T11:02:30.000Z"}) {
      store.AddNetwork(time);
    }
  }

  /// The database as it was at the beginning, and the host beside it.
  void PutBack() {
    host_.reset();
    for (const char* companion : {"-journal", "-wal", "-shm"}) std::filesystem::remove(Path(File() + companion));
    std::ofstream(Path(File()), std::ios::binary | std::ios::trunc) << beginning_;
    if (open_host_) {
      host_ = std::make_unique<tests::SampleStore>(File());
      host_->Count("ThermalData");
    }
  }

  /// Puts a copy of `from` in the place of `to`. Not all of the standard libraries overwrite where they are told so.
  static void CopyOver(const std::filesystem::path& from, const std::filesystem::path& to) {
    std::filesystem::remove(to);
    std::filesystem::copy_file(from, to);
  }

  static std::filesystem::path Path(const std::string& utf8) { return std::u8string(utf8.begin(), utf8.end()); }
  static std::string Bytes(const std::string& file) {
    std::ifstream stream(Path(file), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  }

  /// The hourly records that the last cycle sent.
  std::vector<std::string> Texts() const {
    std::vector<std::string> texts;
    for (const auto& record : sink_->sent) texts.push_back(record.DebugString());
    return texts;
  }
  /// Those of one table.
  static std::vector<std::string> TextsOf(const std::string& suffix, const std::vector<std::string>& all) {
    std::vector<std::string> texts;
    for (const std::string& text : all) {
      if (text.find(suffix + "\"") != std::string::npos) texts.push_back(text);
    }
    return texts;
  }

  /// That the database is whole, and each table with all of its rows or with none, which then were all sent. Returns
  /// what the next cycle has to send.
  std::vector<std::string> ExpectRowsAccountedFor(const std::vector<std::string>& sent) {
    std::vector<std::string> rest;
    tests::SampleStore store(File());
    EXPECT_EQ(store.Value("PRAGMA integrity_check"), "ok");
    ExpectTableAccountedFor(store, "ThermalData", kThermalRows, "-TH", sent, rest);
    ExpectTableAccountedFor(store, "NetworkData", kNetworkRows, "-NE", sent, rest);
    return rest;
  }

  std::vector<std::string> undisturbed_;
  std::unique_ptr<tests::SampleStore> host_;

 private:
  void ExpectTableAccountedFor(tests::SampleStore& store, const char* table, int rows, const char* suffix,
                               const std::vector<std::string>& sent, std::vector<std::string>& rest) const {
    const int left = store.Count(table);
    if (left == rows) {
      for (const std::string& text : TextsOf(suffix, undisturbed_)) rest.push_back(text);
      return;
    }
    EXPECT_EQ(left, 0) << table;
    EXPECT_EQ(TextsOf(suffix, sent), TextsOf(suffix, undisturbed_)) << table << " was emptied";
  }

  std::string beginning_;
  bool open_host_ = false;
};

}  // namespace zt::telemetry::collector::performancesamples
