#pragma once

#include <string>

#include "host/consent/consent.h"

namespace zt::telemetry::host {

/// In place of what is held back of a text.
inline constexpr char kLeftOut[] = "[left out]";

/// A line of the collector's log, or of its failures: as it is, or, where the consent holds anything back, as much of
/// it as is known to hold no text of the machine: the collector's own words, and the number of a status behind them.
std::string ConsentedMessage(const Consent& consent, const std::string& message);

/// A query: as it is, or without the texts in it that are quoted.
std::string ConsentedQuery(const Consent& consent, const std::string& query);

}  // namespace zt::telemetry::host
