#include "platform/wlan_service.h"

#include <zt/text/wide_text.h>

#include <algorithm>
#include <limits>
#include <utility>

#include "platform/simulated/answers.h"
#include "platform/simulated/disturbed.h"
#include "platform/simulated/guid_text.h"
#include "simulation/calls.h"
#include "simulation/handed_out.h"
#include "simulation/machine.h"

namespace zt::telemetry::collector::performancesamples::platform {
namespace {

using Texts = std::optional<std::vector<std::wstring>>;

// What a disturbed list gives; `undisturbed` where it is not.
template <typename List>
Texts Listed(const char* call, const List& undisturbed) {
  switch (simulation::Announce(call, {Disturbance::kFails, Disturbance::kEmpty, Disturbance::kAbsurd})) {
    case Disturbance::kFails:
      return std::nullopt;
    case Disturbance::kEmpty:
      return Texts(std::in_place);
    case Disturbance::kAbsurd:
      return Texts(std::in_place, kAbsurdlyMany, L"x");
    default:
      return undisturbed();
  }
}

}  // namespace

// The service when it was opened.
struct WlanService::Handle {
  simulation::Wlan wlan;
  simulation::HandedOutThing counted{"WLAN service"};

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
  const Disturbance met = simulation::Announce("WlanOpenHandle", {Disturbance::kFails, Disturbance::kNull});
  if (met == Disturbance::kFails) return {std::nullopt, kRefusedBySystem};
  if (met == Disturbance::kNull) return {};
  if (wlan->open != 0) return {std::nullopt, static_cast<std::uint32_t>(wlan->open)};
  return {WlanService(std::make_unique<Handle>(Handle{*wlan}))};
}

std::optional<std::vector<std::wstring>> WlanService::Interfaces() const {
  return Listed("WlanEnumInterfaces", [this]() -> Texts {
    if (handle_->wlan.enumerate != 0) return std::nullopt;
    std::vector<std::wstring> guids;
    for (const simulation::WlanInterface& known : handle_->wlan.interfaces) {
      guids.push_back(simulation::GuidText(known.guid));
    }
    return guids;
  });
}

std::optional<WlanConnection> WlanService::CurrentConnection(const std::wstring& interface_guid) const {
  const simulation::WlanInterface* const found = handle_->Find(interface_guid);
  const Disturbance met = simulation::Announce("WlanQueryInterface connection",
                                               {Disturbance::kFails, Disturbance::kAbsurd, Disturbance::kEmpty});
  if (met == Disturbance::kFails) return std::nullopt;
  if (met == Disturbance::kAbsurd) {
    // A profile's name has 256 characters at most, its end included.
    return WlanConnection{kWlanStateConnected, std::wstring(255, L'x'), kAbsurdFigure,
                          kAbsurdFigure,       kAbsurdFigure,           kAbsurdFigure};
  }
  if (met == Disturbance::kEmpty) return WlanConnection{};
  if (found == nullptr || found->connection != 0) return std::nullopt;
  return WlanConnection{found->state,          text::ToWide(found->profile), found->phy_type,
                        found->signal_quality, found->rx_rate_kbps,          found->tx_rate_kbps};
}

std::optional<std::vector<std::wstring>> WlanService::ProfileNames(const std::wstring& interface_guid) const {
  const simulation::WlanInterface* const found = handle_->Find(interface_guid);
  return Listed("WlanGetProfileList", [found]() -> Texts {
    if (found == nullptr || found->profile_list != 0) return std::nullopt;
    std::vector<std::wstring> names;
    for (const simulation::WlanProfile& profile : found->profiles) names.push_back(text::ToWide(profile.name));
    return names;
  });
}

std::optional<WlanProfile> WlanService::Profile(const std::wstring& interface_guid, const std::wstring& name) const {
  const simulation::WlanInterface* const found = handle_->Find(interface_guid);
  switch (
      simulation::Announce("WlanGetProfile", {Disturbance::kFails, Disturbance::kEmpty, Disturbance::kEndlessText})) {
    case Disturbance::kFails:
      return std::nullopt;
    case Disturbance::kEmpty:
      return WlanProfile{};
    case Disturbance::kEndlessText:
      return WlanProfile{L"<authentication>" + text::ToWide(simulation::EndlessText()), kAbsurdFigure};
    default:
      break;
  }
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
  const Disturbance met =
      simulation::Announce("WlanQueryInterface channel", {Disturbance::kFails, Disturbance::kAbsurd});
  if (met == Disturbance::kFails) return std::nullopt;
  if (met == Disturbance::kAbsurd) return kAbsurdFigure;
  return found != nullptr ? simulation::Given(found->channel) : std::nullopt;
}

}  // namespace zt::telemetry::collector::performancesamples::platform
