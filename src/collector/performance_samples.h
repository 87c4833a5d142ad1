#pragma once

#include <google/protobuf/message.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "zt/shared/telemetry_storage.h"
#include "zt/telemetry/common/telemetry_collector_base.h"
#include "zt/zt_collector_export.h"

namespace zt::telemetry::collector::performancesamples {

using common::Error;

/// The collector, and the module object that the host gets: each call of the host runs one collection cycle.
class ZT_COLLECTOR_EXPORT PerformanceSamples : public common::TelemetryCollectorBase {
 public:
  PerformanceSamples();
  ~PerformanceSamples() override;
  PerformanceSamples(const PerformanceSamples&) = delete;
  PerformanceSamples& operator=(const PerformanceSamples&) = delete;

  /// The base's protected hand-overs, for the code that reaches the collector through `PerfMessages::perf_handle_`.
  Error AddStoreWrapper(const google::protobuf::Message& record);
  Error AddSendWrapper(const google::protobuf::Message& record);

 protected:
  /// Announces one prototype, an empty `ThermalZTBiosSamples`, and no database.
  void GetDatabases(std::vector<std::shared_ptr<google::protobuf::Message>>& messages,
                    std::vector<std::string>& databases) override;

  /// One collection cycle, chosen by the event type: 51 sends the example upload; 20 and 50 summarise the stored
  /// samples hour by hour and empty their tables, sample the machine live, store one record and send one; any other
  /// does nothing. Always succeeds: what fails inside is logged or swallowed.
  Error ReadSource() override;

  /// Sends a record for each hour of stored thermal samples. `rows`: a `std::vector<SummaryRow>*`; `wmi`: the cycle's
  /// `WMIClient*`. With either null, or without rows, nothing happens.
  void UploadThermalSamples(void* rows, void* wmi);

  /// Sends a record for each hour of stored network samples. `rows`: a `std::vector<SummaryRow>*`; null or empty,
  /// nothing happens.
  void UploadNetworkSamples(void* rows);

 private:
  shared::TelemetryStorage storage_;
};

/// Index of each sensor in the firmware's readings, refilled by every new collector; 5 and 6 are not in use.
extern std::map<std::string, int> sensor_index_;

}  // namespace zt::telemetry::collector::performancesamples
