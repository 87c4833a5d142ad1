#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

#include "host/consent/keyed_hash.h"

namespace zt::telemetry::host {

/// A part of the records that can be switched off.
enum class RecordSection {
  kProcessors,
  kSystemBoard,
  kFans,
  kBatteries,
  kDeviceState,
  kMemory,
  kGraphicsCards,
  kNpus,
  kDrives,
  kNetwork,
  kProcesses,
  kSession,
};

/// The sections by the names of the configuration, in the order of the enumeration.
inline constexpr std::array<std::string_view, 12> kSectionNames = {
    "processors",     "system_board", "fans",   "batteries", "device_state", "memory",
    "graphics_cards", "npus",         "drives", "network",   "processes",    "session"};

/// What can tell one machine or one person from another, wherever it stands in the records.
enum class Identity {
  kSerialNumbers,
  kProcessNames,
  kProcessStartTimes,
  kInterfaceIdentifiers,
  kWifiProfiles,
  kDeviceIdentifiers,
};

/// The identities by the names of the configuration, in the order of the enumeration.
inline constexpr std::array<std::string_view, 6> kIdentityNames = {"serial_numbers",      "process_names",
                                                                   "process_start_times", "interface_identifiers",
                                                                   "wifi_profiles",       "device_identifiers"};

/// What becomes of an identity.
enum class Treatment { kKeep, kDrop, kHash };

/// What the user of the machine agrees to have in records, on a screen, in files and in the log.
struct Consent {
  std::array<bool, kSectionNames.size()> sections;
  std::array<Treatment, kIdentityNames.size()> identities{};
  /// There is one where an identity is hashed.
  std::optional<HashKey> key;

  /// To everything.
  Consent() { sections.fill(true); }

  bool Includes(RecordSection section) const { return sections.at(static_cast<std::size_t>(section)); }
  Treatment Of(Identity identity) const { return identities.at(static_cast<std::size_t>(identity)); }

  /// Whether everything may be told. Else a text of which nobody knows what is in it may not.
  bool IsWhole() const {
    return std::ranges::all_of(sections, [](bool included) { return included; }) &&
           std::ranges::all_of(identities, [](Treatment treatment) { return treatment == Treatment::kKeep; });
  }
};

}  // namespace zt::telemetry::host
