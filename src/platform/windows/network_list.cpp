#include "platform/network_list.h"

#include <windows.h>
#include <netlistmgr.h>
#include <zt/com/com_handles.h>

#include <utility>

#include "platform/windows/guid_text.h"

namespace zt::telemetry::collector::performancesamples::platform {
namespace {

using com::ComPtr;

// As the system numbers them: the constants lie in a library that not every compiler brings.
constexpr CLSID kNetworkListManagerId = {0xDCB00C01, 0x570F, 0x4A9B, {0x8D, 0x69, 0x19, 0x9F, 0xDB, 0xA5, 0x72, 0x3B}};
constexpr IID kNetworkListManagerInterface = {
    0xDCB00000, 0x570F, 0x4A9B, {0x8D, 0x69, 0x19, 0x9F, 0xDB, 0xA5, 0x72, 0x3B}};

// The next of an enumeration; null at its end, and where it fails.
template <typename Enumerator, typename Interface>
bool TakeNext(Enumerator& enumerator, ComPtr<Interface>& next) {
  ULONG fetched = 0;
  return enumerator.Next(1, next.ReleaseAndGetAddressOf(), &fetched) == S_OK && next;
}

template <typename Interface>
std::optional<bool> AskFlag(Interface& object, HRESULT (STDMETHODCALLTYPE Interface::*question)(VARIANT_BOOL*)) {
  VARIANT_BOOL answer = VARIANT_FALSE;
  if (FAILED((object.*question)(&answer))) return std::nullopt;
  return answer == VARIANT_TRUE;
}

}  // namespace

struct ListedNetwork::Handle {
  ComPtr<INetworkListManager> manager;  // goes last: not every system's networks keep theirs alive
  ComPtr<INetwork> network;
};

ListedNetwork::ListedNetwork(std::unique_ptr<Handle> handle) : handle_(std::move(handle)) {}

ListedNetwork::~ListedNetwork() = default;
ListedNetwork::ListedNetwork(ListedNetwork&&) noexcept = default;
ListedNetwork& ListedNetwork::operator=(ListedNetwork&&) noexcept = default;

std::vector<std::wstring> ListedNetwork::ConnectionAdapters() const {
  std::vector<std::wstring> adapters;
  ComPtr<IEnumNetworkConnections> connections;
  if (FAILED(handle_->network->GetNetworkConnections(connections.ReleaseAndGetAddressOf()))) return adapters;
  ComPtr<INetworkConnection> connection;
  while (TakeNext(*connections.Get(), connection)) {
    GUID adapter{};
    if (SUCCEEDED(connection->GetAdapterId(&adapter))) adapters.push_back(GuidText(adapter));
  }
  return adapters;
}

std::optional<bool> ListedNetwork::IsConnected() const {
  return AskFlag(*handle_->network.Get(), &INetwork::get_IsConnected);
}

std::optional<bool> ListedNetwork::IsConnectedToInternet() const {
  return AskFlag(*handle_->network.Get(), &INetwork::get_IsConnectedToInternet);
}

std::optional<std::int32_t> ListedNetwork::Category() const {
  NLM_NETWORK_CATEGORY category{};
  if (FAILED(handle_->network->GetCategory(&category))) return std::nullopt;
  return static_cast<std::int32_t>(category);
}

NetworkList ListNetworks() {
  NetworkList list;
  ComPtr<INetworkListManager> manager;
  list.status = ::CoCreateInstance(kNetworkListManagerId, nullptr, CLSCTX_ALL, kNetworkListManagerInterface,
                                   reinterpret_cast<void**>(manager.ReleaseAndGetAddressOf()));
  if (FAILED(list.status)) {
    list.outcome = NetworkList::Outcome::kNoManager;
    return list;
  }
  ComPtr<IEnumNetworks> networks;
  list.status = manager->GetNetworks(NLM_ENUM_NETWORK_ALL, networks.ReleaseAndGetAddressOf());
  if (FAILED(list.status)) {
    list.outcome = NetworkList::Outcome::kNotListed;
    return list;
  }
  ComPtr<INetwork> network;
  while (TakeNext(*networks.Get(), network)) {
    list.networks.emplace_back(std::make_unique<ListedNetwork::Handle>(ListedNetwork::Handle{manager, network}));
  }
  return list;
}

}  // namespace zt::telemetry::collector::performancesamples::platform
