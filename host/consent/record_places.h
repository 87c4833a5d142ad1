#pragma once

#include <span>
#include <string_view>

#include "host/consent/consent.h"

namespace zt::telemetry::host {

/// A field of a record.
struct FieldPlace {
  /// Full name of the record's message.
  std::string_view record;
  /// Names of fields joined by dots, from the record on; of a repeated field each entry is meant.
  std::string_view path;
};

/// A field that belongs to a section: not in the record where that is switched off.
struct SectionPlace {
  RecordSection section;
  FieldPlace place;
};

/// A text that is an identity.
struct IdentityPlace {
  Identity identity;
  FieldPlace place;
};

/// All fields of the contract that belong to sections. What else is no heading of its record cannot be switched off,
/// and is held back where anything is.
std::span<const SectionPlace> SectionPlaces();

/// All texts of the contract that identify, but for the collection's identity, which holds the serial number beside
/// other things.
std::span<const IdentityPlace> IdentityPlaces();

/// Whether what is in the records of this message is known. Nothing else may be let through where a part is held back.
bool IsKnownRecord(std::string_view message);

}  // namespace zt::telemetry::host
