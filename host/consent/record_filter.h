#pragma once

#include <google/protobuf/message.h>

#include "host/consent/consent.h"

namespace zt::telemetry::host {

/// Takes out of `record` what `consent` does not include, with it what belongs to no section, and drops or hashes what
/// identifies. False when nothing of it
/// may be told: it held nothing but what was taken out, or nobody knows what is in records of its type.
bool ApplyConsent(const Consent& consent, google::protobuf::Message& record);

/// A value as `treatment` leaves it: as it is, empty, or a hash under the key of `consent`. An empty one stays empty.
std::string Treated(const Consent& consent, Treatment treatment, const std::string& value);

}  // namespace zt::telemetry::host
