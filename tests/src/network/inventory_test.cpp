#include "network_fixture.h"
#include "support/status_codes.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;
using testing::UnorderedElementsAre;

constexpr char kBracketed[] = "Wi-Fi 6E[R] AX Adapter";
constexpr char kFirstGuid[] = "{11111111-0000-4000-8000-000000000001}";

class InventoryTest : public NetworkTest {
 protected:
  types::NetworkInterfaceInfo Only() {
    const types::NetworkInterfaces interfaces = Inventory();
    EXPECT_THAT(interfaces, SizeIs(1));
    return interfaces.empty() ? types::NetworkInterfaceInfo() : interfaces.begin()->second;
  }

  std::string StatusOfCode(const simulation::WmiProperty& code) {
    AddInterface(kWired);
    AdapterRow(1)["NetConnectionStatus"] = code;
    return Only().connection_status;
  }
};

TEST_F(InventoryTest, WithoutInterfacesOneQueryRuns) {
  EXPECT_THAT(Inventory(), IsEmpty());
  EXPECT_THAT(simulation::RecordedQueries(), ElementsAre(kInterfacesQuery));
}

TEST_F(InventoryTest, ASingleInterfaceIsFoundByItsName) {
  AddInterface(kWired);
  EXPECT_THAT(Inventory(), UnorderedElementsAre(Pair(kWired, testing::_)));
  EXPECT_THAT(simulation::RecordedQueries(),
              ElementsAre(kInterfacesQuery, kAdaptersQueryStart + std::string("Name = 'USB Ethernet Adapter'"),
                          kConfigurationsQueryStart + std::string("Description = 'USB Ethernet Adapter'")));
}

TEST_F(InventoryTest, FromTheSecondInterfaceOnAdaptersAreFoundByTheirDescription) {
  AddInterface("A");
  AddInterface("B");
  AddInterface("C");
  Inventory();
  const std::string by_name = "Name = 'A' OR Name = 'B' OR Name = 'C'";
  const std::string by_description = "Description = 'A' OR Description = 'B' OR Description = 'C'";
  EXPECT_THAT(simulation::RecordedQueries(),
              ElementsAre(kInterfacesQuery, kAdaptersQueryStart + by_name, kConfigurationsQueryStart + by_description,
                          kAdaptersQueryStart + by_description, kConfigurationsQueryStart + by_description,
                          kAdaptersQueryStart + by_description, kConfigurationsQueryStart + by_description));
}

TEST_F(InventoryTest, EachInventoryStartsWithTheNameAgain) {
  AddInterface("A");
  AddInterface("B");
  Inventory();
  network_.PerformNetworkInterfaceQueries();
  EXPECT_EQ(simulation::RecordedQueries().at(6), kAdaptersQueryStart + std::string("Name = 'A' OR Name = 'B'"));
}

TEST_F(InventoryTest, ReadsTheAdapterAndItsConfiguration) {
  AddInterface(kWired);
  types::NetworkInterfaceInfo expected;
  expected.pnp_device_id = R"(PCI\1)";
  expected.nominal_speed = 1e9F;
  expected.net_connection_id = "Connection 1";
  expected.connection_status = "Connected";
  expected.mac_address = "02:00:00:00:00:01";
  expected.manufacturer = "Maker";
  expected.is_physical_adapter = true;
  expected.adapter_type = "Ethernet 802.3";
  expected.dhcp_enabled = true;
  expected.guid = kFirstGuid;
  expected.interface_index = 1;
  EXPECT_EQ(Only(), expected);
}

TEST_F(InventoryTest, BracketsOfACounterNameStandForParentheses) {
  AddInterface(kWifi);
  machine_.wmi.classes[kInterfacesTable] = {{{"Name", kBracketed}}};
  const types::NetworkInterfaces interfaces = Inventory();
  ASSERT_THAT(interfaces, UnorderedElementsAre(Pair(kWifi, testing::_)));
  EXPECT_EQ(interfaces.at(kWifi).mac_address, Mac(1));
  EXPECT_EQ(simulation::RecordedQueries().at(1), kAdaptersQueryStart + std::string("Name = 'Wi-Fi 6E(R) AX Adapter'"));
}

