#pragma once

#include <google/protobuf/message.h>

#include <memory>

#include "zt/zt_commons_export.h"

namespace zt::telemetry::common {

/// Shared ownership of messages whose type is known at run time only.
class ZT_COMMONS_EXPORT SharedPtrTool {
 public:
  /// A shared copy of `message`, of the same message type.
  static std::shared_ptr<google::protobuf::Message> Create(const google::protobuf::Message& message);
};

}  // namespace zt::telemetry::common
