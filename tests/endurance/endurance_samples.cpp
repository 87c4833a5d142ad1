// Two hours of a writer that fills the database once a minute, while collections send and delete what is there; the
// time is sped up. Each run has another rhythm and, in turn, another journal. Every sample ends in exactly one hourly
// record, but for those that a deletion may lose: such as were added behind the reading of the summary. Shows the
// account.
//
//   endurance_samples [RUNS [SEED]]      20 and 1 when left out
#include <array>
#include <atomic>
#include <chrono>
#include <exception>
#include <iostream>
#include <map>
#include <memory>
#include <mutex>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>

#include "collector/performance_samples.h"
#include "simulation/profile.h"
#include "support/recording_sink.h"
#include "support/temporary_folder.h"
#include "tests/endurance/progress.h"
#include "tests/endurance/sample_account.h"
#include "tests/endurance/sample_file.h"
#include "zt/shared/telemetry_storage.h"

namespace zt::endurance {
namespace {

using telemetry::collector::performancesamples::PerformanceSamples;
using tests::PcLogPerformanceSamplesAsCDM;
using Moment = std::chrono::steady_clock::time_point;
using std::chrono::microseconds;

constexpr std::int64_t kMinutes = 120;
constexpr std::int64_t kFirstMinute = 9 * kMinutesPerHour + 20;  // so that three hours of the clock have samples
constexpr std::int64_t kSecondsPerMinute = 60;
constexpr std::int64_t kMidnight = 1'772'841'600;  // 2026-03-07, where `SampleTime` counts from
constexpr std::size_t kHourLength = sizeof "2026-03-07T12" - 1;

constexpr double kMicrosecondsPerMillisecond = 1'000;

constexpr std::array<const char*, 2> kJournals = {"DELETE", "WAL"};

// From a writer that is as fast as the cycles to one that seldom meets them.
constexpr std::array<microseconds, 4> kLongestMinutes = {microseconds(500), microseconds(2'000), microseconds(8'000),
                                                         microseconds(40'000)};

// The database notes what goes out of it, whoever takes it.
constexpr const char* kNotes =
    "CREATE TABLE Gone(n INTEGER PRIMARY KEY, source TEXT, sample INTEGER);"
    "CREATE TRIGGER ThermalGone AFTER DELETE ON ThermalData BEGIN"
    " INSERT INTO Gone(source, sample) VALUES('-TH', old.id); END;"
    "CREATE TRIGGER NetworkGone AFTER DELETE ON NetworkData BEGIN"
    " INSERT INTO Gone(source, sample) VALUES('-NE', old.id); END;";

// Samples are numbered from 1 on, one a minute.
std::int64_t MinuteOf(std::int64_t sample) {
  return kFirstMinute + sample - 1;
}

std::string HourOf(std::int64_t sample) {
  return SampleTime(MinuteOf(sample)).substr(0, kHourLength);
}

void Require(bool held, const std::string& promise) {
  if (!held) throw std::runtime_error("broken: " + promise);
}

// The component that fills the database, on a thread of its own.
class Writer {
 public:
  Writer(std::string path, std::string journal, microseconds longest_minute, std::uint64_t seed)
      : thread_([this, path = std::move(path), journal = std::move(journal), longest_minute, seed] {
          try {
            Write(path, journal, longest_minute, seed);
          } catch (...) {
            failure_ = std::current_exception();
          }
          has_ended_ = true;
        }) {}
  ~Writer() {
    if (thread_.joinable()) thread_.join();
  }
  Writer(const Writer&) = delete;
  Writer& operator=(const Writer&) = delete;

  bool HasEnded() const { return has_ended_; }

  /// Minutes that were written so far.
  std::int64_t Minutes() const {
    const std::scoped_lock lock(mutex_);
    return static_cast<std::int64_t>(written_.size());
  }

  /// Whether a sample was in the database for certain at `moment`.
  bool WasThere(std::int64_t sample, Moment moment) const {
    const std::scoped_lock lock(mutex_);
    return sample <= static_cast<std::int64_t>(written_.size()) &&
           written_[static_cast<std::size_t>(sample - 1)] < moment;
  }

  void Join() {
    thread_.join();
    if (failure_) std::rethrow_exception(failure_);
  }

 private:
  void Write(const std::string& path, const std::string& journal, microseconds longest_minute, std::uint64_t seed) {
    SampleFile file(path, journal);
    std::mt19937_64 random(seed);
    for (std::int64_t minute = 0; minute < kMinutes; ++minute) {
      file.AddMinute(kFirstMinute + minute);
      {
        const std::scoped_lock lock(mutex_);
        written_.push_back(std::chrono::steady_clock::now());
      }
      std::this_thread::sleep_for(microseconds(random() % static_cast<std::uint64_t>(longest_minute.count())));
    }
  }

  mutable std::mutex mutex_;
  std::vector<Moment> written_;
  std::atomic<bool> has_ended_ = false;
  std::exception_ptr failure_;
  std::thread thread_;  // the last member: it uses the others
};

struct Totals {
  std::int64_t runs = 0;
  std::int64_t cycles = 0;
  std::int64_t written = 0;
  std::int64_t sent = 0;
  std::int64_t sent_again = 0;
  std::int64_t lost = 0;
  std::int64_t still_there = 0;  // when the writer had ended
};

class Run {
 public:
  /// `longest_minute`: of the writer, whose minutes are of any length up to that.
  Run(PerformanceSamples& collector, tests::RecordingSink& sink, const std::string& journal,
      microseconds longest_minute, std::uint64_t seed)
      : collector_(collector),
        sink_(sink),
        random_(seed),
        file_(folder_.File("ssm.db"), journal),
        writer_((file_.Execute(kNotes), folder_.File("ssm.db")), journal, longest_minute, seed) {
    shared::TelemetryStorage::SetDefaultDBPath(folder_.Utf8());
  }

  void Go() {
    while (!writer_.HasEnded()) {
      Cycle();
      std::this_thread::sleep_for(microseconds(random_() % kLongestPauseOfCyclesUs));
    }
    writer_.Join();
    for (auto& [source, account] : accounts_) still_there_ += Rows(source);
    Cycle();  // nobody writes: all that is left is sent, and goes
  }

  void AddTo(Totals& totals) {
    totals.runs += 1;
    totals.cycles += cycles_;
    totals.still_there += still_there_;
    for (auto& [source, account] : accounts_) {
      Require(Rows(source) == 0, "a cycle that nobody disturbs leaves nothing");
      Require(account.WrongHours() == 0, "each record has the samples of its hour");
      Require(account.DeletedTwice() == 0, "a sample goes once");
      const auto lost = static_cast<std::int64_t>(account.Lost().size());
      Require(kMinutes == account.Sent() + lost, "every sample is sent or lost to the deletion");
      totals.written += kMinutes;
      totals.sent += account.Sent();
      totals.sent_again += account.SentAgain();
      totals.lost += lost;
    }
  }

 private:
  static constexpr std::uint64_t kLongestPauseOfCyclesUs = 20'000;

  std::int64_t Rows(const std::string& source) {
    return file_.Numbers(std::string("SELECT COUNT(*) FROM ") + (source == "-TH" ? "ThermalData" : "NetworkData"))[0];
  }

  void Cycle() {
    simulation::Machine machine = simulation::ReadShippedProfile("convertible-laptop");
    machine.clock->utc_seconds = kMidnight + (kFirstMinute + writer_.Minutes()) * kSecondsPerMinute;
    simulation::UseMachine(std::move(machine));
    sink_.sent.clear();
    const Moment start = std::chrono::steady_clock::now();
    std::string outcome(shared::plugin::IPluginModule::kResultCapacity, '\0');
    collector_.Execute(R"({"eventType": 50})", outcome.data());
    Require(outcome.find(R"("kind":0)") != std::string::npos, "a collection succeeds");
    ++cycles_;
    for (auto& [source, account] : accounts_) Enter(source, account, start);
    last_gone_ = file_.Numbers("SELECT COALESCE(MAX(n), 0) FROM Gone")[0];
  }

  void Enter(const std::string& source, SampleAccount& account, Moment start) {
    const std::size_t lost_before = account.Lost().size();
    account.AddCycle(SentByHour(source),
                     file_.Numbers("SELECT sample FROM Gone WHERE source = '" + source + "' AND n > " +
                                   std::to_string(last_gone_) + " ORDER BY n"),
                     HourOf);
    for (std::size_t i = lost_before; i < account.Lost().size(); ++i) {
      Require(!writer_.WasThere(account.Lost()[i], start), "only what is added during a cycle is lost");
    }
    if (source == "-NE") CheckProfiles(account);
  }

  // One record for an hour in a cycle.
  std::map<std::string, std::int64_t> SentByHour(const std::string& source) const {
    std::map<std::string, std::int64_t> samples;
    for (const PcLogPerformanceSamplesAsCDM& record : sink_.sent) {
      if (!record.collection_id().ends_with(source)) continue;
      const auto [place, is_new] =
          samples.try_emplace(record.collection_id().substr(0, kHourLength), record.sample_points_actual());
      Require(is_new, "an hour is in one record of a cycle");
    }
    return samples;
  }

  // The profiles of the network records name the very samples that they are made of.
  void CheckProfiles(const SampleAccount& account) const {
    constexpr int kHexadecimal = 16;
    std::set<std::string> named;
    for (const PcLogPerformanceSamplesAsCDM& record : sink_.sent) {
      for (const auto& interface : record.hw_info().network_info().interfaces_info()) {
        for (const auto& profile : interface.w_lan_profiles()) {
          const int minute = std::stoi(profile.w_lan_profile_name(), nullptr, kHexadecimal);
          named.insert(record.collection_id().substr(0, kHourLength) + " " + std::to_string(minute));
        }
      }
    }
    std::set<std::string> expected;
    for (const std::int64_t sample : account.LastSent()) {
      expected.insert(HourOf(sample) + " " + std::to_string(MinuteOf(sample) % kMinutesPerHour));
    }
    Require(named == expected, "the records are made of the samples that were there");
  }

  PerformanceSamples& collector_;
  tests::RecordingSink& sink_;
  std::mt19937_64 random_;
  tests::TemporaryFolder folder_;
  SampleFile file_;
  std::map<std::string, SampleAccount> accounts_ = {{"-TH", {}}, {"-NE", {}}};
  std::int64_t cycles_ = 0;
  std::int64_t last_gone_ = 0;
  std::int64_t still_there_ = 0;
  Writer writer_;  // the last member: it starts when all is ready
};

void Print(const std::string& journal, microseconds longest_minute, const Totals& totals) {
  std::cout << "| " << journal << " | " << static_cast<double>(longest_minute.count()) / kMicrosecondsPerMillisecond
            << " ms | " << totals.runs << " | " << totals.cycles << " | " << totals.written << " | " << totals.sent
            << " | " << totals.sent_again << " | " << totals.lost << " | " << totals.still_there << " |\n";
}

int Main(std::int64_t runs, std::uint64_t seed) {
  const std::shared_ptr<tests::RecordingSink> sink = tests::RegisterRecordingSink();
  PerformanceSamples collector;
  const Progress progress("runs", runs);
  constexpr std::size_t kKinds = kJournals.size() * kLongestMinutes.size();
  std::array<Totals, kKinds> totals;
  for (std::int64_t done = 1; done <= runs; ++done) {
    const std::size_t kind = static_cast<std::size_t>(done) % kKinds;
    Run run(collector, *sink, kJournals[kind % kJournals.size()], kLongestMinutes[kind / kJournals.size()],
            seed + static_cast<std::uint64_t>(done));
    run.Go();
    run.AddTo(totals[kind]);
    progress.Tell(done);
  }
  std::cout << "| journal | a minute lasts up to | runs | cycles | samples written | sent | sent again | lost to the "
               "deletion | left for the last cycle |\n";
  for (std::size_t kind = 0; kind < kKinds; ++kind) {
    Print(kJournals[kind % kJournals.size()], kLongestMinutes[kind / kJournals.size()], totals[kind]);
  }
  return 0;
}

}  // namespace
}  // namespace zt::endurance

int main(int count, char** values) {
  using zt::endurance::NumberArgument;
  try {
    return zt::endurance::Main(NumberArgument(count, values, 1, 20),
                               static_cast<std::uint64_t>(NumberArgument(count, values, 2, 1)));
  } catch (const std::exception& error) {
    std::cerr << "endurance_samples: " << error.what() << "\n";
    return 1;
  }
}
