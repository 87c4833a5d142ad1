#include "store/hourly_record.h"

#include "messages/collection_id.h"
#include "messages/local_time.h"

namespace zt::telemetry::collector::performancesamples {

void StampHour(const SummaryRow& hour, const char* suffix, std::uint32_t samples,
               PcLogPerformanceSamplesAsCDM& record) {
  record.set_local_time(CurrentRecordForm());
  record.set_collection_id(HourlyCollectionId(hour.at("hour_window"), PerfMessages::GetSN(), suffix));
  record.set_sample_points_actual(samples);
}

void ClearStamps(PcLogPerformanceSamplesAsCDM& record) {
  record.set_collection_id("");
  record.clear_sample_points_actual();
  record.clear_local_time();
}

}  // namespace zt::telemetry::collector::performancesamples
