#include "host/contract_comments.h"

#include <google/protobuf/descriptor.pb.h>

#include <sstream>
#include <stdexcept>
#include <vector>

#include "contracts/contract_files.h"

namespace zt::telemetry::host {
namespace {

using google::protobuf::DescriptorProto;
using google::protobuf::FileDescriptorProto;

using CommentPlace = std::vector<int>;
using Comments = std::map<std::string, std::string>;

std::string CommentLine(const std::string& comment) {
  std::istringstream words(comment);
  std::string line;
  for (std::string word; words >> word;) line.append(line.empty() ? "" : " ").append(word);
  return line;
}

std::map<CommentPlace, std::string> CommentsByPlace(const FileDescriptorProto& file) {
  std::map<CommentPlace, std::string> comments;
  for (const auto& location : file.source_code_info().location()) {
    comments[CommentPlace(location.path().begin(), location.path().end())] = CommentLine(location.leading_comments());
  }
  return comments;
}

CommentPlace Below(CommentPlace place, int kind, int index) {
  place.push_back(kind);
  place.push_back(index);
  return place;
}

void AddMessage(const DescriptorProto& message, const std::string& name, const CommentPlace& place,
                const std::map<CommentPlace, std::string>& by_place, Comments& comments) {
  const auto add = [&](const std::string& of, const CommentPlace& at) {
    if (const auto found = by_place.find(at); found != by_place.end()) comments[of] = found->second;
  };
  add(name, place);
  for (int i = 0; i < message.field_size(); ++i) {
    add(name + "." + message.field(i).name(), Below(place, DescriptorProto::kFieldFieldNumber, i));
  }
  for (int i = 0; i < message.nested_type_size(); ++i) {
    const DescriptorProto& nested = message.nested_type(i);
    AddMessage(nested, name + "." + nested.name(), Below(place, DescriptorProto::kNestedTypeFieldNumber, i), by_place,
               comments);
  }
}

}  // namespace

ContractComments::ContractComments() {
  const std::string_view bytes = contract::ContractFiles();
  google::protobuf::FileDescriptorSet files;
  if (!files.ParseFromArray(bytes.data(), static_cast<int>(bytes.size()))) {
    throw std::logic_error("the contract's files that are compiled in cannot be read");
  }
  for (const FileDescriptorProto& file : files.file()) {
    const std::map<CommentPlace, std::string> by_place = CommentsByPlace(file);
    for (int i = 0; i < file.message_type_size(); ++i) {
      const DescriptorProto& message = file.message_type(i);
      AddMessage(message, file.package() + "." + message.name(), {FileDescriptorProto::kMessageTypeFieldNumber, i},
                 by_place, by_name_);
    }
  }
}

std::string ContractComments::Of(const google::protobuf::FieldDescriptor& field) const {
  return Find(std::string(field.full_name()));
}

std::string ContractComments::Of(const google::protobuf::Descriptor& message) const {
  return Find(std::string(message.full_name()));
}

std::string ContractComments::Find(const std::string& full_name) const {
  const auto found = by_name_.find(full_name);
  return found != by_name_.end() ? found->second : std::string();
}

}  // namespace zt::telemetry::host
