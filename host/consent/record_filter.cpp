#include "host/consent/record_filter.h"

#include <algorithm>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "contract_annotations.pb.h"
#include "host/consent/collection_identity.h"
#include "host/consent/record_places.h"

namespace zt::telemetry::host {
namespace {

using google::protobuf::FieldDescriptor;
using google::protobuf::Message;
using Act = std::function<void(Message& parent, const FieldDescriptor& field)>;

constexpr char kIdentityField[] = "collection_id";
constexpr char kTimeField[] = "local_time";

// Acts on the field at `path` in each message that holds it.
void ForEachAt(Message& message, std::string_view path, const Act& act) {
  const std::size_t dot = path.find('.');
  const FieldDescriptor* const field = message.GetDescriptor()->FindFieldByName(std::string(path.substr(0, dot)));
  if (field == nullptr) return;
  if (dot == std::string_view::npos) return act(message, *field);
  const std::string_view rest = path.substr(dot + 1);
  const auto& reflection = *message.GetReflection();
  if (!field->is_repeated()) {
    if (reflection.HasField(message, field)) ForEachAt(*reflection.MutableMessage(&message, field), rest, act);
    return;
  }
  for (int i = 0; i < reflection.FieldSize(message, field); ++i) {
    ForEachAt(*reflection.MutableRepeatedMessage(&message, field, i), rest, act);
  }
}

std::vector<const FieldDescriptor*> SetFields(const Message& message) {
  std::vector<const FieldDescriptor*> fields;
  message.GetReflection()->ListFields(message, &fields);
  return fields;
}

bool IsHeading(const FieldDescriptor& field) {
  return field.options().GetExtension(contract::shown).heading() != contract::NO_HEADING;
}

bool HoldsMoreThanHeadings(const Message& record) {
  return std::ranges::any_of(SetFields(record), [](const FieldDescriptor* field) { return !IsHeading(*field); });
}

// A message that held nothing but sections that are gone tells that there were some.
void ClearEmptyParts(Message& record) {
  const auto& reflection = *record.GetReflection();
  for (const FieldDescriptor* const field : SetFields(record)) {
    const bool is_part = field->message_type() != nullptr && !field->is_repeated();
    if (is_part && reflection.GetMessage(record, field).ByteSizeLong() == 0) reflection.ClearField(&record, field);
  }
}

// Whether a section is, or lies in, the field at `path`.
bool HoldsSection(std::string_view record, std::string_view path) {
  return std::ranges::any_of(SectionPlaces(), [&](const SectionPlace& section) {
    const std::string_view place = section.place.path;
    return section.place.record == record && place.starts_with(path) &&
           (place.size() == path.size() || place[path.size()] == '.');
  });
}

bool IsSectionPlace(std::string_view record, std::string_view path) {
  return std::ranges::any_of(SectionPlaces(), [&](const SectionPlace& section) {
    return section.place.record == record && section.place.path == path;
  });
}

// What is of no section cannot be switched off: nobody has agreed to it. False when nothing of the kind was there.
bool TakeStrangersOut(std::string_view record, const std::string& prefix, Message& part) {
  bool any = false;
  const auto& reflection = *part.GetReflection();
  for (const FieldDescriptor* const field : SetFields(part)) {
    const std::string path = prefix + field->name();
    if (IsHeading(*field) || IsSectionPlace(record, path)) continue;
    if (HoldsSection(record, path)) {
      any = TakeStrangersOut(record, path + ".", *reflection.MutableMessage(&part, field)) || any;
      continue;
    }
    reflection.ClearField(&part, field);
    any = true;
  }
  return any;
}

// False when nothing was there to be taken out.
bool TakeSectionsOut(const Consent& consent, Message& record) {
  bool any = false;
  for (const SectionPlace& section : SectionPlaces()) {
    if (consent.Includes(section.section) || section.place.record != record.GetTypeName()) continue;
    ForEachAt(record, section.place.path, [&](Message& parent, const FieldDescriptor& field) {
      const auto& reflection = *parent.GetReflection();
      any =
          any || (field.is_repeated() ? reflection.FieldSize(parent, &field) > 0 : reflection.HasField(parent, &field));
      reflection.ClearField(&parent, &field);
    });
  }
  any = TakeStrangersOut(record.GetTypeName(), "", record) || any;
  if (any) ClearEmptyParts(record);
  return any;
}

void SetText(Message& parent, const FieldDescriptor& field, const std::string& text) {
  if (text.empty()) return parent.GetReflection()->ClearField(&parent, &field);
  parent.GetReflection()->SetString(&parent, &field, text);
}

std::string TextOfField(const Message& record, const char* name) {
  const FieldDescriptor* const field = record.GetDescriptor()->FindFieldByName(name);
  return field != nullptr ? record.GetReflection()->GetString(record, field) : "";
}

void TreatIdentities(const Consent& consent, Message& record) {
  for (const IdentityPlace& identity : IdentityPlaces()) {
    const Treatment treatment = consent.Of(identity.identity);
    if (treatment == Treatment::kKeep || identity.place.record != record.GetTypeName()) continue;
    ForEachAt(record, identity.place.path, [&](Message& parent, const FieldDescriptor& field) {
      const std::string value = parent.GetReflection()->GetString(parent, &field);
      if (!value.empty()) SetText(parent, field, Treated(consent, treatment, value));
    });
  }
}

void TreatCollectionIdentity(const Consent& consent, Message& record) {
  const Treatment treatment = consent.Of(Identity::kSerialNumbers);
  const std::string text = TextOfField(record, kIdentityField);
  if (treatment == Treatment::kKeep || text.empty()) return;
  const CollectionIdentity identity = ReadCollectionIdentity(text, TextOfField(record, kTimeField));
  const std::string treated = Treated(consent, treatment, identity.serial_number).substr(0, kSerialNumberRoom);
  SetText(record, *record.GetDescriptor()->FindFieldByName(kIdentityField), identity.With(treated));
}

}  // namespace

bool ApplyConsent(const Consent& consent, Message& record) {
  if (consent.IsWhole()) return true;
  if (!IsKnownRecord(record.GetTypeName())) return false;
  record.DiscardUnknownFields();
  TreatCollectionIdentity(consent, record);
  TreatIdentities(consent, record);
  return !TakeSectionsOut(consent, record) || HoldsMoreThanHeadings(record);
}

std::string Treated(const Consent& consent, Treatment treatment, const std::string& value) {
  if (treatment == Treatment::kKeep || value.empty()) return value;
  return treatment == Treatment::kHash ? KeyedHash(consent.key.value(), value) : std::string();
}

}  // namespace zt::telemetry::host
