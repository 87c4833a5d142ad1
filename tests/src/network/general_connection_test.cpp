#include "network_fixture.h"
#include "support/status_codes.h"
#include "zt/telemetry/common/error.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using common::Error;
using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using testing::SizeIs;

constexpr int kUnlisted = 99;  // the number of an adapter that is no interface of the inventory

class GeneralConnectionTest : public NetworkTest {
 protected:
  GeneralConnectionTest() { machine_.network.manager.emplace(); }

  /// A connected network that reaches the internet, over these adapters.
  simulation::ListedNetwork& AddNetwork(const std::vector<int>& adapters) {
    simulation::ListedNetwork& network = machine_.network.manager->networks.emplace_back();
    network.category = 1;
    network.connected = true;
    network.internet = true;
    std::vector<simulation::NetworkConnection> connections;
    for (const int number : adapters) connections.push_back({Guid(number)});
    network.connections = connections;
    return network;
  }

  /// A connected wired interface with a network.
  simulation::ListedNetwork& AddWired() {
    AddInterface(kWired);
    machine_.network.interface_counters[1] = simulation::InterfaceCounters{10, 20};
    return AddNetwork({1});
  }

  /// An adapter that the inventory does not have.
  void AddUnlistedAdapter(const std::string& description) {
    machine_.wmi.classes[kAdaptersTable].push_back({{"Description", description}, {"GUID", Guid(kUnlisted)}});
  }

  types::NetworkInterfaceInfo Wired() { return GeneralConnections().at(kWired); }

  Error FailingPass() {
    try {
      GeneralConnections();
    } catch (const Error& error) {
      return error;
    }
    ADD_FAILURE() << "no error was thrown";
    return {};
  }

  std::vector<std::string> VpnQueries() const {
    std::vector<std::string> found;
    for (const std::string& query : simulation::RecordedQueries()) {
      if (query.starts_with("SELECT Description")) found.push_back(query);
    }
    return found;
  }
};

TEST_F(GeneralConnectionTest, AConnectedInterfaceHasItsNetworksFacts) {
  AddWired();
  const types::NetworkInterfaceInfo info = Wired();
  EXPECT_TRUE(info.is_connected);
  EXPECT_TRUE(info.has_internet_access);
  EXPECT_EQ(info.network_category, "Private");
  EXPECT_EQ(info.bytes_received, 10U);
  EXPECT_EQ(info.bytes_sent, 20U);
  EXPECT_TRUE(network_.has_network_access_);
  EXPECT_TRUE(network_.has_internet_access_);
  EXPECT_FALSE(network_.is_vpn_connected_);
  EXPECT_THAT(log_.lines, IsEmpty());
}

TEST_F(GeneralConnectionTest, AnInterfaceThatIsNotConnectedHasCategoryAndCountersOnly) {
  AddWired();
  AdapterRow(1)["NetConnectionStatus"] = 7;
  const types::NetworkInterfaceInfo info = Wired();
  EXPECT_FALSE(info.is_connected);
  EXPECT_FALSE(info.has_internet_access);
  EXPECT_EQ(info.network_category, "Private");
  EXPECT_EQ(info.bytes_sent, 20U);
  EXPECT_FALSE(network_.has_network_access_);
  EXPECT_FALSE(network_.has_internet_access_);
}

TEST_F(GeneralConnectionTest, AConnectedInterfaceWithoutANetworkStaysUnconnected) {
  AddInterface(kWired);
  const types::NetworkInterfaceInfo info = Wired();
  EXPECT_EQ(info.connection_status, "Connected");
  EXPECT_FALSE(info.is_connected);
  EXPECT_FALSE(network_.has_network_access_);
}

TEST_F(GeneralConnectionTest, ANetworkWithoutInternetGivesNetworkAccessOnly) {
  AddWired().internet = false;
  EXPECT_FALSE(Wired().has_internet_access);
  EXPECT_TRUE(network_.has_network_access_);
  EXPECT_FALSE(network_.has_internet_access_);
}

TEST_F(GeneralConnectionTest, OneInterfaceWithInternetIsEnough) {
  AddWired();
  AddInterface(kWifi);
  AddNetwork({2}).internet = false;
  const types::NetworkInterfaces interfaces = GeneralConnections();
  EXPECT_TRUE(interfaces.at(kWired).has_internet_access);
  EXPECT_FALSE(interfaces.at(kWifi).has_internet_access);
  EXPECT_TRUE(network_.has_internet_access_);
}

