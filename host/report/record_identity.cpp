#include "host/report/record_identity.h"

#include <algorithm>
#include <charconv>
#include <string_view>

#include "host/utc_time.h"
#include "performance_samples_upload.pb.h"

namespace zt::telemetry::host {
namespace {

using google::protobuf::FieldDescriptor;
using google::protobuf::Message;
using Upload = contract::upload::log::PcLogPerformanceSamplesAsCDM;

namespace chrono = std::chrono;

constexpr std::size_t kLongestId = 30;
constexpr std::size_t kTimeLength = 19;  // "2026-03-07T14:00:30"
constexpr std::size_t kHourLength = 13;  // "2026-03-07T14"
constexpr std::string_view kHourMark = "H_";
constexpr std::string_view kThermalSuffix = "-TH";
constexpr std::string_view kNetworkSuffix = "-NE";

std::optional<chrono::sys_seconds> WallClock(std::string_view text) {
  return text.size() < kTimeLength ? std::nullopt : ParseUtcTime(text.substr(0, kTimeLength));
}

// "-03:00" behind the time.
std::optional<chrono::minutes> ZoneOf(std::string_view text) {
  constexpr std::size_t kLength = 6;
  if (text.size() != kTimeLength + kLength) return std::nullopt;
  text.remove_prefix(kTimeLength);
  if ((text[0] != '+' && text[0] != '-') || text[3] != ':') return std::nullopt;
  unsigned hours = 0;
  unsigned minutes = 0;
  if (std::from_chars(text.data() + 1, text.data() + 3, hours).ptr != text.data() + 3 ||
      std::from_chars(text.data() + 4, text.data() + 6, minutes).ptr != text.data() + 6) {
    return std::nullopt;
  }
  const chrono::minutes ahead = chrono::hours(hours) + chrono::minutes(minutes);
  return text[0] == '-' ? -ahead : ahead;
}

// The hour with which the identity of an hourly record begins.
std::optional<chrono::sys_seconds> HourOfId(std::string_view id) {
  if (id.size() < kHourLength + kHourMark.size() || id.substr(kHourLength, kHourMark.size()) != kHourMark) {
    return std::nullopt;
  }
  return ParseUtcTime(std::string(id.substr(0, kHourLength)) + ":00");
}

// The serial number between the hour and the suffix, of which cutting may have left a part or nothing.
void ReadHourlySerial(std::string_view id, std::string_view suffix, RecordIdentity& identity) {
  std::string_view rest = id.substr(kHourLength + kHourMark.size());
  for (std::string_view end = suffix; !end.empty(); end.remove_suffix(1)) {
    if (!rest.ends_with(end) || (end.size() < suffix.size() && id.size() < kLongestId)) continue;
    rest.remove_suffix(end.size());
    identity.serial = rest;
    return;
  }
  identity.serial = rest;
  identity.serial_is_cut = id.size() >= kLongestId;
}

// The serial number before "_" and the time, of which cutting may have left a part or nothing.
void ReadLiveSerial(std::string_view id, std::string_view time, RecordIdentity& identity) {
  for (std::size_t at = id.find('_'); at != std::string_view::npos; at = id.find('_', at + 1)) {
    const std::string_view end = id.substr(at + 1);
    if (!time.starts_with(end) || (end.size() < time.size() && id.size() < kLongestId)) continue;
    identity.serial = id.substr(0, at);
    return;
  }
  identity.serial = id;
  identity.serial_is_cut = id.size() >= kLongestId;
}

RecordIdentity IdentityOfUpload(const Upload& upload) {
  RecordIdentity identity;
  const std::string& id = upload.collection_id();
  if (const auto hour = HourOfId(id); hour.has_value()) {
    const bool network = upload.hw_info().has_network_info();
    identity.kind = network ? RecordKind::kNetwork : RecordKind::kThermal;
    identity.time = hour;
    ReadHourlySerial(id, network ? kNetworkSuffix : kThermalSuffix, identity);
  } else {
    identity.time = WallClock(upload.local_time());
    ReadLiveSerial(id, upload.local_time(), identity);
  }
  return identity;
}

}  // namespace

RecordIdentity IdentityOf(const Message& record) {
  if (const auto* const upload = dynamic_cast<const Upload*>(&record)) return IdentityOfUpload(*upload);
  RecordIdentity identity{RecordKind::kStored, {}, false, {}, {}};
  const FieldDescriptor* const field = record.GetDescriptor()->FindFieldByName("local_time");
  if (field == nullptr || field->is_repeated() || field->type() != FieldDescriptor::TYPE_STRING) return identity;
  const std::string time = record.GetReflection()->GetString(record, field);
  identity.time = WallClock(time);
  identity.zone = ZoneOf(time);
  return identity;
}

}  // namespace zt::telemetry::host
