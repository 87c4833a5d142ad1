#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "collector/performance_samples.h"
#include "kinds.h"
#include "live_things.h"
#include "outcome.h"
#include "simulation/machine.h"
#include "sqlite_calls.h"
#include "support/recording_log.h"
#include "support/recording_sink.h"
#include "support/temporary_folder.h"

namespace zt::tests {

/// Which calls of a cycle meet what, by their numbers. `kNone`: the first of the call's kinds, whichever call it is
/// that has the number then: behind one that fails others have other numbers.
using Plan = std::vector<std::pair<std::size_t, Disturbance>>;

/// A cycle that can be run again and again, on the same facts and with the same stored samples.
class SweptCycle {
 public:
  virtual ~SweptCycle() = default;

  /// Runs it, undisturbed but for `plan`. The calls that met something are added to `met`, or all calls to `calls`,
  /// where those are not null.
  Outcome Run(const Plan& plan, std::vector<Call>* met = nullptr, std::vector<Call>* calls = nullptr);

  /// What the cycles so far have not given back, once their outcomes are gone.
  LiveThings Live() const;

 protected:
  explicit SweptCycle(simulation::Machine machine);

 private:
  /// Puts everything in its place before the machine is watched.
  virtual void Prepare() = 0;
  /// The cycle itself, as its host runs it: nothing is thrown.
  virtual std::string Execute() = 0;
  /// Takes what the cycle gave.
  virtual void Collect(Outcome& outcome) = 0;

  simulation::Machine machine_;
  // Of all cycles so far: each begins with a record of its own.
  std::map<std::string, std::int64_t> vendor_faults_;
  std::int64_t vendor_references_ = 0;

 protected:
  RecordingLog log_;
};

/// A scheduled collection over a database with two hours of samples.
class CollectionCycle : public SweptCycle {
 public:
  explicit CollectionCycle(const std::string& machine);

 private:
  void Prepare() override;
  std::string Execute() override;
  void Collect(Outcome& outcome) override;

  TemporaryFolder folder_;
  std::string database_;  // its bytes
  std::shared_ptr<RecordingSink> sink_ = RegisterRecordingSink();
  SqliteCalls sqlite_calls_;
  telemetry::collector::performancesamples::PerformanceSamples collector_;
};

/// The network builder, which no collection runs: its passes one by one.
class NetworkCycle : public SweptCycle {
 public:
  explicit NetworkCycle(const std::string& machine);

 private:
  void Prepare() override {}
  std::string Execute() override;
  void Collect(Outcome& outcome) override;

  std::map<std::string, Section> found_;
};

/// The cycle of this name: that of a shipped machine, or "network".
std::unique_ptr<SweptCycle> MakeCycle(const std::string& name);

}  // namespace zt::tests
