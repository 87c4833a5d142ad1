#include <type_traits>

#include "network_fixture.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

class NetworkInfoMsgTest : public NetworkTest {};

TEST_F(NetworkInfoMsgTest, AddsNothingToALiveRecord) {
  AddInterface(kWired);
  simulation::UseMachine(machine_);
  PerfMessages::Init(this, 50);
  const std::string before = PerfMessages::static_cdm_->SerializeAsString();
  network_.PopulateStorageAndUploadProtos();
  EXPECT_EQ(PerfMessages::static_cdm_->SerializeAsString(), before);
  EXPECT_THAT(simulation::RecordedQueries(), testing::IsEmpty());
}

TEST_F(NetworkInfoMsgTest, KnowsOfNoAccessBeforeItsPasses) {
  EXPECT_FALSE(network_.is_vpn_connected_);
  EXPECT_FALSE(network_.has_network_access_);
  EXPECT_FALSE(network_.has_internet_access_);
}

TEST_F(NetworkInfoMsgTest, ACopyHasTheFlagsAndAsksTheSameClient) {
  AddInterface(kWired);
  network_.is_vpn_connected_ = true;
  network_.has_network_access_ = true;
  network_.has_internet_access_ = true;
  NetworkInfoMsg copy(network_);
  EXPECT_TRUE(copy.is_vpn_connected_);
  EXPECT_TRUE(copy.has_network_access_);
  EXPECT_TRUE(copy.has_internet_access_);
  simulation::UseMachine(machine_);
  EXPECT_TRUE(copy.PerformNetworkInterfaceQueries().contains(kWired));
}

TEST_F(NetworkInfoMsgTest, AnAssignedOneTakesTheFlagsAndTheClient) {
  AddInterface(kWired);
  network_.has_network_access_ = true;
  NetworkInfoMsg other(nullptr, nullptr);
  other = network_;
  EXPECT_TRUE(other.has_network_access_);
  simulation::UseMachine(machine_);
  EXPECT_TRUE(other.PerformNetworkInterfaceQueries().contains(kWired));
}

TEST_F(NetworkInfoMsgTest, WithoutAClientTheInventoryIsEmpty) {
  AddInterface(kWired);
  simulation::UseMachine(machine_);
  EXPECT_THAT(NetworkInfoMsg(nullptr, nullptr).PerformNetworkInterfaceQueries(), testing::IsEmpty());
}

TEST(NetworkInterfaceInfoTest, StartsUnknownAndWithoutAnIndex) {
  const types::NetworkInterfaceInfo info;
  EXPECT_EQ(info.connection_status, "Unknown");
  EXPECT_EQ(info.network_category, "Unknown");
  EXPECT_EQ(info.radio_type, "Unknown");
  EXPECT_EQ(info.interface_index, 4'294'967'295U);
  EXPECT_EQ(info.channel, 0U);
  EXPECT_FALSE(info.reserved_flag);
  EXPECT_EQ(info.reserved_text, "");
  EXPECT_EQ(info.reserved_number, 0U);
  EXPECT_TRUE(info.w_lan_profiles.empty());
}

// An aggregate takes its values in the order of its fields.
TEST(NetworkInterfaceInfoTest, FieldsStandInTheAgreedOrder) {
  const types::NetworkInterfaceInfo info = {"pnp",    1,     2,          3.0F,    4.0F,
                                            5.0F,     true,  true,       false,   "net",
                                            "status", "mac", "category", "maker", "text",
                                            6,        true,  "type",     true,    7,
                                            "radio",  8.0F,  9,          10,      {{"p", "a", "e", true}},
                                            "guid",   11};
  EXPECT_EQ(info.pnp_device_id, "pnp");
  EXPECT_EQ(info.bytes_sent, 1U);
  EXPECT_EQ(info.bytes_received, 2U);
  EXPECT_EQ(info.transmission_rate, 3.0F);
  EXPECT_EQ(info.receive_rate, 4.0F);
  EXPECT_EQ(info.nominal_speed, 5.0F);
  EXPECT_TRUE(info.reserved_flag);
  EXPECT_TRUE(info.has_internet_access);
  EXPECT_FALSE(info.is_connected);
  EXPECT_EQ(info.net_connection_id, "net");
  EXPECT_EQ(info.connection_status, "status");
  EXPECT_EQ(info.mac_address, "mac");
  EXPECT_EQ(info.network_category, "category");
  EXPECT_EQ(info.manufacturer, "maker");
  EXPECT_EQ(info.reserved_text, "text");
  EXPECT_EQ(info.reserved_number, 6U);
  EXPECT_TRUE(info.is_physical_adapter);
  EXPECT_EQ(info.adapter_type, "type");
  EXPECT_TRUE(info.dhcp_enabled);
  EXPECT_EQ(info.channel, 7U);
  EXPECT_EQ(info.radio_type, "radio");
  EXPECT_EQ(info.signal_strength, 8.0F);
  EXPECT_EQ(info.co_channel_interference_count, 9U);
  EXPECT_EQ(info.adjacent_channel_interference_count, 10U);
  EXPECT_EQ(info.w_lan_profiles, (std::vector<types::WLanProfile>{{"p", "a", "e", true}}));
  EXPECT_EQ(info.guid, "guid");
  EXPECT_EQ(info.interface_index, 11U);
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
