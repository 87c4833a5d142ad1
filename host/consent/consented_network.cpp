#include "host/consent/consented_network.h"

#include <map>
#include <string>
#include <utility>

#include "host/consent/consented_texts.h"
#include "host/consent/record_filter.h"

namespace zt::telemetry::host {
namespace {

using inspection::types::NetworkInterfaceInfo;
using inspection::types::NetworkInterfaces;

void TreatInterface(const Consent& consent, NetworkInterfaceInfo& info) {
  const Treatment identifiers = consent.Of(Identity::kInterfaceIdentifiers);
  for (std::string* const text :
       {&info.pnp_device_id, &info.net_connection_id, &info.mac_address, &info.guid, &info.reserved_text}) {
    *text = Treated(consent, identifiers, *text);
  }
  for (auto& profile : info.w_lan_profiles) {
    profile.profile_name = Treated(consent, consent.Of(Identity::kWifiProfiles), profile.profile_name);
  }
}

// Interfaces go by their names: without one each has a number.
std::string NameOf(const Consent& consent, const std::string& name, std::size_t number) {
  const std::string treated = Treated(consent, consent.Of(Identity::kInterfaceIdentifiers), name);
  return treated.empty() ? "interface " + std::to_string(number) : treated;
}

}  // namespace

void ApplyConsent(const Consent& consent, inspection::NetworkReport& report) {
  NetworkInterfaces treated;
  for (auto& [name, info] :
       std::map<std::string, NetworkInterfaceInfo>(report.interfaces.begin(), report.interfaces.end())) {
    NetworkInterfaceInfo copy = info;
    TreatInterface(consent, copy);
    treated.emplace(NameOf(consent, name, treated.size() + 1), std::move(copy));
  }
  report.interfaces = std::move(treated);
  for (std::string& failure : report.failures) failure = ConsentedMessage(consent, failure);
}

}  // namespace zt::telemetry::host
