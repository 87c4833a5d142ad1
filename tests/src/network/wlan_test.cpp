#include "network_fixture.h"
#include "support/status_codes.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::uint32_t kConnectsByItself = 0x20000;
constexpr std::uint32_t kGroupPolicy = 0x1;
constexpr std::uint32_t kOfAUser = 0x2;
constexpr std::uint32_t kSetByClient = 0x10000;
constexpr std::int32_t kDisconnected = 4;

constexpr char kXml[] =
    "<WLANProfile><authentication>WPA2PSK</authentication><encryption>AES</encryption></WLANProfile>";

class WlanTest : public NetworkTest {
 protected:
  WlanTest() { machine_.network.wlan.emplace(); }

  /// A Wi-Fi interface that is connected with the profile "Home" on channel 36.
  simulation::WlanInterface& AddWifi() {
    AddInterface(kWifi);
    simulation::WlanInterface& wifi = machine_.network.wlan->interfaces.emplace_back();
    wifi.guid = Guid(1);
    wifi.state = 1;
    wifi.profile = "Home";
    wifi.phy_type = 10;
    wifi.signal_quality = 87;
    wifi.rx_rate_kbps = 1'200'000;
    wifi.tx_rate_kbps = 1'100'000;
    wifi.channel = 36U;
    wifi.profiles = {{"Home", kConnectsByItself, kXml}};
    return wifi;
  }

  types::NetworkInterfaceInfo Wifi() { return WlanInfo().at(kWifi); }

  std::vector<std::string> Errors() const { return log_.Messages(plog::error); }
};

TEST_F(WlanTest, AConnectedInterfaceHasItsLink) {
  AddWifi();
  const types::NetworkInterfaceInfo info = Wifi();
  EXPECT_EQ(info.transmission_rate, 1'100'000.0F);
  EXPECT_EQ(info.receive_rate, 1'200'000.0F);
  EXPECT_EQ(info.signal_strength, 87.0F);
  EXPECT_EQ(info.radio_type, "802.11ax");
  EXPECT_EQ(info.channel, 36U);
  EXPECT_EQ(info.co_channel_interference_count, 1U);
  EXPECT_EQ(info.adjacent_channel_interference_count, 6U);
  EXPECT_THAT(log_.lines, IsEmpty());
}

TEST_F(WlanTest, AProfileHasTheTextsOfItsElements) {
  AddWifi();
  EXPECT_THAT(Wifi().w_lan_profiles, ElementsAre(types::WLanProfile{"Home", "WPA2PSK", "AES", true}));
}

TEST_F(WlanTest, ProfilesAreListedInTheServicesOrder) {
  AddWifi().profiles = {{"Zoo", kConnectsByItself, kXml}, {"Home", kGroupPolicy, kXml}, {"Café", kGroupPolicy, "<a/>"}};
  EXPECT_THAT(Wifi().w_lan_profiles, ElementsAre(types::WLanProfile{"Zoo", "WPA2PSK", "AES", false},
                                                 types::WLanProfile{"Home", "WPA2PSK", "AES", true},
                                                 types::WLanProfile{"Café", "", "", false}));
  EXPECT_THAT(log_.lines, IsEmpty());
}

TEST_F(WlanTest, AProfileThatAUserConnectsByHandShowsNoSettings) {
  AddWifi().profiles = {{"Guest", kOfAUser | kSetByClient, kXml}};
  EXPECT_THAT(Wifi().w_lan_profiles, ElementsAre(types::WLanProfile{"Guest", "", "", false}));
  EXPECT_THAT(Errors(), ElementsAre("Failed to retrieve WLAN profile for Guest"));
  EXPECT_THAT(log_.lines.at(0).function, EndsWith("::performancesamples::NetworkInfoMsg::HandleWlanInfo"));
}

