#include "store/network_summary.h"

#include <stdexcept>

#include <nlohmann/json.hpp>

#include "open_collector.h"
#include "store/sample_database.h"
#include "support/collector_fixture.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using Json = nlohmann::json;
using testing::IsEmpty;
using testing::SizeIs;

Json Profile(const std::string& hash = "AB12") {
  return {{"profile_name_hash", hash}, {"profile_authentication", "WPA2PSK"}, {"profile_encryption", "AES"}};
}

Json Interface(const std::string& id = "{A}") {
  return {{"interface_device_id", id},
          {"network_trust_level", "Private"},
          {"is_managed", 1},
          {"channel", 36},
          {"radio_type", "802.11ax"},
          {"speed_avg", 1200.0},
          {"tx_avg", 1100.5},
          {"rx_avg", 866.9},
          {"rssi_avg", -61.7},
          {"bytes_received", 3000},
          {"bytes_sent", 700},
          {"co_channel_interference_count", 3},
          {"adjacent_channel_interference_count", 2},
          {"w_lan_profiles", Json::array({Profile()})}};
}

Json Hour(const Json& interfaces = Json::array({Interface()})) {
  return {{"has_internet_access", 1},
          {"has_network_access", 1},
          {"is_vpn_connected", 0},
          {"tcp_ipv4_stats_info", {{"current_connections", 40}, {"failed_connections", 4}, {"errors_received", 1}}},
          {"tcp_ipv6_stats_info", {{"failed_connections", 6}}},
          {"interfaces_info", interfaces},
          {"num_samples", 180}};
}

// An hour whose only interface differs in one value.
Json HourWith(const std::string& key, const Json& value) {
  Json changed = Interface();
  changed[key] = value;
  return Hour(Json::array({changed}));
}

Json HourWithout(const std::string& key) {
  Json changed = Interface();
  changed.erase(key);
  return Hour(Json::array({changed}));
}

class NetworkSummaryTest : public testing::Test {
 protected:
  NetworkSummaryTest() {
    simulation::Machine machine;
    machine.clock = ExampleClock();
    machine.smbios_serial_number = "ZT12345678";
    simulation::UseMachine(machine);
  }

  void UploadTexts(const std::vector<std::string>& hours) {
    std::vector<SummaryRow> rows;
    for (std::size_t i = 0; i < hours.size(); ++i) {
      rows.push_back({{"hour_window", "2024-05-01T1" + std::to_string(i) + ":00:00.000Z"}, {"network_info", hours[i]}});
    }
    collector_.UploadNetworkSamples(&rows);
  }

  void Upload(const std::vector<Json>& hours) {
    std::vector<std::string> texts;
    for (const Json& hour : hours) texts.push_back(hour.dump());
    UploadTexts(texts);
  }

  /// The network section that an hour gives.
  const contract::upload::log::PcLogPerformanceSamplesAsCDM_HwInfo_Network& SectionOf(const Json& hour) {
    sink_->sent.clear();
    Upload({hour});
    return sink_->sent.at(0).hw_info().network_info();
  }

  const contract::upload::log::PcLogPerformanceSamplesAsCDM_HwInfo_Network_Interfaces& InterfaceOf(const Json& hour) {
    return SectionOf(hour).interfaces_info(0);
  }

  std::shared_ptr<tests::RecordingSink> sink_ = tests::RegisterRecordingSink();
  OpenCollector collector_;
};

TEST_F(NetworkSummaryTest, SendsOneRecordForEachHour) {
  Upload({Hour(), Hour()});
  ASSERT_THAT(sink_->sent, SizeIs(2));
  EXPECT_EQ(sink_->sent[0].collection_id(), "2024-05-01T10H_ZT12345678-NE");
  EXPECT_EQ(sink_->sent[0].local_time(), "2026-03-07T12:20:42.000Z");
  EXPECT_EQ(sink_->sent[0].sample_points_actual(), 180U);
  EXPECT_EQ(sink_->sent[1].collection_id(), "2024-05-01T11H_ZT12345678-NE");
}

