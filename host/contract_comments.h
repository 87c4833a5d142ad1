#pragma once

#include <google/protobuf/descriptor.h>

#include <map>
#include <string>

namespace zt::telemetry::host {

/// What the contract says of each message and field: the comment above it in its `.proto` file, as one line. Comments
/// are in no generated class, so they are read from the contract's files themselves.
class ContractComments {
 public:
  ContractComments();

  /// Empty where there is none.
  std::string Of(const google::protobuf::FieldDescriptor& field) const;
  std::string Of(const google::protobuf::Descriptor& message) const;

 private:
  std::string Find(const std::string& full_name) const;

  std::map<std::string, std::string> by_name_;
};

}  // namespace zt::telemetry::host
