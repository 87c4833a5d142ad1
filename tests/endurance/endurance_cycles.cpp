// Runs many collections in one process, on a machine with everything whose answers change from one to the next; in
// every hundredth a call fails. Shows what the process holds after the first hundred and later, and fails where that
// grew.
//
//   endurance_cycles [CYCLES [SEED]]      1000 and 1 when left out
#include <exception>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>

#include "bench/counting_sink.h"
#include "collector/performance_samples.h"
#include "plugin/logger_export.h"
#include "simulation/bios_clients.h"
#include "simulation/calls.h"
#include "simulation/handed_out.h"
#include "simulation/profile.h"
#include "simulation/vendor_record.h"
#include "support/temporary_folder.h"
#include "tests/endurance/changing_machine.h"
#include "tests/endurance/process_figures.h"
#include "tests/endurance/progress.h"
#include "tests/endurance/sample_file.h"
#include "zt/shared/telemetry_storage.h"

namespace zt::endurance {
namespace {

using telemetry::collector::performancesamples::PerformanceSamples;

constexpr std::int64_t kFirstCycles = 100;
constexpr std::int64_t kCyclesToAFailure = 100;
constexpr std::int64_t kCyclesToSamples = 10;
constexpr std::int64_t kMoments = 10;

constexpr const char* kCollection = R"({"eventType": 50})";
constexpr const char* kSuccess = R"("kind":0)";

// A host's log that keeps nothing.
class SilentLog : public plog::IAppender {
 public:
  void write(const plog::Record& record) override { lines_ += record.getMessage() != nullptr ? 1 : 0; }
  std::int64_t Lines() const { return lines_; }

 private:
  std::int64_t lines_ = 0;
};

class Run {
 public:
  explicit Run(std::uint64_t seed)
      : machine_(simulation::ReadShippedProfile("everything"), seed), random_(seed), samples_(folder_.File("ssm.db")) {
    shared::TelemetryStorage::SetDefaultDBPath(folder_.Utf8());
    telemetry::common::RegisterTelemetrySink(sink_);
    ztSharedInitializeLogger(plog::info, &log_);
    static_cast<void>(simulation::EndlessText());  // the machine's own, made when it is first asked for
    simulation::UseMachine(machine_.Next());
    calls_of_a_cycle_ = CollectWatched([](const simulation::Call&) { return simulation::Disturbance::kNone; });
  }

  ~Run() {
    simulation::WatchCalls({});
    telemetry::common::RegisterTelemetrySink(nullptr);
  }

  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;

  void Cycle() {
    ++cycles_;
    if (cycles_ % kCyclesToSamples == 0) AddSamples();
    simulation::UseMachine(machine_.Next());
    if (cycles_ % kCyclesToAFailure == 0) {
      LetOneCallFail();
    } else {
      Collect();
    }
  }

  // What is held after a cycle of the machine as it is described.
  Snapshot Figures() {
    simulation::UseMachine(simulation::ReadShippedProfile("everything"));
    Collect();
    Snapshot figures = ProcessFigures(cycles_);
    figures.push_back({"SQLite bytes", sqlite3_memory_used(), 0});
    figures.push_back({"vendor references", vendor_references_, 0});
    figures.push_back({"firmware clients", static_cast<std::int64_t>(simulation::CurrentBiosClients().alive), 0});
    std::int64_t handed_out = 0;
    for (const auto& [kind, count] : simulation::HandedOut()) handed_out += count;
    figures.push_back({"handles, clients", handed_out, 0});
    figures.push_back({"failed calls", failed_calls_, kShownOnly});
    figures.push_back({"failed collections", failed_collections_, kShownOnly});
    figures.push_back({"records", sink_->Records(), kShownOnly});
    figures.push_back({"log lines", log_.Lines(), kShownOnly});
    return figures;
  }

 private:
  void AddSamples() {
    constexpr std::int64_t kMinutes = 3;
    constexpr std::int64_t kDay = 24 * 60;
    for (std::int64_t i = 0; i < kMinutes; ++i) samples_.AddMinute((cycles_ * 7 + i * 40) % kDay);
  }

  void LetOneCallFail() {
    const std::size_t failing = 1 + random_() % calls_of_a_cycle_;
    CollectWatched([this, failing](const simulation::Call& call) {
      if (call.number != failing || call.kinds.empty()) return simulation::Disturbance::kNone;
      ++failed_calls_;
      return call.kinds[random_() % call.kinds.size()];
    });
  }

  // Returns how many calls were seen.
  std::size_t CollectWatched(const simulation::CallWatcher& watcher) {
    std::size_t calls = 0;
    simulation::WatchCalls([&](const simulation::Call& call) {
      calls = call.number;
      return watcher(call);
    });
    Collect(/*may_fail=*/true);
    simulation::WatchCalls({});
    return calls;
  }

  void Collect(bool may_fail = false) {
    std::string outcome(shared::plugin::IPluginModule::kResultCapacity, '\0');
    collector_.Execute(kCollection, outcome.data());
    const bool succeeded = outcome.find(kSuccess) != std::string::npos;
    // An exception of the clients that the cycle makes for itself is its own outcome.
    if (!succeeded && !may_fail) throw std::runtime_error("a collection failed: " + outcome);
    failed_collections_ += succeeded ? 0 : 1;
    const simulation::VendorRecord& vendors = simulation::CurrentVendorRecord();
    vendor_references_ += vendors.live_references;
    if (!vendors.faults.empty()) throw std::runtime_error(vendors.faults.front());
  }

  ChangingMachine machine_;
  std::mt19937_64 random_;
  tests::TemporaryFolder folder_;
  SampleFile samples_;
  std::shared_ptr<bench::CountingSink> sink_ = std::make_shared<bench::CountingSink>();
  SilentLog log_;
  PerformanceSamples collector_;
  std::int64_t cycles_ = 0;
  std::size_t calls_of_a_cycle_ = 1;
  std::int64_t failed_calls_ = 0;
  std::int64_t failed_collections_ = 0;
  std::int64_t vendor_references_ = 0;  // left behind by the vendors' back-ends, all cycles together
};

int Main(std::int64_t cycles, std::uint64_t seed) {
  Run run(seed);
  const Progress progress("cycles", cycles);
  FigureTable table;
  for (std::int64_t done = 1; done <= cycles; ++done) {
    run.Cycle();
    progress.Tell(done);
    const bool is_moment = done == kFirstCycles || done == cycles || done % (cycles / kMoments + 1) == 0;
    if (is_moment && done >= kFirstCycles) table.Add(std::to_string(done), run.Figures());
  }
  return Report(table);
}

}  // namespace
}  // namespace zt::endurance

int main(int count, char** values) {
  using zt::endurance::NumberArgument;
  try {
    return zt::endurance::Main(NumberArgument(count, values, 1, 1'000),
                               static_cast<std::uint64_t>(NumberArgument(count, values, 2, 1)));
  } catch (const std::exception& error) {
    std::cerr << "endurance_cycles: " << error.what() << "\n";
    return 2;
  }
}
