#include <algorithm>
#include <cctype>
#include <string>

#include "network/network_info_msg.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

constexpr wchar_t kDescriptionQueryStart[] = L"SELECT Description from Win32_NetworkAdapter WHERE GUID = '";
constexpr wchar_t kDescriptionQueryEnd[] = L"'";

// Any virtual adapter counts, a hypervisor's too: hosts know the flag by this wide rule.
constexpr const char* kVpnWords[] = {"VPN", "VIRTUAL"};

std::string UpperCase(std::string text) {
  for (char& character : text) character = static_cast<char>(std::toupper(static_cast<unsigned char>(character)));
  return text;
}

bool NamesVpn(const std::string& description) {
  const std::string upper = UpperCase(description);
  return std::any_of(std::begin(kVpnWords), std::end(kVpnWords),
                     [&](const char* word) { return upper.find(word) != std::string::npos; });
}

// A query that fails has no rows.
bool IsVpnAdapter(shared::wmi::WMIClient& wmi, const std::wstring& guid) {
  wmi.ExecQuery(kDescriptionQueryStart + guid + kDescriptionQueryEnd);
  while (wmi.Next()) {
    std::string description;
    wmi.GetValue(L"Description", description);
    if (NamesVpn(description)) return true;
  }
  return false;
}

}  // namespace

bool NetworkInfoMsg::IsVpnConnected(const std::wstring& guid) {
  if (wmi_client_ == nullptr) return false;
  try {
    return IsVpnAdapter(*wmi_client_, guid);
  } catch (...) {
    // A client that gives up tells no more than a query that fails; the connections behind this one are still looked
    // at.
    return false;
  }
}

}  // namespace zt::telemetry::collector::performancesamples
