#pragma once

#include <google/protobuf/message.h>

#include <memory>
#include <string>

#include "harness.h"

namespace zt::fuzz {

/// What a host does with a record: writes it and reads it again. Reading refuses texts that are no UTF-8.
inline void CheckRecord(const google::protobuf::Message& record) {
  std::string bytes;
  Require(record.SerializeToString(&bytes), "a record can be written");
  const std::unique_ptr<google::protobuf::Message> copy(record.New());
  Require(copy->ParseFromString(bytes), "a record that was written can be read");
}

}  // namespace zt::fuzz
