#pragma once

#include <string>

namespace zt::telemetry::host {

/// The parts of a collection's identity, which holds the serial number of the machine.
struct CollectionIdentity {
  std::string hour;           // "2026-03-07T12H_" of an hourly record, else empty
  std::string serial_number;  // as much of it as the identity holds
  std::string ending;         // "-TH" or "-NE" of an hourly record, "_" and the time of a live one

  /// With another text in place of the serial number, as long as identities are at most.
  std::string With(const std::string& serial_number) const;
};

/// Characters of a serial number that leave room for everything else in every identity.
inline constexpr std::size_t kSerialNumberRoom = 10;

/// Takes an identity apart; `local_time` is that of its record. What cannot be told from a part of the serial number is
/// taken as one.
CollectionIdentity ReadCollectionIdentity(const std::string& identity, const std::string& local_time);

}  // namespace zt::telemetry::host