TEST_F(GeneralConnectionTest, TheLastNetworkOfAnInterfaceHolds) {
  AddWired();
  AddNetwork({1}).category = 0;
  EXPECT_EQ(Wired().network_category, "Public");
}

TEST_F(GeneralConnectionTest, ANetworkMayRunOverSeveralInterfaces) {
  AddInterface("A");
  AddInterface("B");
  AddNetwork({1, 2}).category = 2;
  const types::NetworkInterfaces interfaces = GeneralConnections();
  EXPECT_EQ(interfaces.at("A").network_category, "Domain Authenticated");
  EXPECT_EQ(interfaces.at("B").network_category, "Domain Authenticated");
}

TEST_F(GeneralConnectionTest, TheOrderOfTheNetworksChangesNoRecord) {
  for (const char* name : {"A", "Bravo", "Charlie", "Delta 4", "Echo (5)"}) AddInterface(name);
  for (int number = 1; number <= 5; ++number) {
    machine_.network.interface_counters[static_cast<std::uint32_t>(number)] =
        simulation::InterfaceCounters{static_cast<std::uint32_t>(number), 0};
    AddNetwork({number}).category = number % 3;
  }
  const types::NetworkInterfaces expected = GeneralConnections();
  for (int i = 0; i < 5; ++i) {
    auto& networks = machine_.network.manager->networks;
    std::rotate(networks.begin(), networks.begin() + 1, networks.end());
    for (auto& [table, rows] : machine_.wmi.classes) std::rotate(rows.begin(), rows.begin() + 2, rows.end());
    EXPECT_EQ(GeneralConnections(), expected);
  }
}

TEST_F(GeneralConnectionTest, EveryCategoryHasItsText) {
  simulation::ListedNetwork& network = AddWired();
  const std::vector<std::string> texts = {"Public", "Private", "Domain Authenticated"};
  for (std::size_t category = 0; category < texts.size(); ++category) {
    network.category = static_cast<std::int32_t>(category);
    EXPECT_EQ(Wired().network_category, texts[category]);
  }
}

TEST_F(GeneralConnectionTest, ACategoryBeyondTheTableChangesNothing) {
  AddWired();
  AddNetwork({1}).category = 3;
  EXPECT_EQ(Wired().network_category, "Private");
}

TEST_F(GeneralConnectionTest, AFailingCategoryChangesNothing) {
  AddWired().category = Failure{tests::kOutOfMemory};
  const types::NetworkInterfaceInfo info = Wired();
  EXPECT_EQ(info.network_category, "Unknown");
  EXPECT_TRUE(info.has_internet_access);
  EXPECT_EQ(info.bytes_sent, 20U);
}

TEST_F(GeneralConnectionTest, AFailingInternetQuestionChangesNothing) {
  AddWired();
  AddNetwork({1}).internet = Failure{tests::kOutOfMemory};
  EXPECT_TRUE(Wired().has_internet_access);
}

// Over what a first pass found: nothing goes back to where it started.
TEST_F(GeneralConnectionTest, WhatFailsInASecondPassLeavesWhatTheFirstOneFound) {
  simulation::ListedNetwork& network = AddWired();
  types::NetworkInterfaces interfaces = GeneralConnections();
  const types::NetworkInterfaceInfo found = interfaces.at(kWired);
  ASSERT_EQ(found.bytes_received, 10U);
  ASSERT_EQ(found.bytes_sent, 20U);
  ASSERT_EQ(found.network_category, "Private");
  ASSERT_TRUE(found.has_internet_access);
  network.category = Failure{tests::kOutOfMemory};
  network.internet = Failure{tests::kOutOfMemory};
  machine_.network.interface_counters[1] = Failure{tests::kCallDenied};
  simulation::UseMachine(machine_);
  network_.HandleGeneralConnInfo(interfaces);
  EXPECT_EQ(interfaces.at(kWired), found);
}

