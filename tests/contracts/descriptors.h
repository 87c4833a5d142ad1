#pragma once

#include <google/protobuf/descriptor.h>

#include <string>
#include <vector>

#include "device_performance_storage.pb.h"
#include "performance_samples_upload.pb.h"

namespace zt::tests {

inline const google::protobuf::FileDescriptor& UploadFile() {
  return *telemetry::contract::upload::log::PcLogPerformanceSamplesAsCDM::descriptor()->file();
}

inline const google::protobuf::FileDescriptor& StorageFile() {
  return *telemetry::contract::storage::device_performance::AmdPmfSamples::descriptor()->file();
}

/// Adds `message` and all messages in it.
inline void CollectMessages(const google::protobuf::Descriptor& message,
                            std::vector<const google::protobuf::Descriptor*>& messages) {
  messages.push_back(&message);
  for (int i = 0; i < message.nested_type_count(); ++i) CollectMessages(*message.nested_type(i), messages);
}

/// Every message of a file, nested ones included.
inline std::vector<const google::protobuf::Descriptor*> Messages(const google::protobuf::FileDescriptor& file) {
  std::vector<const google::protobuf::Descriptor*> messages;
  for (int i = 0; i < file.message_type_count(); ++i) CollectMessages(*file.message_type(i), messages);
  return messages;
}

/// Full name of a message below its package.
inline std::string NameInPackage(const google::protobuf::Descriptor& message) {
  return std::string(message.full_name().substr(message.file()->package().size() + 1));
}

/// A scalar's type, or the name of a field's message.
inline std::string TypeName(const google::protobuf::FieldDescriptor& field) {
  return field.message_type() != nullptr ? NameInPackage(*field.message_type()) : std::string(field.type_name());
}

}  // namespace zt::tests
