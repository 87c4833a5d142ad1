#include "fleet/forward/record_maker.h"

#include <google/protobuf/stubs/logging.h>
#include <google/protobuf/util/json_util.h>

#include <array>
#include <cstdint>
#include <optional>
#include <utility>

#include <nlohmann/json.hpp>

#include "device_performance_storage.pb.h"
#include "host/report/record_bytes.h"
#include "host/report/record_identity.h"
#include "performance_samples_upload.pb.h"

namespace zt::telemetry::fleet {
namespace {

using google::protobuf::Message;
using Upload = contract::upload::log::PcLogPerformanceSamplesAsCDM;
using Storage = contract::storage::device_performance::AmdPmfSamples;

constexpr char kTextMessage[] = "text";
// An identity has 30 characters; that of an hourly record begins with 15 of the hour.
constexpr std::size_t kKeyLength = 15;
constexpr int kDeepestJson = 64;  // a record's own is 8 deep
constexpr char kExpectedLine[] = R"(; expected a hand-over as one line: {"handover":…,"type":…,"record":{…}})";

BadRecord Bad(std::string_view bytes, const std::string& reason) {
  return {std::string(bytes), reason};
}

// Nothing for what is no JSON, or nested so deep that reading it could use up the stack.
std::optional<nlohmann::json> ParseLine(std::string_view line) {
  bool too_deep = false;
  const auto shallow = [&too_deep](int depth, nlohmann::json::parse_event_t, const nlohmann::json&) {
    too_deep = too_deep || depth > kDeepestJson;
    return depth <= kDeepestJson;
  };
  nlohmann::json json = nlohmann::json::parse(line, shallow, /*allow_exceptions=*/false);
  if (json.is_discarded() || too_deep) return std::nullopt;
  return json;
}

std::string TextMember(const nlohmann::json& json, const char* name) {
  const auto found = json.find(name);
  return found != json.end() && found->is_string() ? found->get<std::string>() : std::string();
}

// FNV-1a: the same on every machine, and no secret.
std::string Digest(std::string_view bytes) {
  constexpr std::uint64_t kBasis = 0xCBF29CE484222325;
  constexpr std::uint64_t kPrime = 0x100000001B3;
  std::uint64_t hash = kBasis;
  for (const char byte : bytes) hash = (hash ^ static_cast<unsigned char>(byte)) * kPrime;
  constexpr std::array kDigits = {'0', '1', '2', '3', '4', '5', '6', '7', '8', '9', 'a', 'b', 'c', 'd', 'e', 'f'};
  constexpr unsigned kBitsOfDigit = 4;
  constexpr unsigned kLastDigit = 0xF;
  std::string text(sizeof(hash) * 2, '0');
  for (auto digit = text.rbegin(); digit != text.rend(); ++digit, hash >>= kBitsOfDigit) {
    *digit = kDigits.at(hash & kLastDigit);
  }
  return text;
}

// An hourly record that the collector sends again tells another time of its sending, and is the same all the same. A
// record without an identity is told apart by its bytes alone.
std::string PartOf(const Message& record, std::string_view bytes, const host::RecordIdentity& identity) {
  const bool is_hourly = identity.kind == host::RecordKind::kThermal || identity.kind == host::RecordKind::kNetwork;
  if (!is_hourly) return Digest(bytes);
  Upload samples(dynamic_cast<const Upload&>(record));
  samples.clear_local_time();
  return Digest(samples.SerializePartialAsString());
}

}  // namespace

std::string UploadType() {
  return std::string(Upload::descriptor()->full_name());
}

std::string StorageType() {
  return std::string(Storage::descriptor()->full_name());
}

std::string MachineKey(std::string_view serial) {
  return std::string(serial.substr(0, kKeyLength));
}

RecordMaker::RecordMaker(std::string contract_version)
    : contract_version_(std::move(contract_version)), upload_(std::make_unique<Upload>()) {}

RecordMaker::~RecordMaker() = default;

Record RecordMaker::Described(const Message& record, std::string_view bytes, const std::string& version) const {
  const host::RecordIdentity identity = host::IdentityOf(record);
  Record described;
  described.type = record.GetTypeName();
  described.bytes = bytes;
  described.machine = MachineKey(identity.serial);
  if (const auto* const upload = dynamic_cast<const Upload*>(&record)) {
    described.collection_id = upload->collection_id();
    described.topic = UploadTopicOf(*upload);
  }
  described.contract_version = version.empty() ? contract_version_ : version;
  described.part = PartOf(record, bytes, identity);
  return described;
}

MadeRecord RecordMaker::OfLine(std::string_view line) {
  const std::optional<nlohmann::json> json = ParseLine(line);
  if (!json.has_value()) return Bad(line, std::string("this is no JSON") + kExpectedLine);
  if (!json->is_object()) return Bad(line, std::string("this is no JSON object") + kExpectedLine);
  const std::string type = TextMember(*json, "type");
  if (type == kTextMessage) return TextHandOver{};
  const std::unique_ptr<Message> record = host::NewRecord(type);
  if (record == nullptr) return Bad(line, "\"type\" names no record of the contract" + std::string(kExpectedLine));
  const auto figures = json->find("record");
  if (figures == json->end() || !figures->is_object()) {
    return Bad(line, std::string("\"record\" is missing, or no object") + kExpectedLine);
  }
  google::protobuf::util::JsonParseOptions options;
  options.ignore_unknown_fields = true;  // those of a newer collector: the rest is read all the same
  const auto status = google::protobuf::util::JsonStringToMessage(figures->dump(), record.get(), options);
  if (!status.ok()) return Bad(line, "the record cannot be read as a " + type + ": " + std::string(status.message()));
  Record described = Described(*record, record->SerializePartialAsString(), TextMember(*json, "contract_version"));
  if (described.machine.empty()) described.machine = MachineKey(TextMember(*json, "serial"));
  return described;
}

MadeRecord RecordMaker::OfBytes(const std::string& type, std::string_view bytes, const std::string& contract_version) {
  const google::protobuf::LogSilencer no_complaints;  // about texts, on standard error
  if (type == upload_->GetTypeName()) {
    if (upload_->ParsePartialFromArray(bytes.data(), static_cast<int>(bytes.size()))) {
      const auto& upload = dynamic_cast<const Upload&>(*upload_);
      if (!upload.has_collection_id() && !upload.has_local_time()) {
        return Bad(bytes, "the record has neither an identity nor a time; expected a " + type);
      }
      return Described(*upload_, bytes, contract_version);
    }
  }
  // Also mends texts that are no UTF-8, which those who read the topic would refuse.
  const std::unique_ptr<Message> record = host::RecordFromBytes(type, std::string(bytes));
  if (record != nullptr) return Described(*record, record->SerializePartialAsString(), contract_version);
  if (host::NewRecord(type) == nullptr) return Bad(bytes, "\"" + type + "\" is no record of the contract");
  return Bad(bytes, "these bytes are no " + type);
}

}  // namespace zt::telemetry::fleet
