// What an outbox costs: keeping a hand-over (the processor time; the wait for the disk is the disk's), a page of a long
// list, and opening one that is full, which checks all of it.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "host/outbox/outbox.h"
#include "support/temporary_folder.h"

namespace zt::bench {
namespace {

using telemetry::host::HandOver;
using telemetry::host::KeptHandOver;
using telemetry::host::Outbox;

constexpr std::size_t kLiveRecordBytes = 6000;  // of a laptop
constexpr int kAtOnce = 10'000;

HandOver Record(std::int64_t number, std::size_t bytes) {
  return {"send",
          "zt.telemetry.contract.upload.log.PcLogPerformanceSamplesAsCDM",
          std::to_string(number) + "-2026-03-07T10H_ZT12345678-TH",
          "2026-03-07T10:00:00.000Z",
          std::string(bytes, static_cast<char>(number)),
          "60-" + std::to_string(number)};
}

void Fill(Outbox& outbox, std::int64_t records, std::size_t bytes) {
  std::vector<HandOver> batch;
  for (std::int64_t i = 0; i < records; ++i) {
    batch.push_back(Record(i, bytes));
    if (batch.size() < kAtOnce && i + 1 < records) continue;
    outbox.Keep(batch, std::nullopt);
    batch.clear();
  }
}

void KeepAHandOver(benchmark::State& state) {
  const tests::TemporaryFolder folder;
  Outbox outbox(folder.Path());
  std::int64_t number = 0;
  for (auto unused : state) outbox.Keep({Record(number++, kLiveRecordBytes)}, std::nullopt);
}
BENCHMARK(KeepAHandOver)->Unit(benchmark::kMicrosecond);

// Made once: what measures is run several times.
class FilledOutbox {
 public:
  FilledOutbox(std::int64_t records, std::size_t bytes) {
    Outbox outbox(folder_.Path());
    Fill(outbox, records, bytes);
    bytes_ = outbox.Figures().bytes;
  }

  Outbox Open() const { return Outbox(folder_.Path()); }
  std::int64_t Bytes() const { return bytes_; }

 private:
  tests::TemporaryFolder folder_;
  std::int64_t bytes_ = 0;
};

void ListAPage(benchmark::State& state) {
  constexpr std::size_t kShortRecordBytes = 100;
  constexpr std::int64_t kPage = 100;
  static const FilledOutbox filled(state.range(0), kShortRecordBytes);
  const Outbox outbox = filled.Open();
  std::mt19937_64 random(1);
  std::uniform_int_distribution<std::int64_t> anywhere(0, state.range(0) - kPage);
  for (auto unused : state) {
    std::int64_t shown = 0;
    outbox.ForEach(
        false, [&](const KeptHandOver&) { ++shown; }, anywhere(random), kPage);
    if (shown != kPage) state.SkipWithError("a page is not whole");
  }
}
BENCHMARK(ListAPage)->ArgName("records")->Arg(1'000'000)->Unit(benchmark::kMillisecond);

void OpenAFullOne(benchmark::State& state) {
  constexpr std::int64_t kBytes = std::int64_t{256} * 1024 * 1024;
  static const FilledOutbox filled(kBytes / static_cast<std::int64_t>(kLiveRecordBytes), kLiveRecordBytes);
  for (auto unused : state) benchmark::DoNotOptimize(filled.Open().SetAside());
  state.counters["MiB"] = static_cast<double>(filled.Bytes()) / (1024 * 1024);
}
BENCHMARK(OpenAFullOne)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zt::bench
