#include "cycle_host.h"

#include <google/protobuf/descriptor.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

#include "simulation/bios_clients.h"
#include "simulation/profile.h"
#include "simulation/vendor_record.h"
#include "support/sample_store_fixture.h"
#include "zt/shared/telemetry_storage.h"

namespace zt::tests {
namespace {

using telemetry::common::Error;

// Everything that the shipped machines have, in one.
simulation::Machine FullMachine() {
  simulation::Machine machine = simulation::ReadShippedProfile("workstation");
  simulation::Machine laptop = simulation::ReadShippedProfile("convertible-laptop");
  machine.battery_flag = laptop.battery_flag;
  machine.batteries = laptop.batteries;
  machine.sensors = laptop.sensors;
  machine.npu_report = laptop.npu_report;
  machine.private_bios = laptop.private_bios;
  machine.storage_library = laptop.storage_library;
  machine.session = laptop.session;
  machine.processes.insert(machine.processes.end(), laptop.processes.begin(), laptop.processes.end());
  for (const char* name : {"Win32_PerfFormattedData_PerfProc_Process", "Win32_Process"}) {
    auto& rows = machine.wmi.classes[name];
    const auto& more = laptop.wmi.classes[name];
    rows.insert(rows.end(), more.begin(), more.end());
  }
  return machine;
}

std::string Bytes(const google::protobuf::Message& record) {
  return record.DebugString();
}

std::string WholeFile(const std::string& file) {
  std::ifstream stream(std::filesystem::path(file), std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

bool DescriptorsAreMade() {
  const auto* const pool = google::protobuf::DescriptorPool::generated_pool();
  return pool->InternalIsFileLoaded("device_performance_storage.proto") ||
         pool->InternalIsFileLoaded("performance_samples_upload.proto");
}

}  // namespace

class CycleHost::QuietSink : public RecordingSink {
 public:
  Error Store(const google::protobuf::Message& record) override {
    const MemoryOfTheHost host;
    Note();
    return RecordingSink::Store(record);
  }
  Error Send(const google::protobuf::Message& record) override {
    const MemoryOfTheHost host;
    Note();
    return RecordingSink::Send(record);
  }
  Error Send(const std::string& text) override {
    const MemoryOfTheHost host;
    return RecordingSink::Send(text);
  }

  int with_descriptors = 0;

 private:
  void Note() { with_descriptors += DescriptorsAreMade() ? 1 : 0; }
};

CycleHost::CycleHost() : machine_(FullMachine()), sink_(std::make_shared<QuietSink>()) {
  shared::TelemetryStorage::SetDefaultDBPath(folder_.Utf8());
  telemetry::common::RegisterTelemetrySink(sink_);
  MakeDatabase();
  database_ = WholeFile(File());
}

// The times are of every kind that the query meets: plain ones, one that SQLite has to work out, one that is none.
void CycleHost::MakeDatabase() const {
  auto store = SampleStore::WithTables(File());
  for (const char* time : {"2026-03-07T10:00:30.000Z", "2026-03-07T10:01:30.000Z", "2026-03-07T10:60:00.000Z"}) {
    store.AddThermal(time, {{"cpu_temp", "51.25"}});
  }
  store.AddThermal("2026-03-07T11:00:30.000Z");
  store.AddThermal("2026-03-07T24:00:30.000Z");
  for (const char* interface :
       {"'{0A1B2C3D-0000-4000-8000-000000000001}'", "'{0A1B2C3D-0000-4000-8000-000000000002}'"}) {
    store.AddNetwork("2026-03-07T10:00:30.000Z", {{"interface_device_id", interface}});
    store.AddNetwork("2026-03-07T10:01:30.000Z",
                     {{"interface_device_id", interface}, {"profile_name_hash", "x'0102030405060708'"}});
    store.AddNetwork("2026-03-07T11:00:30.000Z", {{"interface_device_id", interface}});
  }
  store.AddNetwork("2026-03-07T24:00:30.000Z");
}

void CycleHost::Prepare() {
  std::ofstream(std::filesystem::path(File()), std::ios::binary | std::ios::trunc) << database_;
  std::filesystem::remove(std::filesystem::path(File() + "-journal"));
  simulation::UseMachine(machine_);
}

void CycleHost::PrepareWithoutDatabase() {
  Prepare();
  std::filesystem::remove(std::filesystem::path(File()));
}

void CycleHost::FailToStore() {
  sink_->store_outcome = Error(Error::kCallFailed, 112, "disk full", "", "");
}

int CycleHost::HandOversWithDescriptors() const {
  return sink_->with_descriptors;
}

CycleResult CycleHost::Execute(shared::plugin::IPluginModule& collector, const char* params) {
  static char outcome[shared::plugin::IPluginModule::kResultCapacity];
  collector.Execute(params, outcome);
  return TakeResult(outcome);
}

CycleResult CycleHost::ExecuteWithAllocator(shared::plugin::IDynamicPluginModule& collector, const char* params) {
  class Allocator : public shared::plugin::PluginBufferAllocator {
   public:
    char* Allocate(std::size_t size) const override {
      const MemoryOfTheHost host;
      return new char[size];
    }
  };
  char* outcome = nullptr;
  collector.Execute(params, outcome, Allocator());
  const std::unique_ptr<char[]> owner(outcome);
  return TakeResult(outcome);
}

CycleResult CycleHost::TakeResult(const char* outcome) {
  const MemoryOfTheHost host;
  CycleResult result;
  result.outcome = outcome;
  result.texts = sink_->texts;
  for (const auto& record : sink_->stored) result.stored.push_back(Bytes(record));
  for (const auto& record : sink_->sent) {
    const bool hour = record.collection_id().ends_with("-TH") || record.collection_id().ends_with("-NE");
    (hour ? result.hours : result.live).push_back(Bytes(record));
  }
  result.log = log_.Messages();
  sink_->stored = {};
  sink_->sent = {};
  sink_->texts = {};
  log_.lines = {};
  return result;
}

int CycleHost::RowsLeft(const std::string& table) const {
  return SampleStore(File()).Count(table);
}

std::string CycleHost::Remains() {
  std::ostringstream remains;
  const simulation::VendorRecord& vendors = simulation::CurrentVendorRecord();
  if (vendors.live_references != 0) remains << vendors.live_references << " references to graphics cards; ";
  for (const std::string& fault : vendors.faults) remains << fault << "; ";
  // One is the process's own.
  if (simulation::CurrentBiosClients().alive > 1) remains << "clients of the firmware; ";
  return remains.str();
}

}  // namespace zt::tests
