#include "collector/performance_samples.h"

#include <plog/Log.h>

#include <new>
#include <vector>

#include "collector/example_upload.h"
#include "collector/logged_failure.h"
#include "collector/sources.h"
#include "messages/perf_messages.h"
#include "store/network_summary.h"
#include "store/sample_database.h"
#include "store/summary_query.h"
#include "store/thermal_summary.h"
#include "zt/shared/wmi/wmi_client.h"
#include "zt/shared/ztbios/private_bios_wmi.h"
#include "zt/telemetry/common/shared_ptr_tool.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using common::EventType;

constexpr char kOperation[] = "zt::telemetry::collector::performancesamples::PerformanceSamples::ReadSource";
constexpr char kDatabase[] = "ssm.db";
constexpr char kThermalTable[] = "ThermalData";
constexpr char kThermalSource[] = "thermal";
constexpr char kNetworkTable[] = "NetworkData";
constexpr char kNetworkSource[] = "network";

// Made by the first collector and kept for the life of the process. Nothing reads it, and making it contacts nothing:
// that a process with a collector has this one client is part of a collector's set-up.
shared::ztbios::PrivateBiosWmi* process_bios_wmi = nullptr;

bool IsFullCollection(EventType event) {
  return event == EventType::kScheduledCollection || event == EventType::kRequestedCollection;
}

// Hands the hours of a table over and empties it. Where there is no memory for one of them the table is left as it is,
// and the next cycle sends all of them.
template <typename Upload>
void SendAndEmpty(const std::string& database, const char* table, const Upload& upload) {
  try {
    upload();
    DeleteSampleRows(database, {table});
  } catch (const std::bad_alloc&) {
    return;
  }
}

}  // namespace

std::map<std::string, int> sensor_index_;

PerformanceSamples::PerformanceSamples() : storage_(kDatabase, "") {
  if (process_bios_wmi == nullptr) process_bios_wmi = new shared::ztbios::PrivateBiosWmi();
  sensor_index_ = {
      {"cpu_temperature", 0},     {"gpu_temperature", 1},  {"system_temperature", 2}, {"fan_speed_percent", 3},
      {"battery_temperature", 4}, {"fan_tach_current", 7}, {"fan_tach_target", 8},
  };
}

PerformanceSamples::~PerformanceSamples() {
  PerfMessages::ForgetHandle(this);
}

Error PerformanceSamples::AddStoreWrapper(const google::protobuf::Message& record) {
  return AddStore(record);
}

Error PerformanceSamples::AddSendWrapper(const google::protobuf::Message& record) {
  return AddSend(record);
}

void PerformanceSamples::GetDatabases(std::vector<std::shared_ptr<google::protobuf::Message>>& messages,
                                      std::vector<std::string>& /*databases*/) {
  messages.push_back(common::SharedPtrTool::Create(ThermalZTBiosSamples()));
}

Error PerformanceSamples::ReadSource() {
  PLOG_INFO << "Started " << kOperation;
  const std::string database = std::string(shared::TelemetryStorage::GetDefaultDBPath()) + kDatabase;
  SummaryRowsBySource summaries;
  QuerySampleSummaries(database, kSummaryQuery, &summaries);

  const EventType event = ParamsGetEventType();
  if (event == EventType::kExampleUpload) {
    AddSend(example_upload_);
    return {};
  }
  PerfMessages::Init(this, static_cast<int>(event));
  {
    Clients clients;
    const BuilderList builders = MakeBuilders(clients);
    if (IsFullCollection(event)) {
      // Without a client no hour would be sent: the table is left to the next cycle.
      shared::wmi::WMIClient* const wmi = clients.Wmi();
      if (wmi != nullptr && SampleTableHasRows(database, kThermalTable) && summaries.contains(kThermalSource)) {
        SendAndEmpty(database, kThermalTable, [&] { UploadThermalSamples(&summaries[kThermalSource], wmi); });
      }
      if (SampleTableHasRows(database, kNetworkTable) && summaries.contains(kNetworkSource)) {
        SendAndEmpty(database, kNetworkTable, [&] { UploadNetworkSamples(&summaries[kNetworkSource]); });
      }
      for (const auto& builder : builders) {
        try {
          builder->PopulateStorageAndUploadProtos();
        } catch (...) {
          LogFailure(PLOG_GET_FUNC());
        }
      }
      PerfMessages::ProcessStorageAndUpload();
    }
  }
  PLOG_INFO << "Finished " << kOperation;
  return {};
}

void PerformanceSamples::UploadThermalSamples(void* rows, void* wmi) {
  if (rows == nullptr || wmi == nullptr) return;
  SendThermalHours(*static_cast<const std::vector<SummaryRow>*>(rows), *static_cast<shared::wmi::WMIClient*>(wmi),
                   [this](const PcLogPerformanceSamplesAsCDM& record) { AddSend(record); });
}

void PerformanceSamples::UploadNetworkSamples(void* rows) {
  if (rows == nullptr) return;
  SendNetworkHours(*static_cast<const std::vector<SummaryRow>*>(rows),
                   [this](const PcLogPerformanceSamplesAsCDM& record) { AddSend(record); });
}

}  // namespace zt::telemetry::collector::performancesamples
