#pragma once

#include <google/protobuf/descriptor.h>

#include <map>
#include <string>

namespace zt::telemetry::host {

/// What the contract says of its messages and fields: the comments of its files, which the program carries with it.
class Definitions {
 public:
  Definitions();

  /// The comment above a field, or a message, on one line; empty where there is none.
  const std::string& Of(const google::protobuf::FieldDescriptor& field) const;
  const std::string& Of(const google::protobuf::Descriptor& message) const;

 private:
  const std::string& Find(const std::string& full_name) const;

  std::map<std::string, std::string> by_name_;
};

}  // namespace zt::telemetry::host
