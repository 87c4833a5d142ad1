#pragma once

#include <google/protobuf/message.h>

#include <string>

#include "zt/telemetry/common/error.h"

namespace zt::telemetry::collector::performancesamples {

/// What is kept of a failed hand-over of `record` to the host's store: the code and description of `cause`, under the
/// record's type, with a message that names the record by its `short_name`.
common::Error StoreFailure(const common::Error& cause, const google::protobuf::Message& record,
                           const std::string& short_name);

}  // namespace zt::telemetry::collector::performancesamples
