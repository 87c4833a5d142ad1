#pragma once

#include "host/consent/consent.h"
#include "host/inspection/network_report.h"

namespace zt::telemetry::host {

/// Drops or hashes what identifies in a machine's network, names of interfaces included. The section itself is the
/// caller's: with it off there is nothing to show.
void ApplyConsent(const Consent& consent, inspection::NetworkReport& report);

}  // namespace zt::telemetry::host
