#include "platform/wlan_service.h"

#include <zt/text/wide_text.h>

#include <algorithm>
#include <utility>

#include "platform/simulated/answers.h"
#include "platform/simulated/guid_text.h"
#include "simulation/machine.h"

namespace zt::telemetry::collector::performancesamples::platform {

// The service when it was opened.
struct WlanService::Handle {
  simulation::Wlan wlan;

  const simulation::WlanInterface* Find(const std::wstring& guid) const {
    const auto found = std::find_if(wlan.interfaces.begin(), wlan.interfaces.end(),
                                    [&](const auto& known) { return simulation::GuidText(known.guid) == guid; });
    return found != wlan.interfaces.end() ? &*found : nullptr;
  }
};

WlanService::WlanService(std::unique_ptr<Handle> handle) : handle_(std::move(handle)) {}

WlanService::~WlanService() = default;
WlanService::WlanService(WlanService&&) noexcept = default;
WlanService& WlanService::operator=(WlanService&&) noexcept = default;

WlanOpening WlanService::Open() {
  const auto& wlan = simulation::CurrentMachine().network.wlan;
  if (!wlan) return {};
  if (wlan->open != 0) return {std::nullopt, static_cast<std::uint32_t>(wlan->open)};
  return {WlanService(std::make_unique<Handle>(Handle{*wlan}))};
}

std::optional<std::vector<std::wstring>> WlanService::Interfaces() const {
  if (handle_->wlan.enumerate != 0) return std::nullopt;
  std::vector<std::wstring> guids;
  for (const simulation::WlanInterface& known : handle_->wlan.interfaces) {
    guids.push_back(simulation::GuidText(known.guid));
  }
  return guids;
}

std::optional<WlanConnection> WlanService::CurrentConnection(const std::wstring& interface_guid) const {
  const simulation::WlanInterface* const found = handle_->Find(interface_guid);
  if (found == nullptr || found->connection != 0) return std::nullopt;
  return WlanConnection{found->state,          text::ToWide(found->profile), found->phy_type,
                        found->signal_quality, found->rx_rate_kbps,          found->tx_rate_kbps};
}

std::optional<std::vector<std::wstring>> WlanService::ProfileNames(const std::wstring& interface_guid) const {
  const simulation::WlanInterface* const found = handle_->Find(interface_guid);
  if (found == nullptr || found->profile_list != 0) return std::nullopt;
  std::vector<std::wstring> names;
  for (const simulation::WlanProfile& profile : found->profiles) names.push_back(text::ToWide(profile.name));
  return names;
}

std::optional<WlanProfile> WlanService::Profile(const std::wstring& interface_guid, const std::wstring& name) const {
  const simulation::WlanInterface* const found = handle_->Find(interface_guid);
  if (found == nullptr) return std::nullopt;
  for (const simulation::WlanProfile& profile : found->profiles) {
    if (text::ToWide(profile.name) != name) continue;
    const std::optional<std::string> xml = simulation::Given(profile.xml);
    return xml ? std::optional(WlanProfile{text::ToWide(*xml), profile.flags}) : std::nullopt;
  }
  return std::nullopt;
}

std::optional<std::uint32_t> WlanService::Channel(const std::wstring& interface_guid) const {
  const simulation::WlanInterface* const found = handle_->Find(interface_guid);
  return found != nullptr ? simulation::Given(found->channel) : std::nullopt;
}

}  // namespace zt::telemetry::collector::performancesamples::platform
