// The stage that ends a cycle, and what else `PerfMessages` hands over: here and not beside that class, since it goes
// through the collector.
#include <plog/Log.h>

#include <memory>
#include <new>
#include <vector>

#include "collector/performance_samples.h"
#include "collector/store_failure.h"
#include "messages/collection_id.h"
#include "messages/local_time.h"
#include "messages/log_text.h"
#include "messages/perf_messages.h"
#include "zt/telemetry/common/error.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using common::Error;

void Stamp(PcLogPerformanceSamplesAsCDM& record, const std::string& time) {
  record.set_collection_id(LiveCollectionId(PerfMessages::GetSN(), time));
  record.set_local_time(time);
}

PerformanceSamples* Collector() {
  return static_cast<PerformanceSamples*>(PerfMessages::perf_handle_);
}

// Puts an empty record in the place of the sent one at the end of its life, whatever becomes of the hand-over: the next
// cycle would add its sections to those of this one.
class RecordRenewal {
 public:
  RecordRenewal() = default;
  ~RecordRenewal() {
    try {
      PerfMessages::static_cdm_ = std::make_shared<PcLogPerformanceSamplesAsCDM>();
    } catch (const std::bad_alloc&) {
      if (PerfMessages::static_cdm_ != nullptr) PerfMessages::static_cdm_->Clear();
    }
  }
  RecordRenewal(const RecordRenewal&) = delete;
  RecordRenewal& operator=(const RecordRenewal&) = delete;
};

}  // namespace

void PerfMessages::ProcessStorageAndUpload() {
  if (perf_handle_ == nullptr) {
    PLOG_ERROR << "PerfMessages::ProcessStorageAndUpload - perf_handle_ is null.";
    return;
  }
  const RecordRenewal renewal;
  std::vector<Error> store_failures;
  if (amd_pmf_ != nullptr) {
    amd_pmf_->set_local_time(CurrentOffsetForm());
    const Error outcome = Collector()->AddStoreWrapper(*amd_pmf_);
    if (outcome.Failed()) store_failures.push_back(StoreFailure(outcome, kAmdPmfNames));
  }
  for (const Error& failure : store_failures) PLOG_ERROR << LogText(failure.description);
  if (static_cdm_ != nullptr) {
    Stamp(*static_cdm_, CurrentRecordForm());
    Collector()->AddSendWrapper(*static_cdm_);
  }
}

void PerfMessages::AddSendWrapper(const google::protobuf::Message& message) {
  if (perf_handle_ == nullptr) return;
  AddSendWrapper(message, CurrentRecordForm());
}

void PerfMessages::AddSendWrapper(const google::protobuf::Message& message, const std::string& time) {
  if (perf_handle_ == nullptr) return;
  Stamp(*cdm_, time);
  Collector()->AddSendWrapper(message);
}

}  // namespace zt::telemetry::collector::performancesamples