TEST_F(NetworkSummaryTest, FillsEveryFigureOfAnInterface) {
  const auto& entry = InterfaceOf(Hour());
  EXPECT_EQ(entry.device_id(), "{A}");
  EXPECT_EQ(entry.network_trust_level(), "Private");
  EXPECT_EQ(entry.radio_type(), "802.11ax");
  EXPECT_EQ(entry.is_managed_network(), "Managed");
  EXPECT_EQ(entry.adjacent_channel_interference_count(), 2U);
  EXPECT_EQ(entry.co_channel_interference_count(), 3U);
  EXPECT_EQ(entry.bytes_received(), 3000.0F);
  EXPECT_EQ(entry.bytes_sent(), 700.0F);
  EXPECT_EQ(entry.channel(), 36U);
  EXPECT_EQ(entry.nominal_speed(), 1200.0F);
  EXPECT_FALSE(entry.has_network_adapter_name());
  EXPECT_FALSE(entry.has_network_adapter_type());
}

TEST_F(NetworkSummaryTest, CutsRatesTowardZero) {
  const auto& entry = InterfaceOf(Hour());
  EXPECT_EQ(entry.receive_rate(), 866.0F);
  EXPECT_EQ(entry.transmission_rate(), 1100.0F);
}

TEST_F(NetworkSummaryTest, SendsSignalStrengthAsTheBitsOfASignedNumber) {
  EXPECT_EQ(InterfaceOf(Hour()).signal_strength(), 4294967235U);
  EXPECT_EQ(InterfaceOf(HourWith("rssi_avg", 0)).signal_strength(), 0U);
}

TEST_F(NetworkSummaryTest, ASignalStrengthOutOfRangeIsTheSmallestNumber) {
  EXPECT_EQ(InterfaceOf(HourWith("rssi_avg", 1e20)).signal_strength(), 0x80000000U);
  EXPECT_EQ(InterfaceOf(HourWith("rssi_avg", -1e20)).signal_strength(), 0x80000000U);
}

TEST_F(NetworkSummaryTest, RatesOutOfRangeWrap) {
  EXPECT_EQ(InterfaceOf(HourWith("rx_avg", -1.0)).receive_rate(), 4294967296.0F);  // 2^32 - 1 as a float
  EXPECT_EQ(InterfaceOf(HourWith("rx_avg", 1e30)).receive_rate(), 0.0F);
  EXPECT_EQ(InterfaceOf(HourWith("speed_avg", 4294967296.0)).nominal_speed(), 0.0F);
}

TEST_F(NetworkSummaryTest, ByteSumsLosePrecisionAsFloats) {
  EXPECT_EQ(InterfaceOf(HourWith("bytes_received", 16777217)).bytes_received(), 16777216.0F);
}

TEST_F(NetworkSummaryTest, ANegativeByteSumWraps) {
  EXPECT_EQ(InterfaceOf(HourWith("bytes_sent", -1)).bytes_sent(), 18446744073709551616.0F);
}

TEST_F(NetworkSummaryTest, AFractionReadAsAnIntegerIsCut) {
  EXPECT_EQ(InterfaceOf(HourWith("channel", 36.9)).channel(), 36U);
  EXPECT_EQ(InterfaceOf(HourWith("bytes_received", 3000.9)).bytes_received(), 3000.0F);
}

TEST_F(NetworkSummaryTest, AHugeFractionReadAsAnIntegerIsDefined) {
  EXPECT_EQ(InterfaceOf(HourWith("channel", 1e300)).channel(), 0U);
  EXPECT_EQ(InterfaceOf(HourWith("bytes_received", 1e300)).bytes_received(), 0.0F);
  EXPECT_EQ(InterfaceOf(HourWith("bytes_received", 1e19)).bytes_received(), 1e19F);
  EXPECT_EQ(InterfaceOf(HourWith("bytes_received", -1e300)).bytes_received(), 9223372036854775808.0F);
}

