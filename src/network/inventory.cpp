#include <zt/text/wide_text.h>

#include <algorithm>
#include <cstdint>
#include <utility>

#include "network/connection_vocabulary.h"
#include "network/network_info_msg.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using shared::wmi::WMIClient;

constexpr wchar_t kInterfacesQuery[] =
    L"SELECT Name, BytesReceivedPersec, BytesSentPersec from Win32_PerfRawData_Tcpip_NetworkInterface";
constexpr wchar_t kAdaptersQueryStart[] = L"SELECT * from Win32_NetworkAdapter WHERE ";
constexpr wchar_t kConfigurationsQueryStart[] = L"SELECT * from Win32_NetworkAdapterConfiguration WHERE ";

constexpr wchar_t kNameField[] = L"Name";
constexpr wchar_t kDescriptionField[] = L"Description";

constexpr char kUnknownText[] = "Unknown";
constexpr auto kNoStatus = static_cast<std::uint32_t>(-1);

// A condition that any of the names meets. The names stand in it as they are, quotation marks included.
class AnyName {
 public:
  void SetField(std::wstring field) { field_ = std::move(field); }
  void Add(std::wstring name) { names_.push_back(std::move(name)); }

  std::wstring Text() const {
    std::wstring text;
    for (const std::wstring& name : names_) {
      if (!text.empty()) text += L" OR ";
      text += field_ + L" = '" + name + L"'";
    }
    return text;
  }

 private:
  std::wstring field_;
  std::vector<std::wstring> names_;
};

// The name of a performance counter's instance may not hold parentheses: brackets stand in their place.
std::string InterfaceName(std::string instance) {
  std::replace(instance.begin(), instance.end(), '[', '(');
  std::replace(instance.begin(), instance.end(), ']', ')');
  return instance;
}

void ListInterfaces(WMIClient& wmi, types::NetworkInterfaces& interfaces, AnyName& condition) {
  wmi.ExecQuery(kInterfacesQuery);
  while (wmi.Next()) {
    std::string instance;
    wmi.GetValue(L"Name", instance);
    const std::string name = InterfaceName(std::move(instance));
    condition.Add(text::ToWide(name));
    interfaces[name] = {};
  }
}

std::string ReadConnectionStatus(const WMIClient& wmi) {
  std::uint32_t status = kNoStatus;
  wmi.GetValue(L"NetConnectionStatus", status);
  const auto known = kConnectionStatusTexts.find(static_cast<std::int32_t>(status));
  return known != kConnectionStatusTexts.end() ? known->second : kUnknownText;
}

void ReadAdapter(const WMIClient& wmi, types::NetworkInterfaceInfo& info) {
  wmi.GetValue(L"AdapterType", info.adapter_type);
  wmi.GetValue(L"MACAddress", info.mac_address);
  wmi.GetValue(L"Manufacturer", info.manufacturer);
  wmi.GetValue(L"PNPDeviceID", info.pnp_device_id);
  wmi.GetValue(L"PhysicalAdapter", info.is_physical_adapter);
  wmi.GetValue(L"Speed", info.nominal_speed);
  wmi.GetValue(L"NetConnectionID", info.net_connection_id);
  wmi.GetValue(L"GUID", info.guid);
  wmi.GetValue(L"InterfaceIndex", info.interface_index);
  info.connection_status = ReadConnectionStatus(wmi);
}

void ReadAdapters(WMIClient& wmi, const AnyName& condition, types::NetworkInterfaces& interfaces) {
  wmi.ExecQuery(kAdaptersQueryStart + condition.Text());
  while (wmi.Next()) {
    std::string product;
    wmi.GetValue(L"ProductName", product);
    const auto found = interfaces.find(product);
    if (found != interfaces.end()) ReadAdapter(wmi, found->second);
  }
}

void ReadConfigurations(WMIClient& wmi, const AnyName& condition, types::NetworkInterfaces& interfaces) {
  wmi.ExecQuery(kConfigurationsQueryStart + condition.Text());
  while (wmi.Next()) {
    std::string mac_address;
    wmi.GetValue(L"MACAddress", mac_address);
    const auto found = std::find_if(interfaces.begin(), interfaces.end(),
                                    [&](const auto& known) { return known.second.mac_address == mac_address; });
    if (found != interfaces.end()) wmi.GetValue(L"DHCPEnabled", found->second.dhcp_enabled);
  }
}

}  // namespace

types::NetworkInterfaces NetworkInfoMsg::PerformNetworkInterfaceQueries() {
  types::NetworkInterfaces interfaces;
  if (wmi_client_ == nullptr) return interfaces;
  AnyName condition;
  condition.SetField(kNameField);
  ListInterfaces(*wmi_client_, interfaces, condition);
  // Both queries run once for each interface, over all of them, and the adapters are looked for by "Name" the first
  // time and by "Description" from then on. Hosts compare machines by what this order finds: with a single interface
  // "Name" alone.
  for (std::size_t i = 0; i < interfaces.size(); ++i) {
    ReadAdapters(*wmi_client_, condition, interfaces);
    condition.SetField(kDescriptionField);
    ReadConfigurations(*wmi_client_, condition, interfaces);
  }
  return interfaces;
}

}  // namespace zt::telemetry::collector::performancesamples
