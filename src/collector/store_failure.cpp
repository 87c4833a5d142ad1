#include "collector/store_failure.h"

#include <string>

namespace zt::telemetry::collector::performancesamples {
namespace {

using common::Error;

// No blank before the name to fill in: log readers match the text as it is.
constexpr char kTemplate[] = "PerfMessages::ProcessStorageAndUpload - AddStore failed for$PROTO$.pb.h";
constexpr char kPlaceholder[] = "$PROTO$";

}  // namespace

Error StoreFailure(const Error& cause, const StoredRecordNames& record) {
  std::string message = kTemplate;
  message.replace(message.find(kPlaceholder), sizeof kPlaceholder - 1, record.short_name);
  return {Error::kCallFailed, cause.code, cause.description, std::string(record.type), message};
}

}  // namespace zt::telemetry::collector::performancesamples