TEST_F(NetworkSummaryTest, ABooleanCountsAsANumber) {
  EXPECT_EQ(InterfaceOf(HourWith("is_managed", true)).is_managed_network(), "Managed");
  EXPECT_EQ(InterfaceOf(HourWith("is_managed", false)).is_managed_network(), "Unmanaged");
  EXPECT_EQ(InterfaceOf(HourWith("channel", true)).channel(), 1U);
  EXPECT_EQ(InterfaceOf(HourWith("channel", false)).channel(), 0U);
}

TEST_F(NetworkSummaryTest, AnInterfaceThatIsNotManagedSaysSo) {
  EXPECT_EQ(InterfaceOf(HourWith("is_managed", 0)).is_managed_network(), "Unmanaged");
  EXPECT_EQ(InterfaceOf(HourWith("is_managed", 0.5)).is_managed_network(), "Unmanaged");
  EXPECT_EQ(InterfaceOf(HourWith("is_managed", -3)).is_managed_network(), "Managed");
}

TEST_F(NetworkSummaryTest, BoundsItsTexts) {
  EXPECT_EQ(InterfaceOf(HourWith("interface_device_id", std::string(200, 'x'))).device_id(), std::string(128, 'x'));
  EXPECT_EQ(InterfaceOf(HourWith("network_trust_level", std::string(40, 'x'))).network_trust_level(),
            std::string(32, 'x'));
  EXPECT_EQ(InterfaceOf(HourWith("radio_type", std::string(40, 'x'))).radio_type(), std::string(32, 'x'));
}

TEST_F(NetworkSummaryTest, AnEmptyTextIsUnknown) {
  EXPECT_EQ(InterfaceOf(HourWith("radio_type", "")).radio_type(), "unknown");
}

TEST_F(NetworkSummaryTest, TakesTheFirst32InterfacesThatNameTheirDevice) {
  Json interfaces = Json::array();
  for (int i = 0; i < 40; ++i) interfaces.push_back(Interface("{" + std::to_string(i) + "}"));
  interfaces[3]["interface_device_id"] = nullptr;
  const auto& section = SectionOf(Hour(interfaces));
  ASSERT_THAT(section.interfaces_info(), SizeIs(32));
  EXPECT_EQ(section.interfaces_info(2).device_id(), "{2}");
  EXPECT_EQ(section.interfaces_info(3).device_id(), "{4}");
  EXPECT_EQ(section.interfaces_info(31).device_id(), "{32}");
}

TEST_F(NetworkSummaryTest, SkipsElementsThatAreNoInterface) {
  const auto& section = SectionOf(Hour(Json::array({nullptr, 7, "text", Json::array(), Json::object(), Interface()})));
  EXPECT_THAT(section.interfaces_info(), SizeIs(1));
}

TEST_F(NetworkSummaryTest, AnHourWithoutInterfacesIsSentWithoutThem) {
  Json hour = Hour();
  hour.erase("interfaces_info");
  EXPECT_THAT(SectionOf(hour).interfaces_info(), IsEmpty());
}

TEST_F(NetworkSummaryTest, CarriesTheWifiProfiles) {
  const auto& profiles = InterfaceOf(HourWith("w_lan_profiles", {Profile("01"), Profile("02")})).w_lan_profiles();
  ASSERT_THAT(profiles, SizeIs(2));
  EXPECT_EQ(profiles[0].w_lan_profile_name(), "01");
  EXPECT_EQ(profiles[0].w_lan_profile_authentication(), "WPA2PSK");
  EXPECT_EQ(profiles[0].w_lan_profile_encryption(), "AES");
  EXPECT_FALSE(profiles[0].has_is_active());
  EXPECT_EQ(profiles[1].w_lan_profile_name(), "02");
}

TEST_F(NetworkSummaryTest, TakesTheFirst32Profiles) {
  Json profiles = Json::array();
  for (int i = 0; i < 33; ++i) profiles.push_back(Profile(std::to_string(i)));
  const auto& taken = InterfaceOf(HourWith("w_lan_profiles", profiles)).w_lan_profiles();
  ASSERT_THAT(taken, SizeIs(32));
  EXPECT_EQ(taken[31].w_lan_profile_name(), "31");
}

