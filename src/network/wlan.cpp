#include <plog/Log.h>
#include <zt/text/wide_text.h>

#include <exception>
#include <stdexcept>
#include <string>
#include <vector>

#include "messages/log_text.h"
#include "network/find_by_guid.h"
#include "network/network_info_msg.h"
#include "network/network_inspection.h"
#include "network/profile_xml.h"
#include "network/wlan_vocabulary.h"
#include "platform/com_apartment.h"
#include "platform/wlan_service.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using platform::WlanService;

constexpr char kWlanComFailure[] = "COM initialization failed";

constexpr char kEnumerationFailure[] = "Failed to enumerate WiFi interfaces";
constexpr char kPassFailure[] = "Error occurred while retrieving WLAN interface statistics: ";

// Only profiles of the machine's administration, and those that connect by themselves, show their settings.
constexpr std::uint32_t kShownProfiles = platform::kWlanProfileGroupPolicy | platform::kWlanProfileConnectsByItself;

template <typename T>
T Require(std::optional<T> answer, const char* failure) {
  if (!answer) throw std::runtime_error(failure);
  return *std::move(answer);
}

// Returns the name of the profile that the interface is connected with; empty when it is not connected.
std::string ReadLink(const WlanService& wlan, const std::wstring& guid, types::NetworkInterfaceInfo& info) {
  const std::optional<platform::WlanConnection> link = wlan.CurrentConnection(guid);
  if (!link || link->state != platform::kWlanStateConnected) return {};
  info.transmission_rate = static_cast<float>(link->transmit_rate);
  info.receive_rate = static_cast<float>(link->receive_rate);
  info.signal_strength = static_cast<float>(link->signal_quality);
  const auto radio_type = kRadioTypeTexts.find(link->phy_type);
  if (radio_type != kRadioTypeTexts.end()) info.radio_type = radio_type->second;
  return text::ToUtf8(link->profile_name);
}

// False when the profile's settings cannot be had, or are not to be shown.
bool ReadSecurity(const WlanService& wlan, const std::wstring& guid, const std::wstring& name,
                  types::WLanProfile& profile) {
  const std::optional<platform::WlanProfile> settings = wlan.Profile(guid, name);
  if (!settings || (settings->flags & kShownProfiles) == 0) return false;
  const std::string xml = text::ToUtf8(settings->xml);
  profile.authentication = CutAuthentication(xml);
  profile.encryption = CutEncryption(xml);
  return true;
}

std::vector<std::wstring> ProfileNames(const WlanService& wlan, const std::wstring& guid) {
  return wlan.ProfileNames(guid).value_or(std::vector<std::wstring>());
}

// `current`: the name of the profile that the interface is connected with. Returns whether the profile, which is added
// in either case, shows its settings.
bool AddProfile(const WlanService& wlan, const std::wstring& guid, const std::wstring& name, const std::string& current,
                types::NetworkInterfaceInfo& info) {
  types::WLanProfile profile;
  profile.profile_name = text::ToUtf8(name);
  profile.is_current = !current.empty() && profile.profile_name == current;
  const bool shows_settings = ReadSecurity(wlan, guid, name, profile);
  info.w_lan_profiles.push_back(std::move(profile));
  return shows_settings;
}

// Returns whether the interface told its channel.
bool ReadChannel(const WlanService& wlan, const std::wstring& guid, types::NetworkInterfaceInfo& info) {
  const std::optional<std::uint32_t> channel = wlan.Channel(guid);
  if (channel) info.channel = *channel;
  return channel.has_value();
}

}  // namespace

// Every line is logged by this operation itself: lines bear the name of the one that logs them.
void NetworkInfoMsg::HandleWlanInfo(types::NetworkInterfaces& interfaces) {
  const platform::ComApartment com;
  if (com.Status() < 0) {
    PLOG_ERROR << kWlanComFailure;
  }
  try {
    const WlanService wlan = Require(WlanService::Open().service, kWlanOpenFailure);
    for (const std::wstring& guid : Require(wlan.Interfaces(), kEnumerationFailure)) {
      types::NetworkInterfaceInfo* const info = FindByGuid(interfaces, text::ToUtf8(guid));
      if (info == nullptr) continue;
      const std::string current = ReadLink(wlan, guid, *info);
      for (const std::wstring& name : ProfileNames(wlan, guid)) {
        if (AddProfile(wlan, guid, name, current, *info)) continue;
        PLOG_ERROR << kWlanProfileFailure << LogText(info->w_lan_profiles.back().profile_name);
      }
      if (ReadChannel(wlan, guid, *info)) CalculateChannelInterference(*info);
    }
  } catch (const std::exception& failure) {
    PLOG_ERROR << kPassFailure << LogText(failure.what());
  }
}

}  // namespace zt::telemetry::collector::performancesamples
