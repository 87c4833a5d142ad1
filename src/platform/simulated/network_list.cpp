#include "platform/network_list.h"

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

constexpr auto kClassNotRegistered = static_cast<std::int32_t>(0x80040154);  // REGDB_E_CLASSNOTREG

using Outcome = NetworkList::Outcome;
template <typename T>
std::optional<T> Told(const char* call, const simulation::OptionalAnswer<T>& stated) {
  return simulation::Fails(call) ? std::nullopt : simulation::Given(stated);
}

}  // namespace

struct ListedNetwork::Handle {
  simulation::ListedNetwork network;
  simulation::HandedOutThing counted{"listed network"};
};

ListedNetwork::ListedNetwork(std::unique_ptr<Handle> handle) : handle_(std::move(handle)) {}

ListedNetwork::~ListedNetwork() = default;
ListedNetwork::ListedNetwork(ListedNetwork&&) noexcept = default;
ListedNetwork& ListedNetwork::operator=(ListedNetwork&&) noexcept = default;

std::vector<std::wstring> ListedNetwork::ConnectionAdapters() const {
  std::vector<std::wstring> adapters;
  const Disturbance met =
      simulation::Announce("INetwork::GetNetworkConnections", {Disturbance::kFails, Disturbance::kEmpty});
  if (met != Disturbance::kNone) return adapters;
  const auto connections = simulation::Given(handle_->network.connections);
  if (!connections) return adapters;
  for (const simulation::NetworkConnection& connection : *connections) {
    const std::optional<std::string> adapter = simulation::Given(connection.adapter);
    if (!adapter || simulation::Fails("INetworkConnection::GetAdapterId")) continue;
    adapters.push_back(simulation::GuidText(*adapter));
  }
  return adapters;
}

std::optional<bool> ListedNetwork::IsConnected() const {
  return Told("INetwork::IsConnected", handle_->network.connected);
}

std::optional<bool> ListedNetwork::IsConnectedToInternet() const {
  return Told("INetwork::IsConnectedToInternet", handle_->network.internet);
}

std::optional<std::int32_t> ListedNetwork::Category() const {
  const Disturbance met = simulation::Announce("INetwork::GetCategory", {Disturbance::kFails, Disturbance::kAbsurd});
  if (met == Disturbance::kFails) return std::nullopt;
  if (met == Disturbance::kAbsurd) return std::numeric_limits<std::int32_t>::min();
  return simulation::Given(handle_->network.category);
}

NetworkList ListNetworks() {
  const auto& manager = simulation::CurrentMachine().network.manager;
  if (!manager) return {Outcome::kNoManager, kClassNotRegistered, {}};
  if (simulation::Fails("CoCreateInstance NetworkListManager")) return {Outcome::kNoManager, kRefusedByCom, {}};
  if (manager->create != 0) return {Outcome::kNoManager, manager->create, {}};
  const Disturbance met =
      simulation::Announce("INetworkListManager::GetNetworks", {Disturbance::kFails, Disturbance::kEmpty});
  if (met == Disturbance::kFails) return {Outcome::kNotListed, kRefusedByCom, {}};
  if (met == Disturbance::kEmpty) return {};
  if (manager->get_networks != 0) return {Outcome::kNotListed, manager->get_networks, {}};
  NetworkList list;
  for (const simulation::ListedNetwork& network : manager->networks) {
    if (simulation::Fails("IEnumNetworks::Next")) break;
    list.networks.emplace_back(std::make_unique<ListedNetwork::Handle>(ListedNetwork::Handle{network}));
  }
  return list;
}

}  // namespace zt::telemetry::collector::performancesamples::platform
