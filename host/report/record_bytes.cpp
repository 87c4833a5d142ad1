#include "host/report/record_bytes.h"

#include <google/protobuf/descriptor.h>
#include <google/protobuf/stubs/logging.h>
#include <google/protobuf/unknown_field_set.h>
#include <utf8.h>

#include <iterator>

namespace zt::telemetry::host {
namespace {

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;
using google::protobuf::Message;
using google::protobuf::UnknownField;
using google::protobuf::UnknownFieldSet;

// Mends the texts of a message whose fields were read without regard to their types.
void MendTexts(UnknownFieldSet& fields, const Descriptor& type) {
  for (int i = 0; i < fields.field_count(); ++i) {
    UnknownField* const value = fields.mutable_field(i);
    const FieldDescriptor* const field = type.FindFieldByNumber(value->number());
    if (field == nullptr || value->type() != UnknownField::TYPE_LENGTH_DELIMITED) continue;
    std::string* const bytes = value->mutable_length_delimited();
    if (field->type() == FieldDescriptor::TYPE_STRING) *bytes = ValidUtf8(*bytes);
    if (field->type() != FieldDescriptor::TYPE_MESSAGE) continue;
    UnknownFieldSet inner;
    if (!inner.ParseFromString(*bytes)) continue;
    MendTexts(inner, *field->message_type());
    inner.SerializeToString(bytes);
  }
}

bool ReadMended(Message& record, const std::string& bytes) {
  UnknownFieldSet fields;
  if (!fields.ParseFromString(bytes)) return false;
  MendTexts(fields, *record.GetDescriptor());
  std::string mended;
  return fields.SerializeToString(&mended) && record.ParsePartialFromString(mended);
}

}  // namespace

std::string ValidUtf8(const std::string& text) {
  std::string valid;
  valid.reserve(text.size());
  utf8::replace_invalid(text.begin(), text.end(), std::back_inserter(valid));
  return valid;
}

std::unique_ptr<Message> NewRecord(const std::string& type) {
  const Descriptor* const descriptor = google::protobuf::DescriptorPool::generated_pool()->FindMessageTypeByName(type);
  if (descriptor == nullptr) return nullptr;
  return std::unique_ptr<Message>(
      google::protobuf::MessageFactory::generated_factory()->GetPrototype(descriptor)->New());
}

std::unique_ptr<Message> RecordFromBytes(const std::string& type, const std::string& bytes) {
  std::unique_ptr<Message> record = NewRecord(type);
  if (record == nullptr) return nullptr;
  const google::protobuf::LogSilencer no_complaints;  // about texts, on standard error
  if (record->ParsePartialFromString(bytes) || ReadMended(*record, bytes)) return record;
  return nullptr;
}

}  // namespace zt::telemetry::host
