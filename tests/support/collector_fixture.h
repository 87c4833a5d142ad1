#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "collector/performance_samples.h"
#include "messages/perf_messages.h"
#include "plugin/logger_export.h"
#include "recording_log.h"
#include "recording_sink.h"
#include "simulation/machine.h"
#include "temporary_folder.h"
#include "zt/shared/telemetry_storage.h"

namespace zt::telemetry::collector::performancesamples {

/// A collector with a host around it: a sink, a log and an empty database folder. Each test runs in a process of its
/// own.
class CollectorWithHost {
 protected:
  CollectorWithHost() {
    shared::TelemetryStorage::SetDefaultDBPath(folder_.Utf8());
    ztSharedInitializeLogger(plog::info, &log_);
  }

  /// Runs one call of the host; returns the outcome text.
  std::string Execute(PerformanceSamples& collector, int event_type) {
    std::string outcome(shared::plugin::IPluginModule::kResultCapacity, '\0');
    collector.Execute(("{\"eventType\": " + std::to_string(event_type) + "}").c_str(), outcome.data());
    return outcome.c_str();
  }
  std::string Execute(int event_type) { return Execute(collector_, event_type); }

  /// The sections of the only record sent.
  const tests::PcLogPerformanceSamplesAsCDM& OnlySent() const {
    EXPECT_EQ(sink_->sent.size(), 1U);
    return sink_->sent.at(0);
  }

  tests::TemporaryFolder folder_;
  tests::RecordingLog log_;
  std::shared_ptr<tests::RecordingSink> sink_ = tests::RegisterRecordingSink();
  PerformanceSamples collector_;
};

/// Such a collector over a simulated machine.
class CollectorTest : public testing::Test, protected CollectorWithHost {};

/// Wall clock of the simulated machines here: 2026-03-07T12:20:42 local time, standard offset -03:00.
inline simulation::Clock ExampleClock() {
  return {1772893242, -180, -120};
}

}  // namespace zt::telemetry::collector::performancesamples