TEST_F(WlanTest, AProfileShowsItsSettingsWhateverOtherFlagsItHas) {
  AddWifi().profiles = {{"User", kConnectsByItself | kOfAUser, kXml},
                        {"Domain", kGroupPolicy | kSetByClient, kXml},
                        {"Both", kConnectsByItself | kGroupPolicy, kXml}};
  for (const types::WLanProfile& profile : Wifi().w_lan_profiles) {
    EXPECT_EQ(profile.authentication, "WPA2PSK") << profile.profile_name;
  }
  EXPECT_THAT(log_.lines, IsEmpty());
}

TEST_F(WlanTest, AProfileThatCannotBeReadIsListedByItsName) {
  AddWifi().profiles = {{"Büro", kGroupPolicy, Failure{tests::kCallDenied}}, {"Home", kGroupPolicy, kXml}};
  EXPECT_THAT(Wifi().w_lan_profiles, ElementsAre(types::WLanProfile{"Büro", "", "", false},
                                                 types::WLanProfile{"Home", "WPA2PSK", "AES", true}));
  EXPECT_THAT(Errors(), ElementsAre("Failed to retrieve WLAN profile for Büro"));
}

TEST_F(WlanTest, AProfileWithoutXmlIsListedByItsName) {
  AddWifi().profiles = {{"Home", kGroupPolicy, std::nullopt}};
  EXPECT_THAT(Wifi().w_lan_profiles, ElementsAre(types::WLanProfile{"Home", "", "", true}));
  EXPECT_THAT(Errors(), SizeIs(1));
}

TEST_F(WlanTest, AnEmptyXmlIsReadAndHasNoTexts) {
  AddWifi().profiles = {{"Home", kGroupPolicy, ""}};
  EXPECT_THAT(Wifi().w_lan_profiles, ElementsAre(types::WLanProfile{"Home", "", "", true}));
  EXPECT_THAT(log_.lines, IsEmpty());
}

TEST_F(WlanTest, AProfileOfAMegabyteIsReadWhole) {
  const std::string filling(1 << 20, 'x');
  AddWifi().profiles = {{"Home", kGroupPolicy, "<" + filling + ">" + kXml}};
  EXPECT_THAT(Wifi().w_lan_profiles, ElementsAre(types::WLanProfile{"Home", "WPA2PSK", "AES", true}));
}

TEST_F(WlanTest, ADisconnectedInterfaceStillHasItsProfilesAndItsChannel) {
  AddWifi().state = kDisconnected;
  const types::NetworkInterfaceInfo info = Wifi();
  EXPECT_EQ(info.transmission_rate, 0.0F);
  EXPECT_EQ(info.receive_rate, 0.0F);
  EXPECT_EQ(info.signal_strength, 0.0F);
  EXPECT_EQ(info.radio_type, "Unknown");
  EXPECT_THAT(info.w_lan_profiles, ElementsAre(types::WLanProfile{"Home", "WPA2PSK", "AES", false}));
  EXPECT_EQ(info.channel, 36U);
  EXPECT_EQ(info.co_channel_interference_count, 1U);
}

TEST_F(WlanTest, AFailingLinkQuestionLeavesTheLinkAlone) {
  AddWifi().connection = tests::kCallDenied;
  const types::NetworkInterfaceInfo info = Wifi();
  EXPECT_EQ(info.receive_rate, 0.0F);
  EXPECT_EQ(info.radio_type, "Unknown");
  EXPECT_THAT(info.w_lan_profiles, ElementsAre(types::WLanProfile{"Home", "WPA2PSK", "AES", false}));
  EXPECT_EQ(info.channel, 36U);
  EXPECT_THAT(log_.lines, IsEmpty());
}

TEST_F(WlanTest, AFailingProfileListLeavesTheProfilesEmpty) {
  AddWifi().profile_list = tests::kCallDenied;
  const types::NetworkInterfaceInfo info = Wifi();
  EXPECT_THAT(info.w_lan_profiles, IsEmpty());
  EXPECT_EQ(info.receive_rate, 1'200'000.0F);
  EXPECT_EQ(info.channel, 36U);
  EXPECT_THAT(log_.lines, IsEmpty());
}

