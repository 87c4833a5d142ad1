#include "platform/windows/wlan_session.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "platform/windows/guid_text.h"

namespace zt::telemetry::collector::performancesamples::platform {
namespace {

constexpr DWORD kClientVersion = 2;  // of Windows Vista and later

static_assert(kWlanStateConnected == wlan_interface_state_connected);
static_assert(kWlanProfileConnectsByItself == WLAN_PROFILE_CONNECTION_MODE_AUTO);
static_assert(offsetof(WLAN_INTERFACE_INFO_LIST, InterfaceInfo) == 8 && sizeof(WLAN_INTERFACE_INFO) == 532);
static_assert(offsetof(WLAN_PROFILE_INFO_LIST, ProfileInfo) == 8 && sizeof(WLAN_PROFILE_INFO) == 516);
static_assert(offsetof(WLAN_CONNECTION_ATTRIBUTES, wlanAssociationAttributes) == 520);

GUID ToGuid(const std::wstring& text) {
  GUID guid{};
  ::CLSIDFromString(text.c_str(), &guid);
  return guid;
}

// A fixed field of text, which ends at its first zero, or with the field.
template <std::size_t kSize>
std::wstring TextOf(const wchar_t (&field)[kSize]) {
  return {field, std::find(field, field + kSize, L'\0')};
}

}  // namespace

WlanSession::WlanSession(const WlanFunctions& functions) : functions_(functions) {
  DWORD negotiated_version = 0;
  HANDLE handle = nullptr;
  if (!functions_.IsComplete()) return;
  status_ = functions_.Get<"WlanOpenHandle">()(kClientVersion, nullptr, &negotiated_version, &handle);
  if (status_ == ERROR_SUCCESS) handle_ = handle;
}

WlanSession::~WlanSession() {
  if (handle_ != nullptr) functions_.Get<"WlanCloseHandle">()(handle_, nullptr);
}

template <typename T>
WlanSession::Owned<T> WlanSession::Query(const std::wstring& interface_guid, WLAN_INTF_OPCODE question) const {
  const GUID guid = ToGuid(interface_guid);
  DWORD size = 0;
  void* data = nullptr;
  const DWORD status = functions_.Get<"WlanQueryInterface">()(handle_, &guid, question, nullptr, &size, &data, nullptr);
  Owned<T> answer = Own(static_cast<T*>(status == ERROR_SUCCESS ? data : nullptr));
  if (size < sizeof(T)) answer.reset();
  return answer;
}

std::optional<std::vector<std::wstring>> WlanSession::Interfaces() const {
  WLAN_INTERFACE_INFO_LIST* received = nullptr;
  if (functions_.Get<"WlanEnumInterfaces">()(handle_, nullptr, &received) != ERROR_SUCCESS) return std::nullopt;
  const auto list = Own(received);
  std::vector<std::wstring> guids;
  for (DWORD i = 0; list != nullptr && i < list->dwNumberOfItems; ++i) {
    guids.push_back(GuidText(list->InterfaceInfo[i].InterfaceGuid));
  }
  return guids;
}

std::optional<WlanConnection> WlanSession::CurrentConnection(const std::wstring& interface_guid) const {
  const auto connection = Query<WLAN_CONNECTION_ATTRIBUTES>(interface_guid, wlan_intf_opcode_current_connection);
  if (connection == nullptr) return std::nullopt;
  const WLAN_ASSOCIATION_ATTRIBUTES& link = connection->wlanAssociationAttributes;
  return WlanConnection{static_cast<std::int32_t>(connection->isState),
                        TextOf(connection->strProfileName),
                        static_cast<std::uint32_t>(link.dot11PhyType),
                        link.wlanSignalQuality,
                        link.ulRxRate,
                        link.ulTxRate};
}

std::optional<std::vector<std::wstring>> WlanSession::ProfileNames(const std::wstring& interface_guid) const {
  const GUID guid = ToGuid(interface_guid);
  WLAN_PROFILE_INFO_LIST* received = nullptr;
  if (functions_.Get<"WlanGetProfileList">()(handle_, &guid, nullptr, &received) != ERROR_SUCCESS) return std::nullopt;
  const auto list = Own(received);
  if (list == nullptr) return std::nullopt;
  const WLAN_PROFILE_INFO* const first = list->ProfileInfo;
  std::vector<std::wstring> names;
  for (DWORD i = 0; i < list->dwNumberOfItems; ++i) names.push_back(TextOf(first[i].strProfileName));
  return names;
}

std::optional<WlanProfile> WlanSession::Profile(const std::wstring& interface_guid, const std::wstring& name) const {
  const GUID guid = ToGuid(interface_guid);
  wchar_t* received = nullptr;
  DWORD flags = 0;  // nothing is asked for that needs rights, such as the key in plain text
  const DWORD status =
      functions_.Get<"WlanGetProfile">()(handle_, &guid, name.c_str(), nullptr, &received, &flags, nullptr);
  const auto xml = Own(status == ERROR_SUCCESS ? received : nullptr);
  if (xml == nullptr) return std::nullopt;
  return WlanProfile{xml.get(), flags};
}

std::optional<std::uint32_t> WlanSession::Channel(const std::wstring& interface_guid) const {
  const auto channel = Query<ULONG>(interface_guid, wlan_intf_opcode_channel_number);
  if (channel == nullptr) return std::nullopt;
  return *channel;
}

}  // namespace zt::telemetry::collector::performancesamples::platform
