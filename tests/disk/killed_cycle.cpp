// A cycle in a process of its own, which ends before a change that it makes to a file of its choice.
//   killed_cycle FOLDER HANDED-OVER CHANGE [half]
// FOLDER: that of the database, with its separator. HANDED-OVER: a file that gets a line for each record before the
// collector goes on, and one for the kind of the change that the process is ended at. CHANGE: the number of the change,
// from 1 on, that is not made, or with "half" half of it. Where there are fewer changes the process ends by itself.
#include <fstream>
#include <memory>
#include <string>

#include "collector/performance_samples.h"
#include "performance_samples_upload.pb.h"
#include "simulation/machine.h"
#include "support/child_run.h"
#include "support/file_calls.h"
#include "zt/shared/telemetry_storage.h"
#include "zt/telemetry/common/telemetry_sink.h"

namespace {

using zt::telemetry::common::Error;
using zt::telemetry::contract::upload::log::PcLogPerformanceSamplesAsCDM;
using zt::tests::FileCall;
using zt::tests::FileCallKind;

class SinkToFile : public zt::telemetry::common::TelemetrySink {
 public:
  explicit SinkToFile(const char* file) : lines_(file, std::ios::binary) {}

  Error Store(const google::protobuf::Message& /*record*/) override { return {}; }
  Error Send(const google::protobuf::Message& record) override {
    const auto& sent = dynamic_cast<const PcLogPerformanceSamplesAsCDM&>(record);
    Tell(sent.collection_id() + " " + std::to_string(sent.sample_points_actual()));
    return {};
  }
  Error Send(const std::string& /*text*/) override { return {}; }

  // The system has the line when this returns, whatever becomes of the process.
  void Tell(const std::string& line) { lines_ << line << std::endl; }

 private:
  std::ofstream lines_;
};

bool ChangesAFile(FileCallKind kind) {
  return kind == FileCallKind::kWrite || kind == FileCallKind::kSync || kind == FileCallKind::kTruncate ||
         kind == FileCallKind::kDelete;
}

}  // namespace

int main(int count, char** arguments) {
  if (count < 4) return 2;
  zt::simulation::Machine machine;
  machine.clock = {1772893242, -180, -120};
  machine.smbios_serial_number = "ZT12345678";
  zt::simulation::UseMachine(machine);
  zt::shared::TelemetryStorage::SetDefaultDBPath(arguments[1]);
  const auto sink = std::make_shared<SinkToFile>(arguments[2]);
  zt::telemetry::common::RegisterTelemetrySink(sink);
  const int last = std::stoi(arguments[3]);
  const bool half = count > 4;

  int changes = 0;
  const zt::tests::FileCalls files([&](const FileCall& call) {
    if (!ChangesAFile(call.kind) || ++changes != last) return SQLITE_OK;
    if (half && call.write_half) call.write_half();
    sink->Tell("ended at: " + NameOf(call.kind));
    zt::tests::EndThisProcess();
  });
  zt::telemetry::collector::performancesamples::PerformanceSamples collector;
  char outcome[zt::shared::plugin::IPluginModule::kResultCapacity];
  collector.Execute(R"({"eventType": 50})", outcome);
  return 0;
}