TEST_F(InventoryTest, NamesOutsideAsciiReachTheQueries) {
  AddInterface("Netzwerk-Übergang €");
  EXPECT_EQ(Only().mac_address, Mac(1));
  EXPECT_EQ(simulation::RecordedQueries().at(1), kAdaptersQueryStart + std::string("Name = 'Netzwerk-Übergang €'"));
}

TEST_F(InventoryTest, AQuotationMarkStandsInTheQueryAsItIsAndFindsNothing) {
  AddInterface("Bob's Adapter");
  EXPECT_EQ(Only(), types::NetworkInterfaceInfo());
  EXPECT_EQ(simulation::RecordedQueries().at(1), kAdaptersQueryStart + std::string("Name = 'Bob's Adapter'"));
}

TEST_F(InventoryTest, AnAdapterOfAnotherProductNameIsNoInterface) {
  AddInterface(kWired);
  AdapterRow(1)["ProductName"] = "Another";
  EXPECT_EQ(Only(), types::NetworkInterfaceInfo());
}

TEST_F(InventoryTest, AnAdapterThatIsNumberedIsFoundByItsDescriptionOnlyBesideAnother) {
  AddInterface(kWired);
  AdapterRow(1)["Name"] = "USB Ethernet Adapter #2";
  EXPECT_EQ(Only().mac_address, "");
  AddInterface(kWifi);
  EXPECT_EQ(Inventory().at(kWired).mac_address, Mac(1));
}

TEST_F(InventoryTest, AnInterfaceThatIsListedTwiceIsOneAndAskedForTwiceInEachQuery) {
  AddInterface("A");
  machine_.wmi.classes[kInterfacesTable].push_back({{"Name", "A"}});
  EXPECT_THAT(Inventory(), SizeIs(1));
  EXPECT_THAT(simulation::RecordedQueries(), SizeIs(3));
  EXPECT_EQ(simulation::RecordedQueries().at(1), kAdaptersQueryStart + std::string("Name = 'A' OR Name = 'A'"));
}

TEST_F(InventoryTest, ARowWithoutANameIsAnInterfaceWithoutOne) {
  machine_.wmi.classes[kInterfacesTable] = {{{"BytesSentPersec", "1"}}};
  EXPECT_THAT(Inventory(), UnorderedElementsAre(Pair("", types::NetworkInterfaceInfo())));
  EXPECT_EQ(simulation::RecordedQueries().at(1), kAdaptersQueryStart + std::string("Name = ''"));
}

TEST_F(InventoryTest, AFailedInterfaceQueryGivesNoInterfaces) {
  AddInterface(kWired);
  FailQueries(kInterfacesTable);
  EXPECT_THAT(Inventory(), IsEmpty());
  EXPECT_THAT(log_.lines, IsEmpty());
}

TEST_F(InventoryTest, AFailedAdapterQueryLeavesTheRecordsFresh) {
  AddInterface(kWired);
  FailQueries("Win32_NetworkAdapter WHERE");
  EXPECT_EQ(Only(), types::NetworkInterfaceInfo());
  EXPECT_THAT(simulation::RecordedQueries(), SizeIs(3));
}

TEST_F(InventoryTest, AFailedConfigurationQueryLeavesDhcpOnly) {
  AddInterface(kWired);
  FailQueries(kConfigurationsTable);
  const types::NetworkInterfaceInfo info = Only();
  EXPECT_FALSE(info.dhcp_enabled);
  EXPECT_EQ(info.mac_address, Mac(1));
}

TEST_F(InventoryTest, AFailureOfTheFirstAdapterQueryIsMadeUpForByTheNext) {
  AddInterface("A");
  AddInterface("B");
  machine_.wmi.failures = {{"Win32_NetworkAdapter WHERE", tests::kAccessDenied, 1, 0}};
  const types::NetworkInterfaces interfaces = Inventory();
  EXPECT_EQ(interfaces.at("A").mac_address, Mac(1));
  EXPECT_EQ(interfaces.at("B").mac_address, Mac(2));
}

