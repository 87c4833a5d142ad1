#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "collector/performance_samples.h"
#include "memory_shortage.h"
#include "simulation/machine.h"
#include "support/recording_log.h"
#include "support/recording_sink.h"
#include "support/temporary_folder.h"

namespace zt::tests {

/// What a cycle gave.
struct CycleResult {
  std::string outcome;
  std::vector<std::string> stored;
  std::vector<std::string> texts;
  std::vector<std::string> hours;  // one record of stored samples each
  std::vector<std::string> live;   // one record of the machine each
  std::vector<std::string> log;

  bool operator==(const CycleResult&) const = default;
};

/// A host around a collector: its records and log lines take none of the collector's memory. The machine has batteries,
/// graphics cards of three makers, NPUs, drives and processes, and its database two hours of stored samples.
class CycleHost {
 public:
  CycleHost();

  /// Puts machine and database back to their beginning.
  void Prepare();
  void PrepareWithoutDatabase();
  /// From here on the host's store fails for every record.
  void FailToStore();
  /// How many records were handed over after somebody had asked protobuf for descriptors of them.
  int HandOversWithDescriptors() const;

  /// One call; `collector` has run before or not.
  CycleResult Execute(shared::plugin::IPluginModule& collector, const char* params = R"({"eventType": 50})");
  /// The same, with the outcome in a buffer of the host's making.
  CycleResult ExecuteWithAllocator(shared::plugin::IDynamicPluginModule& collector, const char* params);

  /// Rows that a cycle left in the database.
  int RowsLeft(const std::string& table) const;
  /// Rows that each cycle finds.
  static constexpr int kThermalRows = 5;
  static constexpr int kNetworkRows = 7;

  RecordingLog& Log() { return log_; }

  /// What is wrong with how the machine was left behind by a cycle; empty when nothing is.
  static std::string Remains();

 private:
  CycleResult TakeResult(const char* outcome);
  void MakeDatabase() const;
  std::string File() const { return folder_.File("ssm.db"); }

  TemporaryFolder folder_;
  simulation::Machine machine_;
  std::string database_;
  class QuietLog : public RecordingLog {
   public:
    void write(const plog::Record& record) override {
      const MemoryOfTheHost host;
      RecordingLog::write(record);
    }
  };
  QuietLog log_;
  class QuietSink;
  std::shared_ptr<QuietSink> sink_;
};

}  // namespace zt::tests
