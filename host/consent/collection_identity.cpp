#include "host/consent/collection_identity.h"

#include <array>
#include <cctype>
#include <string_view>

namespace zt::telemetry::host {
namespace {

constexpr std::size_t kLongestIdentity = 30;
constexpr std::string_view kHourForm = "0000-00-00T00H_";

bool StartsWithHour(std::string_view identity) {
  if (identity.size() < kHourForm.size()) return false;
  for (std::size_t i = 0; i < kHourForm.size(); ++i) {
    const bool fits =
        kHourForm[i] == '0' ? std::isdigit(static_cast<unsigned char>(identity[i])) != 0 : identity[i] == kHourForm[i];
    if (!fits) return false;
  }
  return true;
}

CollectionIdentity ReadHourly(const std::string& identity) {
  std::string serial_number = identity.substr(kHourForm.size());
  std::string ending;
  for (const std::string_view kind : {"-TH", "-NE"}) {
    if (!serial_number.ends_with(kind)) continue;
    ending = kind;
    serial_number.resize(serial_number.size() - kind.size());
    break;
  }
  return {identity.substr(0, kHourForm.size()), serial_number, ending};
}

}  // namespace

std::string CollectionIdentity::With(const std::string& other) const {
  return (hour + other + ending).substr(0, kLongestIdentity);
}

CollectionIdentity ReadCollectionIdentity(const std::string& identity, const std::string& local_time) {
  if (StartsWithHour(identity)) return ReadHourly(identity);
  const std::size_t end = identity.rfind('_');
  const bool has_time = end != std::string::npos && local_time.starts_with(identity.substr(end + 1));
  // The time may be cut, for a serial number that is longer than what takes its place.
  return {"", has_time ? identity.substr(0, end) : identity, "_" + local_time};
}

}  // namespace zt::telemetry::host
