// One cycle with a list of builders of its own: a sampler that the collector has, and one that it has not. It prints
// what both put into the record.
#include <exception>
#include <filesystem>
#include <iostream>
#include <memory>
#include <vector>

#include "collector/performance_samples.h"
#include "samplers/memory_info_msg.h"
#include "system_volume_msg.h"
#include "zt/shared/wmi/wmi_client.h"
#include "zt/telemetry/common/telemetry_sink.h"

namespace {

namespace collector = zt::telemetry::collector::performancesamples;
using zt::telemetry::common::Error;
using Upload = zt::telemetry::contract::upload::log::PcLogPerformanceSamplesAsCDM;

constexpr int kScheduledCollection = 50;

class Sink : public zt::telemetry::common::TelemetrySink {
 public:
  Error Store(const google::protobuf::Message& /*record*/) override { return {}; }
  Error Send(const google::protobuf::Message& record) override {
    const auto* upload = dynamic_cast<const Upload*>(&record);
    if (upload == nullptr) return {};
    const auto& hardware = upload->hw_info();
    std::cout << "memory: " << hardware.system_memory_info().utilization_physical_percent() << " % in use\n";
    for (const auto& drive : hardware.storage_drives_info()) {
      std::cout << drive.drive_serial_number() << ": " << drive.utilization_percent() << " % in use\n";
    }
    return {};
  }
  Error Send(const std::string& /*text*/) override { return {}; }
};

}  // namespace

int main() {
  zt::telemetry::common::RegisterTelemetrySink(std::make_shared<Sink>());
  collector::PerformanceSamples owner;  // records go to the sink through it
  collector::PerfMessages::Init(&owner, kScheduledCollection);

  zt::shared::wmi::WMIClient wmi(zt::shared::wmi::kSystemNamespace);
  const std::vector<std::shared_ptr<collector::PerfMessages>> builders = {
      std::make_shared<collector::MemoryInfoMsg>(&wmi),
      std::make_shared<SystemVolumeMsg>(std::filesystem::current_path().root_path()),
  };
  int outcome = 0;
  for (const auto& builder : builders) {
    try {
      builder->PopulateStorageAndUploadProtos();
    } catch (const Error&) {
      std::cerr << "a sampler of the collector failed\n";
      outcome = 1;
    } catch (const std::exception& error) {
      std::cerr << "a sampler failed: " << error.what() << '\n';
      outcome = 1;
    }
  }
  collector::PerfMessages::ProcessStorageAndUpload();
  zt::telemetry::common::RegisterTelemetrySink(nullptr);
  return outcome;
}