TEST_F(InventoryTest, APropertyThatIsMissingLeavesItsFieldAlone) {
  AddInterface(kWired);
  const types::NetworkInterfaceInfo whole = Only();
  const types::NetworkInterfaceInfo fresh;
  const auto without = [&](const char* property) {
    simulation::WmiRow removed = AdapterRow(1);
    std::swap(removed, AdapterRow(1));
    AdapterRow(1).erase(property);
    const types::NetworkInterfaceInfo info = Only();
    AdapterRow(1) = removed;
    return info;
  };
  const auto expect_lost = [&](const char* property, auto field, bool loses_dhcp = false) {
    types::NetworkInterfaceInfo expected = whole;
    expected.*field = fresh.*field;
    if (loses_dhcp) expected.dhcp_enabled = false;
    EXPECT_EQ(without(property), expected) << property;
  };
  using Info = types::NetworkInterfaceInfo;
  expect_lost("AdapterType", &Info::adapter_type);
  expect_lost("MACAddress", &Info::mac_address, true);
  expect_lost("Manufacturer", &Info::manufacturer);
  expect_lost("PNPDeviceID", &Info::pnp_device_id);
  expect_lost("PhysicalAdapter", &Info::is_physical_adapter);
  expect_lost("Speed", &Info::nominal_speed);
  expect_lost("NetConnectionID", &Info::net_connection_id);
  expect_lost("GUID", &Info::guid);
  expect_lost("InterfaceIndex", &Info::interface_index);
  expect_lost("NetConnectionStatus", &Info::connection_status);
}

// An adapter that is listed again, and tells nothing but its name.
TEST_F(InventoryTest, ARowThatTellsNothingLeavesWhatIsKnownButForTheStatus) {
  AddInterface(kWired);
  types::NetworkInterfaceInfo expected = Only();
  EXPECT_EQ(expected.connection_status, "Connected");
  machine_.wmi.classes[kAdaptersTable].push_back({{"Name", kWired}, {"ProductName", kWired}});
  expected.connection_status = "Unknown";
  EXPECT_EQ(Only(), expected);
}

TEST_F(InventoryTest, AStatusBeyondTheTableDoesNotLeaveTheOneBefore) {
  AddInterface(kWired);
  simulation::WmiRow again = AdapterRow(1);
  again["NetConnectionStatus"] = 13;
  machine_.wmi.classes[kAdaptersTable].push_back(again);
  EXPECT_EQ(Only().connection_status, "Unknown");
}

TEST_F(InventoryTest, ADhcpSettingThatCannotBeReadLeavesTheOneBefore) {
  AddInterface(kWired);
  machine_.wmi.classes[kConfigurationsTable].push_back({{"Description", kWired}, {"MACAddress", Mac(1)}});
  EXPECT_TRUE(Only().dhcp_enabled);
}

TEST_F(InventoryTest, ASpeedOfNoneIsLeftAlone) {
  AddInterface(kWired);
  AdapterRow(1)["Speed"] = simulation::WmiNull();
  EXPECT_EQ(Only().nominal_speed, 0.0F);
}

