#include "host/configuration/configuration.h"

namespace zt::telemetry::host {

OutboxLimits Configuration::Limits() const {
  return {max_bytes.value, std::chrono::days(max_days.value)};
}

Consent Configuration::GivenConsent() const {
  Consent consent;
  for (std::size_t i = 0; i < sections.size(); ++i) consent.sections.at(i) = sections.at(i).value;
  for (std::size_t i = 0; i < identities.size(); ++i) consent.identities.at(i) = identities.at(i).value;
  consent.key = key.value;
  return consent;
}

}  // namespace zt::telemetry::host
