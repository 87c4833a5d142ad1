#include "zt/telemetry/common/shared_ptr_tool.h"

namespace zt::telemetry::common {

std::shared_ptr<google::protobuf::Message> SharedPtrTool::Create(const google::protobuf::Message& message) {
  std::shared_ptr<google::protobuf::Message> copy(message.New());
  // Not CopyFrom, for which some builds of protobuf make their descriptions of all records: the process ends where they
  // find no memory for them.
  copy->MergeFrom(message);
  return copy;
}

}  // namespace zt::telemetry::common
