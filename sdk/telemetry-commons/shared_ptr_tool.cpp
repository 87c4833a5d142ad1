#include "zt/telemetry/common/shared_ptr_tool.h"

namespace zt::telemetry::common {

std::shared_ptr<google::protobuf::Message> SharedPtrTool::Create(const google::protobuf::Message& message) {
  std::shared_ptr<google::protobuf::Message> copy(message.New());
  copy->CopyFrom(message);
  return copy;
}

}  // namespace zt::telemetry::common