TEST_F(WlanTest, AFailingChannelQuestionLeavesTheChannelAlone) {
  AddWifi().channel = Failure{tests::kCallDenied};
  const types::NetworkInterfaceInfo info = Wifi();
  EXPECT_EQ(info.channel, 0U);
  EXPECT_EQ(info.co_channel_interference_count, 0U);
  EXPECT_EQ(info.receive_rate, 1'200'000.0F);
  EXPECT_THAT(log_.lines, IsEmpty());
}

// Over what a first pass found: nothing goes back to where it started.
TEST_F(WlanTest, WhatFailsInASecondPassLeavesWhatTheFirstOneFound) {
  simulation::WlanInterface& wifi = AddWifi();
  types::NetworkInterfaces interfaces = WlanInfo();
  const types::NetworkInterfaceInfo found = interfaces.at(kWifi);
  ASSERT_EQ(found.channel, 36U);
  wifi.connection = tests::kCallDenied;
  wifi.profile_list = tests::kCallDenied;
  wifi.channel = Failure{tests::kCallDenied};
  simulation::UseMachine(machine_);
  network_.HandleWlanInfo(interfaces);
  EXPECT_EQ(interfaces.at(kWifi), found);
}

TEST_F(WlanTest, ADisconnectedInterfaceKeepsTheLinkOfAFirstPass) {
  simulation::WlanInterface& wifi = AddWifi();
  types::NetworkInterfaces interfaces = WlanInfo();
  const types::NetworkInterfaceInfo found = interfaces.at(kWifi);
  wifi.state = kDisconnected;
  simulation::UseMachine(machine_);
  network_.HandleWlanInfo(interfaces);
  EXPECT_EQ(interfaces.at(kWifi).receive_rate, found.receive_rate);
  EXPECT_EQ(interfaces.at(kWifi).signal_strength, found.signal_strength);
  EXPECT_EQ(interfaces.at(kWifi).radio_type, found.radio_type);
}

TEST_F(WlanTest, AChannelOutsideThePlanIsKeptAndLogged) {
  AddWifi().channel = 10U;
  EXPECT_EQ(Wifi().channel, 10U);
  EXPECT_THAT(log_.Messages(plog::info), ElementsAre("connectedChannel 10 not found in frequencyData."));
}

TEST_F(WlanTest, AProfileWithoutANameIsNeverTheCurrentOne) {
  simulation::WlanInterface& wifi = AddWifi();
  wifi.profile = "";
  wifi.profiles = {{"", kGroupPolicy, kXml}};
  EXPECT_THAT(Wifi().w_lan_profiles, ElementsAre(types::WLanProfile{"", "WPA2PSK", "AES", false}));
}

TEST_F(WlanTest, ANameInOtherLettersIsAnother) {
  AddWifi().profile = "home";
  EXPECT_FALSE(Wifi().w_lan_profiles.at(0).is_current);
}

TEST_F(WlanTest, EveryRadioTypeHasItsText) {
  AddWifi();
  const std::vector<std::string> texts = {"Unknown", "802.11-1997", "802.11b",  "802.11-1997", "802.11a",  "802.11g",
                                          "802.11g", "802.11n",     "802.11ac", "802.11ad",    "802.11ax", "802,11be"};
  for (std::size_t phy_type = 0; phy_type < texts.size(); ++phy_type) {
    machine_.network.wlan->interfaces[0].phy_type = static_cast<std::uint32_t>(phy_type);
    EXPECT_EQ(Wifi().radio_type, texts[phy_type]);
  }
}

TEST_F(WlanTest, ARadioTypeBeyondTheTableLeavesTheWordAlone) {
  AddWifi();
  types::NetworkInterfaces interfaces = WlanInfo();
  for (const std::uint32_t phy_type : {12U, 0x80000000U, 0xFFFFFFFFU}) {
    machine_.network.wlan->interfaces[0].phy_type = phy_type;
    simulation::UseMachine(machine_);
    network_.HandleWlanInfo(interfaces);
    EXPECT_EQ(interfaces.at(kWifi).radio_type, "802.11ax");
  }
}

