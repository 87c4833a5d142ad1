#include "network_fixture.h"
#include "simulation/calls.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::ElementsAre;

constexpr char kGuid[] = "{11111111-0000-4000-8000-000000000003}";

// By way of the pass that asks: a connected network runs over an adapter that is no interface.
class VpnTest : public NetworkTest {
 protected:
  void AddAdapter(const simulation::WmiProperty& description) {
    machine_.wmi.classes[kAdaptersTable].push_back({{"Description", description}, {"GUID", kGuid}});
  }

  bool IsVpn(const std::string& guid = kGuid) {
    simulation::ListedNetwork network;
    network.connected = true;
    network.connections = std::vector<simulation::NetworkConnection>{{guid}};
    machine_.network.manager.emplace().networks = {network};
    simulation::UseMachine(machine_);
    types::NetworkInterfaces none;
    network_.is_vpn_connected_ = false;
    network_.HandleGeneralConnInfo(none);
    return network_.is_vpn_connected_;
  }
};

TEST_F(VpnTest, AVirtualEthernetAdapterCountsInAnyCase) {
  AddAdapter("Hyper Virtual Ethernet Adapter");
  EXPECT_TRUE(IsVpn());
  machine_.wmi.classes[kAdaptersTable][0]["Description"] = "some virtual adapter";
  EXPECT_TRUE(IsVpn());
  machine_.wmi.classes[kAdaptersTable][0]["Description"] = "A VIRTUAL ADAPTER";
  EXPECT_TRUE(IsVpn());
}

TEST_F(VpnTest, VpnInSmallLettersCounts) {
  AddAdapter("office vpn client");
  EXPECT_TRUE(IsVpn());
}

TEST_F(VpnTest, APartOfAWordCounts) {
  AddAdapter("OpenVpnTap");
  EXPECT_TRUE(IsVpn());
}

TEST_F(VpnTest, AnotherDescriptionDoesNotCount) {
  AddAdapter("USB Ethernet Adapter");
  EXPECT_FALSE(IsVpn());
}

TEST_F(VpnTest, AGuidWithoutAnAdapterDoesNotCount) {
  AddAdapter("Office VPN");
  EXPECT_FALSE(IsVpn("{11111111-0000-4000-8000-000000000004}"));
}

TEST_F(VpnTest, AFailedQueryDoesNotCount) {
  AddAdapter("Office VPN");
  FailQueries("SELECT Description");
  EXPECT_FALSE(IsVpn());
  EXPECT_THAT(log_.lines, testing::IsEmpty());
}

TEST_F(VpnTest, AnyRowCounts) {
  AddAdapter("Plain");
  AddAdapter(simulation::WmiNull());
  AddAdapter("Office VPN");
  EXPECT_TRUE(IsVpn());
}

TEST_F(VpnTest, AnAdapterThatDoesNotDescribeItselfDoesNotEndTheSearch) {
  machine_.wmi.classes[kAdaptersTable] = {{{"GUID", kGuid}}};
  AddAdapter("Office VPN");
  EXPECT_TRUE(IsVpn());
}

TEST_F(VpnTest, WithoutAClientNoAdapterCounts) {
  AddAdapter("Office VPN");
  ASSERT_TRUE(IsVpn());
  NetworkInfoMsg without_client(nullptr, &rows_);
  types::NetworkInterfaces none;
  without_client.HandleGeneralConnInfo(none);
  EXPECT_FALSE(without_client.is_vpn_connected_);
}

TEST_F(VpnTest, BytesOutsideAsciiStandBesideTheWord) {
  AddAdapter("Büro-vpn für Ärzte");
  EXPECT_TRUE(IsVpn());
}

TEST_F(VpnTest, TheGuidStandsInTheQueryAsItIs) {
  EXPECT_FALSE(IsVpn(R"(A'B\C)"));
  EXPECT_THAT(simulation::RecordedQueries(),
              ElementsAre(R"(SELECT Description from Win32_NetworkAdapter WHERE GUID = 'A'B\C')"));
}

TEST_F(VpnTest, AClientThatThrowsAnswersNo) {
  AddAdapter("Office VPN");
  simulation::WatchCalls([](const simulation::Call& call) {
    return call.name.starts_with("query of") ? simulation::Disturbance::kThrows : simulation::Disturbance::kNone;
  });
  EXPECT_NO_THROW(EXPECT_FALSE(IsVpn()));
  simulation::WatchCalls({});
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
