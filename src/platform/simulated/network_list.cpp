#include "platform/network_list.h"

#include <utility>

#include "platform/simulated/answers.h"
#include "platform/simulated/guid_text.h"
#include "simulation/machine.h"

namespace zt::telemetry::collector::performancesamples::platform {
namespace {

constexpr auto kClassNotRegistered = static_cast<std::int32_t>(0x80040154);  // REGDB_E_CLASSNOTREG

using Outcome = NetworkList::Outcome;

}  // namespace

struct ListedNetwork::Handle {
  simulation::ListedNetwork network;
};

ListedNetwork::ListedNetwork(std::unique_ptr<Handle> handle) : handle_(std::move(handle)) {}

ListedNetwork::~ListedNetwork() = default;
ListedNetwork::ListedNetwork(ListedNetwork&&) noexcept = default;
ListedNetwork& ListedNetwork::operator=(ListedNetwork&&) noexcept = default;

std::vector<std::wstring> ListedNetwork::ConnectionAdapters() const {
  std::vector<std::wstring> adapters;
  const auto connections = simulation::Given(handle_->network.connections);
  if (!connections) return adapters;
  for (const simulation::NetworkConnection& connection : *connections) {
    const std::optional<std::string> adapter = simulation::Given(connection.adapter);
    if (adapter) adapters.push_back(simulation::GuidText(*adapter));
  }
  return adapters;
}

std::optional<bool> ListedNetwork::IsConnected() const {
  return simulation::Given(handle_->network.connected);
}

std::optional<bool> ListedNetwork::IsConnectedToInternet() const {
  return simulation::Given(handle_->network.internet);
}

std::optional<std::int32_t> ListedNetwork::Category() const {
  return simulation::Given(handle_->network.category);
}

NetworkList ListNetworks() {
  const auto& manager = simulation::CurrentMachine().network.manager;
  if (!manager) return {Outcome::kNoManager, kClassNotRegistered, {}};
  if (manager->create != 0) return {Outcome::kNoManager, manager->create, {}};
  if (manager->get_networks != 0) return {Outcome::kNotListed, manager->get_networks, {}};
  NetworkList list;
  for (const simulation::ListedNetwork& network : manager->networks) {
    list.networks.emplace_back(std::make_unique<ListedNetwork::Handle>(ListedNetwork::Handle{network}));
  }
  return list;
}

}  // namespace zt::telemetry::collector::performancesamples::platform