TEST_F(NetworkSummaryTest, BoundsTheTextsOfAProfile) {
  Json profile = Profile(std::string(200, 'A'));
  profile["profile_encryption"] = "";
  const auto& taken = InterfaceOf(HourWith("w_lan_profiles", Json::array({profile}))).w_lan_profiles(0);
  EXPECT_EQ(taken.w_lan_profile_name(), std::string(128, 'A'));
  EXPECT_EQ(taken.w_lan_profile_encryption(), "unknown");
}

TEST_F(NetworkSummaryTest, AnInterfaceWithoutProfilesHasNone) {
  EXPECT_THAT(InterfaceOf(HourWithout("w_lan_profiles")).w_lan_profiles(), IsEmpty());
  EXPECT_THAT(InterfaceOf(HourWith("w_lan_profiles", nullptr)).w_lan_profiles(), IsEmpty());
}

TEST_F(NetworkSummaryTest, CarriesTheTcpStatistics) {
  const auto& section = SectionOf(Hour());
  EXPECT_EQ(section.tcp_i_p_v4_stats_info().current_connections(), 40U);
  EXPECT_EQ(section.tcp_i_p_v4_stats_info().failed_connections(), 4U);
  EXPECT_EQ(section.tcp_i_p_v4_stats_info().errors_received(), 1U);
  EXPECT_EQ(section.tcp_i_p_v6_stats_info().failed_connections(), 6U);
}

TEST_F(NetworkSummaryTest, CarriesTheFlags) {
  const auto& section = SectionOf(Hour());
  EXPECT_FALSE(section.is_vpn_connected());
  EXPECT_TRUE(section.has_network_access());
  EXPECT_TRUE(section.has_internet_access());
}

TEST_F(NetworkSummaryTest, AHourThatIsEmptyOrNoObjectIsNotSent) {
  UploadTexts({"{}", "[]", "null", "[1]", "7", "\"text\""});
  EXPECT_THAT(sink_->sent, IsEmpty());
}

TEST_F(NetworkSummaryTest, AHourThatIsNoJsonIsDroppedAndTheNextOneSent) {
  UploadTexts({"", "{\"num_samples\":", "\xFF\xFE", Hour().dump()});
  ASSERT_THAT(sink_->sent, SizeIs(1));
  EXPECT_EQ(sink_->sent[0].collection_id(), "2024-05-01T13H_ZT12345678-NE");
}

TEST_F(NetworkSummaryTest, AKeyMissingFromTheHourDropsItWhole) {
  for (const char* key : {"has_internet_access", "has_network_access", "is_vpn_connected", "tcp_ipv4_stats_info",
                          "tcp_ipv6_stats_info", "num_samples"}) {
    Json hour = Hour();
    hour.erase(key);
    Upload({hour});
    EXPECT_THAT(sink_->sent, IsEmpty()) << key;
  }
}

TEST_F(NetworkSummaryTest, AKeyMissingFromAnInterfaceDropsTheHour) {
  const Json complete = Interface();
  for (const auto& [key, value] : complete.items()) {
    if (key == "interface_device_id" || key == "w_lan_profiles") continue;
    Upload({HourWithout(key)});
    EXPECT_THAT(sink_->sent, IsEmpty()) << key;
  }
}

TEST_F(NetworkSummaryTest, AValueOfTheWrongTypeDropsTheHour) {
  const Json complete = Interface();
  for (const auto& [key, value] : complete.items()) {
    if (key == "interface_device_id") continue;
    Upload({HourWith(key, value.is_string() ? Json(7) : Json("text"))});
    EXPECT_THAT(sink_->sent, IsEmpty()) << key;
  }
}

TEST_F(NetworkSummaryTest, AProfileThatLacksATextDropsTheHour) {
  Json profile = Profile();
  profile.erase("profile_encryption");
  Upload({HourWith("w_lan_profiles", Json::array({profile})), HourWith("w_lan_profiles", Json::array({7}))});
  EXPECT_THAT(sink_->sent, IsEmpty());
}