TEST_F(GeneralConnectionTest, ALaterNetworkWithoutInternetTakesTheAccessOfTheInterfaceOnly) {
  AddWired();
  AddNetwork({1}).internet = false;
  EXPECT_FALSE(Wired().has_internet_access);
  EXPECT_TRUE(network_.has_internet_access_);
}

TEST_F(GeneralConnectionTest, AFailingInternetQuestionGivesNoAccess) {
  AddWired().internet = Failure{tests::kOutOfMemory};
  EXPECT_FALSE(Wired().has_internet_access);
  EXPECT_TRUE(network_.has_network_access_);
  EXPECT_FALSE(network_.has_internet_access_);
}

TEST_F(GeneralConnectionTest, FailingCountersChangeNothing) {
  AddWired();
  machine_.network.interface_counters[1] = Failure{tests::kCallDenied};
  const types::NetworkInterfaceInfo info = Wired();
  EXPECT_EQ(info.bytes_sent, 0U);
  EXPECT_EQ(info.bytes_received, 0U);
  EXPECT_EQ(info.network_category, "Private");
}

TEST_F(GeneralConnectionTest, AnInterfaceWithoutAnIndexIsAskedForByTheLargestOne) {
  AddWired();
  AdapterRow(1).erase("InterfaceIndex");
  machine_.network.interface_counters[4'294'967'295U] = simulation::InterfaceCounters{30, 40};
  EXPECT_EQ(Wired().bytes_sent, 40U);
}

TEST_F(GeneralConnectionTest, CountersHave32Bits) {
  AddWired();
  machine_.network.interface_counters[1] = simulation::InterfaceCounters{4'294'967'295U, 0};
  EXPECT_EQ(Wired().bytes_received, 4'294'967'295U);
}

TEST_F(GeneralConnectionTest, ConnectionsThatCannotBeListedPassOverTheirNetworkOnly) {
  AddWired();
  AddInterface(kWifi);
  AddNetwork({2}).connections = Failure{tests::kOutOfMemory};
  const types::NetworkInterfaces interfaces = GeneralConnections();
  EXPECT_TRUE(interfaces.at(kWired).is_connected);
  EXPECT_FALSE(interfaces.at(kWifi).is_connected);
}

TEST_F(GeneralConnectionTest, AConnectionWithoutAnAdapterIsPassedOver) {
  AddWired().connections =
      std::vector<simulation::NetworkConnection>{{Failure{tests::kOutOfMemory}}, {std::nullopt}, {Guid(1)}};
  EXPECT_TRUE(Wired().is_connected);
  EXPECT_THAT(VpnQueries(), IsEmpty());
}

TEST_F(GeneralConnectionTest, GuidsOfConnectionsAreInCapitals) {
  AddWired().connections = std::vector<simulation::NetworkConnection>{{"{abcdefab-0000-4000-8000-000000000001}"}};
  AdapterRow(1)["GUID"] = "{ABCDEFAB-0000-4000-8000-000000000001}";
  EXPECT_TRUE(Wired().is_connected);
}

TEST_F(GeneralConnectionTest, AGuidInSmallLettersIsNoInterfaces) {
  AddWired().connections = std::vector<simulation::NetworkConnection>{{"{abcdefab-0000-4000-8000-000000000001}"}};
  AdapterRow(1)["GUID"] = "{abcdefab-0000-4000-8000-000000000001}";
  EXPECT_FALSE(Wired().is_connected);
}

TEST_F(GeneralConnectionTest, WithoutComOneLineIsLoggedAndNothingChanges) {
  AddWired();
  machine_.network.com = Failure{tests::kOutOfMemory};
  const types::NetworkInterfaceInfo info = Wired();
  EXPECT_FALSE(info.is_connected);
  EXPECT_THAT(log_.Messages(plog::error), ElementsAre("Failed to initialize COM.-2147024882"));
  EXPECT_THAT(log_.lines.at(0).function, EndsWith("::performancesamples::NetworkInfoMsg::HandleGeneralConnInfo"));
}

TEST_F(GeneralConnectionTest, WithoutAManagerAnErrorIsThrown) {
  AddWired();
  machine_.network.manager->create = tests::kClassNotRegistered;
  machine_.system_messages = {{tests::kClassNotRegistered, "Class not registered\r\n"}};
  const Error error = FailingPass();
  EXPECT_EQ(error.kind, 5);
  EXPECT_EQ(error.code, tests::kClassNotRegistered);
  EXPECT_EQ(error.description, "Failed to create NetworkListManager instance.");
  EXPECT_EQ(error.type_name, "NetworkListManager");
  EXPECT_EQ(error.message, "Class not registered\r\n");
}

TEST_F(GeneralConnectionTest, AMachineWithoutANetworkListKnowsNoClassOfItsManager) {
  machine_.network.manager.reset();
  const Error error = FailingPass();
  EXPECT_EQ(error.kind, 5);
  EXPECT_EQ(error.code, tests::kClassNotRegistered);
  EXPECT_EQ(error.description, "Failed to create NetworkListManager instance.");
}

TEST_F(GeneralConnectionTest, WithoutAListAnErrorIsThrown) {
  AddWired();
  machine_.network.manager->get_networks = tests::kOutOfMemory;
  const Error error = FailingPass();
  EXPECT_EQ(error.kind, 5);
  EXPECT_EQ(error.code, tests::kOutOfMemory);
  EXPECT_EQ(error.description, "Failed to retrieve network list.");
}

TEST_F(GeneralConnectionTest, ACodeWithoutATextIsToldAsSuch) {
  machine_.network.manager->create = tests::kOutOfMemory;
  EXPECT_EQ(FailingPass().message, "The system cannot find message text for error code -2147024882\r\n");
}

TEST_F(GeneralConnectionTest, AnUnlistedVirtualAdapterIsAVpn) {
  AddWired();
  AddUnlistedAdapter("Office VPN Adapter");
  AddNetwork({kUnlisted});
  GeneralConnections();
  EXPECT_TRUE(network_.is_vpn_connected_);
  EXPECT_THAT(VpnQueries(),
              ElementsAre("SELECT Description from Win32_NetworkAdapter WHERE GUID = '" + Guid(kUnlisted) + "'"));
}

TEST_F(GeneralConnectionTest, AListedVirtualAdapterIsNoVpn) {
  AddInterface("Office VPN Adapter");
  AddNetwork({1});
  GeneralConnections();
  EXPECT_FALSE(network_.is_vpn_connected_);
  EXPECT_THAT(VpnQueries(), IsEmpty());
}

TEST_F(GeneralConnectionTest, OnceAVpnIsFoundNoOtherIsLookedFor) {
  AddUnlistedAdapter("Office VPN Adapter");
  AddNetwork({kUnlisted, kUnlisted});
  AddNetwork({kUnlisted});
  GeneralConnections();
  EXPECT_TRUE(network_.is_vpn_connected_);
  EXPECT_THAT(VpnQueries(), SizeIs(1));
}

TEST_F(GeneralConnectionTest, UntilAVpnIsFoundEveryUnlistedAdapterIsAskedFor) {
  AddUnlistedAdapter("Plain Adapter");
  AddNetwork({kUnlisted, kUnlisted});
  GeneralConnections();
  EXPECT_FALSE(network_.is_vpn_connected_);
  EXPECT_THAT(VpnQueries(), SizeIs(2));
}

TEST_F(GeneralConnectionTest, AVpnOfAnUnconnectedNetworkIsNotAskedFor) {
  AddUnlistedAdapter("Office VPN Adapter");
  AddNetwork({kUnlisted}).connected = false;
  GeneralConnections();
  EXPECT_FALSE(network_.is_vpn_connected_);
  EXPECT_THAT(VpnQueries(), IsEmpty());
}

TEST_F(GeneralConnectionTest, ANetworkThatDoesNotTellWhetherItIsConnectedHasNoVpn) {
  AddUnlistedAdapter("Office VPN Adapter");
  AddNetwork({kUnlisted}).connected = Failure{tests::kOutOfMemory};
  GeneralConnections();
  EXPECT_FALSE(network_.is_vpn_connected_);
  EXPECT_THAT(VpnQueries(), IsEmpty());
}

TEST_F(GeneralConnectionTest, TheFlagsOnlyEverRise) {
  AddWired();
  GeneralConnections();
  AdapterRow(1)["NetConnectionStatus"] = 0;
  EXPECT_FALSE(Wired().is_connected);
  EXPECT_TRUE(network_.has_network_access_);
  EXPECT_TRUE(network_.has_internet_access_);
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