TEST_F(InventoryTest, AnInterfaceIndexFromTwoToThePowerOf31OnIsNotNegative) {
  AddInterface(kWired);
  AdapterRow(1)["InterfaceIndex"] = std::numeric_limits<std::int32_t>::min();
  EXPECT_EQ(Only().interface_index, 2'147'483'648U);
}

TEST_F(InventoryTest, ConfigurationsAreToldApartByTheirMacAddress) {
  AddInterface("A");
  AddInterface("B");
  ConfigurationRow(1)["DHCPEnabled"] = false;
  const types::NetworkInterfaces interfaces = Inventory();
  EXPECT_FALSE(interfaces.at("A").dhcp_enabled);
  EXPECT_TRUE(interfaces.at("B").dhcp_enabled);
}

TEST_F(InventoryTest, AMacAddressInOtherLettersIsAnother) {
  AddInterface(kWired);
  AdapterRow(1)["MACAddress"] = "02:00:00:00:00:AA";
  ConfigurationRow(1)["MACAddress"] = "02:00:00:00:00:aa";
  EXPECT_FALSE(Only().dhcp_enabled);
}

TEST_F(InventoryTest, TwoMissingMacAddressesAreTheSame) {
  AddInterface(kWired);
  AdapterRow(1).erase("MACAddress");
  ConfigurationRow(1).erase("MACAddress");
  EXPECT_TRUE(Only().dhcp_enabled);
}

TEST_F(InventoryTest, OfTwoInterfacesWithOneMacAddressOneGetsTheConfiguration) {
  AddInterface("A");
  AddInterface("B");
  AdapterRow(2)["MACAddress"] = Mac(1);
  machine_.wmi.classes[kConfigurationsTable].pop_back();
  const types::NetworkInterfaces interfaces = Inventory();
  EXPECT_NE(interfaces.at("A").dhcp_enabled, interfaces.at("B").dhcp_enabled);
  EXPECT_TRUE(interfaces.begin()->second.dhcp_enabled);
}

TEST_F(InventoryTest, TheOrderOfTheRowsChangesNoRecord) {
  const std::vector<std::string> names = {"A", "Bravo", "Charlie", "Delta 4", "Echo (5)", "Foxtrot"};
  for (const std::string& name : names) AddInterface(name);
  const types::NetworkInterfaces expected = Inventory();
  ASSERT_THAT(expected, SizeIs(names.size()));
  for (std::size_t i = 0; i < names.size(); ++i) {
    for (auto& [table, rows] : machine_.wmi.classes) std::rotate(rows.begin(), rows.begin() + 1, rows.end());
    EXPECT_EQ(Inventory(), expected);
  }
}

TEST_F(InventoryTest, TwoHundredInterfacesAreAllFound) {
  constexpr int kInterfaces = 200;
  std::string by_name;
  for (int number = 1; number <= kInterfaces; ++number) {
    const std::string name = "Adapter " + std::to_string(number);
    AddInterface(name);
    by_name += (number == 1 ? "Name = '" : " OR Name = '") + name + "'";
  }
  const types::NetworkInterfaces interfaces = Inventory();
  ASSERT_THAT(interfaces, SizeIs(kInterfaces));
  for (int number = 1; number <= kInterfaces; ++number) {
    const types::NetworkInterfaceInfo& info = interfaces.at("Adapter " + std::to_string(number));
    EXPECT_EQ(info.mac_address, Mac(number));
    EXPECT_TRUE(info.dhcp_enabled);
  }
  const std::vector<std::string> queries = simulation::RecordedQueries();
  ASSERT_THAT(queries, SizeIs(1 + 2 * kInterfaces));
  EXPECT_EQ(queries[1], kAdaptersQueryStart + by_name);
  for (std::size_t i = 5; i < queries.size(); i += 2) {
    EXPECT_EQ(queries[i], queries[3]);
    EXPECT_EQ(queries[i + 1], queries[2]);
  }
}

TEST_F(InventoryTest, EveryConnectionStatusHasItsText) {
  AddInterface(kWired);
  const std::vector<std::string> texts = {"Disconnected",
                                          "Connecting",
                                          "Connected",
                                          "Disconnecting",
                                          "Hardware Not Present",
                                          "Hardware Disabled",
                                          "Hardware Malfunction",
                                          "Media Disconnected",
                                          "Authenticating",
                                          "Authentication Succeeded",
                                          "Authentication Failed",
                                          "Invalid Address",
                                          "Credentials Required"};
  for (std::size_t code = 0; code < texts.size(); ++code) {
    AdapterRow(1)["NetConnectionStatus"] = static_cast<std::int32_t>(code);
    EXPECT_EQ(Only().connection_status, texts[code]) << code;
  }
}

TEST_F(InventoryTest, AStatusBeyondTheTableIsUnknown) {
  EXPECT_EQ(StatusOfCode(13), "Unknown");
}

TEST_F(InventoryTest, ANegativeStatusIsUnknown) {
  EXPECT_EQ(StatusOfCode(-1), "Unknown");
}

TEST_F(InventoryTest, AStatusThatIsNoNumberIsUnknown) {
  EXPECT_EQ(StatusOfCode("connected"), "Unknown");
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
