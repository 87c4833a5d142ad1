#include "host/report/definitions.h"

#include <google/protobuf/descriptor.pb.h>

#include <sstream>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "host/report/embedded.h"

namespace zt::telemetry::host {
namespace {

using google::protobuf::DescriptorProto;
using google::protobuf::FileDescriptorProto;
using google::protobuf::FileDescriptorSet;
using CommentPlace = std::vector<int>;  // of a part of a file, as the locations of its comments tell it

std::string OnOneLine(const std::string& comment) {
  std::istringstream words(comment);
  std::string text;
  for (std::string word; words >> word;) text.append(text.empty() ? "" : " ").append(word);
  return text;
}

CommentPlace Below(const CommentPlace& place, int field, int index) {
  CommentPlace below = place;
  below.push_back(field);
  below.push_back(index);
  return below;
}

// Gathers the comments of one file by the full names of what they stand above.
class FileComments {
 public:
  FileComments(const FileDescriptorProto& file, std::map<std::string, std::string>& by_name) : by_name_(by_name) {
    for (const auto& location : file.source_code_info().location()) {
      comments_[CommentPlace(location.path().begin(), location.path().end())] = OnOneLine(location.leading_comments());
    }
    for (int i = 0; i < file.message_type_size(); ++i) {
      Add(file.message_type(i), Below({}, FileDescriptorProto::kMessageTypeFieldNumber, i), file.package());
    }
  }

 private:
  void Add(const DescriptorProto& message, const CommentPlace& place, const std::string& around) {
    const std::string name = around + "." + message.name();
    by_name_[name] = comments_[place];
    for (int i = 0; i < message.field_size(); ++i) {
      by_name_[name + "." + message.field(i).name()] = comments_[Below(place, DescriptorProto::kFieldFieldNumber, i)];
    }
    for (int i = 0; i < message.nested_type_size(); ++i) {
      Add(message.nested_type(i), Below(place, DescriptorProto::kNestedTypeFieldNumber, i), name);
    }
  }

  std::map<CommentPlace, std::string> comments_;
  std::map<std::string, std::string>& by_name_;
};

}  // namespace

Definitions::Definitions() {
  const std::string_view bytes = EmbeddedContract();
  FileDescriptorSet files;
  if (!files.ParseFromArray(bytes.data(), static_cast<int>(bytes.size()))) {
    throw std::logic_error("the contract that the program carries with it cannot be read");
  }
  for (const FileDescriptorProto& file : files.file()) const FileComments comments(file, by_name_);
}

const std::string& Definitions::Of(const google::protobuf::FieldDescriptor& field) const {
  return Find(std::string(field.full_name()));
}

const std::string& Definitions::Of(const google::protobuf::Descriptor& message) const {
  return Find(std::string(message.full_name()));
}

const std::string& Definitions::Find(const std::string& full_name) const {
  static const std::string none;
  const auto found = by_name_.find(full_name);
  return found != by_name_.end() ? found->second : none;
}

}  // namespace zt::telemetry::host