TEST_F(NetworkSummaryTest, NothingOfADroppedHourIsLeftInTheNext) {
  Json broken = Hour(Json::array({Interface("{A}"), Interface("{B}")}));
  broken["num_samples"] = "many";
  Upload({broken, Hour(Json::array())});
  ASSERT_THAT(sink_->sent, SizeIs(1));
  EXPECT_THAT(sink_->sent[0].hw_info().network_info().interfaces_info(), IsEmpty());
}

TEST_F(NetworkSummaryTest, NothingOfASentHourIsLeftInTheNext) {
  Upload({Hour(), Hour(Json::array())});
  ASSERT_THAT(sink_->sent, SizeIs(2));
  EXPECT_THAT(sink_->sent[1].hw_info().network_info().interfaces_info(), IsEmpty());
}

TEST_F(NetworkSummaryTest, AnHourWithoutItsWindowOrItsTextIsNotSent) {
  std::vector<SummaryRow> rows = {{{"network_info", Hour().dump()}}, {{"hour_window", "2024-05-01T10:00:00.000Z"}}};
  collector_.UploadNetworkSamples(&rows);
  EXPECT_THAT(sink_->sent, IsEmpty());
}

TEST_F(NetworkSummaryTest, WithoutRowsNothingHappens) {
  std::vector<SummaryRow> rows;
  collector_.UploadNetworkSamples(&rows);
  collector_.UploadNetworkSamples(nullptr);
  EXPECT_THAT(sink_->sent, IsEmpty());
}

TEST_F(NetworkSummaryTest, AFailedSendDoesNotStopTheNextHour) {
  sink_->send_outcome = {5, 1, "no upload today", "", ""};
  Upload({Hour(), Hour()});
  EXPECT_THAT(sink_->sent, SizeIs(2));
}

TEST_F(NetworkSummaryTest, ASendThatThrowsDoesNotStopTheNextHour) {
  const SummaryRow row = {{"hour_window", "2024-05-01T10:00:00.000Z"}, {"network_info", Hour().dump()}};
  int sends = 0;
  const auto send = [&](const PcLogPerformanceSamplesAsCDM&) {
    ++sends;
    throw std::runtime_error("no upload today");
  };
  SendNetworkHours({row, row}, send);
  EXPECT_EQ(sends, 2);
}

TEST_F(NetworkSummaryTest, NoFigureOfASentHourIsLeftInTheNextThatBreaksOff) {
  Json flagged = Hour();
  flagged["is_vpn_connected"] = 1;
  Upload({flagged, Hour()});
  ASSERT_THAT(sink_->sent, SizeIs(2));
  EXPECT_TRUE(sink_->sent[0].hw_info().network_info().is_vpn_connected());
  EXPECT_FALSE(sink_->sent[1].hw_info().network_info().is_vpn_connected());
}

TEST_F(NetworkSummaryTest, UsesAShortHourWindowWhole) {
  std::vector<SummaryRow> rows = {{{"hour_window", "2024"}, {"network_info", Hour().dump()}}};
  collector_.UploadNetworkSamples(&rows);
  ASSERT_THAT(sink_->sent, SizeIs(1));
  EXPECT_EQ(sink_->sent[0].collection_id(), "2024H_ZT12345678-NE");
}

TEST_F(NetworkSummaryTest, LeavesTheLiveRecordAlone) {
  PerfMessages::Init(&collector_, 50);
  Upload({Hour()});
  EXPECT_FALSE(PerfMessages::static_cdm_->has_hw_info());
}

TEST_F(NetworkSummaryTest, ASampleCountBeyond32BitsKeepsItsLowBits) {
  Json hour = Hour();
  hour["num_samples"] = 4294967299;
  Upload({hour});
  EXPECT_EQ(sink_->sent.at(0).sample_points_actual(), 3U);
}

TEST_F(NetworkSummaryTest, CutsALongIdAtThirty) {
  simulation::Machine machine;
  machine.smbios_serial_number = "ZT1234567890123";
  simulation::UseMachine(machine);
  Upload({Hour()});
  EXPECT_EQ(sink_->sent.at(0).collection_id(), "2024-05-01T10H_ZT1234567890123");
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
