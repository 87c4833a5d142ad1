#include "host/outbox/kept_record.h"

#include <google/protobuf/descriptor.h>

namespace zt::telemetry::host {
namespace {

using google::protobuf::FieldDescriptor;
using google::protobuf::Message;

constexpr char kCollectionId[] = "collection_id";
constexpr char kLocalTime[] = "local_time";

const FieldDescriptor* TextField(const Message& record, const char* name) {
  const FieldDescriptor* const field = record.GetDescriptor()->FindFieldByName(name);
  const bool is_text = field != nullptr && !field->is_repeated() && field->type() == FieldDescriptor::TYPE_STRING;
  return is_text ? field : nullptr;
}

std::string TextOf(const Message& record, const char* name) {
  const FieldDescriptor* const field = TextField(record, name);
  return field == nullptr ? std::string() : record.GetReflection()->GetString(record, field);
}

}  // namespace

HandOver Kept(const std::string& kind, const Message& record) {
  HandOver hand_over{kind, std::string(record.GetTypeName()), TextOf(record, kCollectionId), TextOf(record, kLocalTime),
                     ""};
  if (!record.SerializePartialToString(&hand_over.bytes)) {
    throw std::runtime_error("a " + hand_over.message + " cannot be written in protobuf's form");
  }
  return hand_over;
}

HandOver KeptText(const std::string& text) {
  return {kSendKind, kTextMessage, "", "", text};
}

std::unique_ptr<Message> RecordOf(const HandOver& hand_over) {
  const google::protobuf::Descriptor* const type =
      google::protobuf::DescriptorPool::generated_pool()->FindMessageTypeByName(hand_over.message);
  if (type == nullptr) return nullptr;
  const Message* const prototype = google::protobuf::MessageFactory::generated_factory()->GetPrototype(type);
  std::unique_ptr<Message> record(prototype->New());
  if (!record->ParsePartialFromString(hand_over.bytes)) return nullptr;
  return record;
}

}  // namespace zt::telemetry::host