TEST_F(WlanTest, AnInterfaceThatIsNotInTheInventoryIsPassedOver) {
  AddWifi();
  simulation::WlanInterface unlisted;
  unlisted.guid = Guid(7);
  machine_.network.wlan->interfaces.insert(machine_.network.wlan->interfaces.begin(), unlisted);
  EXPECT_EQ(Wifi().channel, 36U);
  EXPECT_THAT(log_.lines, IsEmpty());
}

TEST_F(WlanTest, TheServicesGuidsAreInCapitals) {
  AddWifi().guid = "{abcdefab-0000-4000-8000-000000000001}";
  AdapterRow(1)["GUID"] = "{ABCDEFAB-0000-4000-8000-000000000001}";
  EXPECT_EQ(Wifi().channel, 36U);
}

TEST_F(WlanTest, WithoutInterfacesNothingHappens) {
  AddInterface(kWired);
  const types::NetworkInterfaces before = Inventory();
  EXPECT_EQ(WlanInfo(), before);
  EXPECT_THAT(log_.lines, IsEmpty());
}

TEST_F(WlanTest, TheOrderOfInterfacesChangesNoRecord) {
  AddWifi();
  for (int number = 2; number <= 5; ++number) {
    AddInterface("Wi-Fi " + std::to_string(number));
    simulation::WlanInterface wifi = machine_.network.wlan->interfaces.front();
    wifi.guid = Guid(number);
    wifi.channel = static_cast<std::uint32_t>(number);
    machine_.network.wlan->interfaces.push_back(wifi);
  }
  const types::NetworkInterfaces expected = WlanInfo();
  ASSERT_EQ(expected.at("Wi-Fi 5").channel, 5U);
  for (int i = 0; i < 5; ++i) {
    auto& interfaces = machine_.network.wlan->interfaces;
    std::rotate(interfaces.begin(), interfaces.begin() + 1, interfaces.end());
    for (auto& [table, rows] : machine_.wmi.classes) std::rotate(rows.begin(), rows.begin() + 2, rows.end());
    EXPECT_EQ(WlanInfo(), expected);
  }
}

TEST_F(WlanTest, ASecondPassAddsToCountsAndProfiles) {
  AddWifi();
  types::NetworkInterfaces interfaces = WlanInfo();
  network_.HandleWlanInfo(interfaces);
  EXPECT_EQ(interfaces.at(kWifi).adjacent_channel_interference_count, 12U);
  EXPECT_THAT(interfaces.at(kWifi).w_lan_profiles, SizeIs(2));
}

TEST_F(WlanTest, AComFailureIsLoggedAndThePassGoesOn) {
  AddWifi();
  machine_.network.com = Failure{tests::kOutOfMemory};
  EXPECT_EQ(Wifi().channel, 36U);
  EXPECT_THAT(Errors(), ElementsAre("COM initialization failed"));
}

TEST_F(WlanTest, AServiceThatDoesNotOpenEndsThePassWithOneLine) {
  AddWifi();
  machine_.network.wlan->open = tests::kCallDenied;
  EXPECT_EQ(Wifi().channel, 0U);
  EXPECT_THAT(Errors(), ElementsAre("Error occurred while retrieving WLAN interface statistics: "
                                    "Failed to open handle to WLAN interface"));
  EXPECT_THAT(log_.lines.at(0).function, EndsWith("NetworkInfoMsg::HandleWlanInfo"));
}

TEST_F(WlanTest, AMachineWithoutTheServiceDoesNotOpenIt) {
  machine_.network.wlan.reset();
  WlanInfo();
  EXPECT_THAT(Errors(), ElementsAre("Error occurred while retrieving WLAN interface statistics: "
                                    "Failed to open handle to WLAN interface"));
}

TEST_F(WlanTest, InterfacesThatCannotBeListedEndThePassWithOneLine) {
  AddWifi();
  machine_.network.wlan->enumerate = tests::kCallDenied;
  EXPECT_EQ(Wifi().channel, 0U);
  EXPECT_THAT(Errors(), ElementsAre("Error occurred while retrieving WLAN interface statistics: "
                                    "Failed to enumerate WiFi interfaces"));
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
