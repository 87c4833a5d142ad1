#include "store/summary_query.h"

#include <cstdint>
#include <string_view>

#include <nlohmann/json.hpp>

#include "store_test.h"
#include "table_definitions.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using nlohmann::json;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Key;
using testing::Not;
using testing::Pair;
using testing::UnorderedElementsAre;

class SummaryQueryTest : public StoreTest {
 protected:
  std::vector<SummaryRow> Thermal() const { return Query()["thermal"]; }
  std::vector<SummaryRow> Network() const { return Query()["network"]; }
  /// The JSON text of the only network row.
  json OnlyNetworkInfo() const {
    const std::vector<SummaryRow> rows = Network();
    EXPECT_EQ(rows.size(), 1U);
    return json::parse(rows.at(0).at("network_info"));
  }
};

std::uint64_t Fnv1a(std::string_view text) {
  std::uint64_t hash = 0xCBF29CE484222325;
  for (const char character : text) {
    hash = (hash ^ static_cast<unsigned char>(character)) * std::uint64_t{0x100000001B3};
  }
  return hash;
}

TEST(SummaryQueryTextTest, IsTheAgreedTextToTheCharacter) {
  const std::string_view text = kSummaryQuery;
  EXPECT_EQ(text.size(), 4504U);
  EXPECT_EQ(text.find('\r'), std::string_view::npos);
  EXPECT_TRUE(text.starts_with("SELECT\n    strftime("));
  EXPECT_TRUE(text.ends_with("\nORDER BY hour_window, source;"));
  EXPECT_EQ(Fnv1a(text), 0x28A35C817A6104CFU);
}

TEST_F(SummaryQueryTest, EmptyTablesGiveNoSource) {
  NewStore();
  EXPECT_THAT(Query(), IsEmpty());
}

TEST_F(SummaryQueryTest, OneTableWithRowsGivesItsSourceOnly) {
  NewStore().AddThermal("2026-03-07T12:00:30.000Z");
  EXPECT_THAT(Query(), ElementsAre(Key("thermal")));
}

TEST_F(SummaryQueryTest, AThermalHourHoldsPlainAveragesAndTheNumberOfSamples) {
  tests::SampleStore store = NewStore();
  store.AddThermal("2026-03-07T12:00:30.000Z", {{"cpu_temp", "50"}, {"fan1_speed_step", "20"}});
  store.AddThermal("2026-03-07T12:59:59.999Z", {{"cpu_temp", "51"}, {"fan1_speed_step", "21"}});
  store.AddThermal("2026-03-07T12:30:00.000Z", {{"cpu_temp", "51.5"}, {"fan1_speed_step", "NULL"}});
  EXPECT_THAT(Thermal(), ElementsAre(SummaryRow{{"hour_window", "2026-03-07T12:00:00.000Z"},
                                                {"cpu_temp_avg", "50.8333333333333"},
                                                {"ext_sensor_avg", "40.0"},
                                                {"loc_sensor_avg", "30.0"},
                                                {"fan1_current_tach_speed_avg", "1000.0"},
                                                {"fan1_target_tach_speed_avg", "1100.0"},
                                                {"fan1_speed_step_avg", "20.5"},
                                                {"fan2_current_tach_speed_avg", "2000.0"},
                                                {"fan2_target_tach_speed_avg", "2200.0"},
                                                {"fan2_speed_step_avg", "25.0"},
                                                {"num_samples", "3"}}));
}

TEST_F(SummaryQueryTest, ANetworkRowHoldsItsHourAndItsJsonOnly) {
  NewStore().AddNetwork("2026-03-07T12:00:30.000Z");
  EXPECT_THAT(Network(), ElementsAre(UnorderedElementsAre(Pair("hour_window", "2026-03-07T12:00:00.000Z"),
                                                          Pair("network_info", testing::_))));
}

TEST_F(SummaryQueryTest, ANetworkHourHoldsMaximaAveragesAndSumsOfEachInterface) {
  tests::SampleStore store = NewStore();
  store.AddNetwork("2026-03-07T12:00:30.000Z");
  store.AddNetwork("2026-03-07T12:01:30.000Z", {{"channel", "44"},
                                                {"nominal_speed", "1000"},
                                                {"tx_rate", "1000"},
                                                {"rx_rate", "500.5"},
                                                {"signal_strength", "-63.5"},
                                                {"tcp_ipv4_current_connections", "39"}});
  EXPECT_EQ(OnlyNetworkInfo(), json::parse(R"({
    "has_internet_access": 1, "has_network_access": 1, "is_vpn_connected": 0,
    "tcp_ipv4_stats_info": {"current_connections": 40, "failed_connections": 8, "errors_received": 2},
    "tcp_ipv6_stats_info": {"failed_connections": 12},
    "interfaces_info": [{
      "interface_device_id": "{A}", "network_trust_level": "Private", "is_managed": 1, "channel": 44,
      "radio_type": "802.11ax", "speed_avg": 1100.0, "tx_avg": 1050.0, "rx_avg": 750.25, "rssi_avg": -61.75,
      "bytes_received": 6000, "bytes_sent": 1400, "co_channel_interference_count": 6,
      "adjacent_channel_interference_count": 4,
      "w_lan_profiles": [
        {"profile_name_hash": "AB12", "profile_authentication": "WPA2PSK", "profile_encryption": "AES"}]}],
    "num_samples": 2})"));
}

TEST_F(SummaryQueryTest, SeveralInterfacesAddUpTheirCountsAndKeepTheirOwnEntries) {
  tests::SampleStore store = NewStore();
  store.AddNetwork("2026-03-07T12:00:30.000Z", {{"interface_device_id", "'{B}'"}});
  store.AddNetwork("2026-03-07T12:00:30.000Z", {{"tcp_ipv4_current_connections", "50"}});
  store.AddNetwork("2026-03-07T12:01:30.000Z");
  const json info = OnlyNetworkInfo();
  EXPECT_EQ(info["num_samples"], 3);
  EXPECT_EQ(info["tcp_ipv4_stats_info"]["current_connections"], 50);
  EXPECT_EQ(info["tcp_ipv4_stats_info"]["failed_connections"], 12);
  EXPECT_EQ(info["tcp_ipv4_stats_info"]["errors_received"], 3);
  EXPECT_EQ(info["tcp_ipv6_stats_info"]["failed_connections"], 18);
  ASSERT_EQ(info["interfaces_info"].size(), 2U);
  EXPECT_EQ(info["interfaces_info"][0]["interface_device_id"], "{A}");
  EXPECT_EQ(info["interfaces_info"][0]["bytes_received"], 6000);
  EXPECT_EQ(info["interfaces_info"][1]["interface_device_id"], "{B}");
  EXPECT_EQ(info["interfaces_info"][1]["bytes_received"], 3000);
}

TEST_F(SummaryQueryTest, AVpnCountsForTheHourOnlyWhenEveryInterfaceHadOneAtSomeTime) {
  tests::SampleStore store = NewStore();
  store.AddNetwork("2026-03-07T12:00:30.000Z", {{"is_vpn_connected", "1"}});
  store.AddNetwork("2026-03-07T12:01:30.000Z", {{"is_vpn_connected", "0"}});
  EXPECT_EQ(OnlyNetworkInfo()["is_vpn_connected"], 1);
  store.AddNetwork("2026-03-07T12:01:30.000Z", {{"interface_device_id", "'{B}'"}, {"is_vpn_connected", "0"}});
  EXPECT_EQ(OnlyNetworkInfo()["is_vpn_connected"], 0);
}

TEST_F(SummaryQueryTest, AccessCountsForTheHourOnlyWhenEverySampleHadIt) {
  tests::SampleStore store = NewStore();
  store.AddNetwork("2026-03-07T12:00:30.000Z");
  store.AddNetwork("2026-03-07T12:01:30.000Z", {{"has_internet_access", "0"}});
  EXPECT_EQ(OnlyNetworkInfo()["has_internet_access"], 0);
  EXPECT_EQ(OnlyNetworkInfo()["has_network_access"], 1);
}

TEST_F(SummaryQueryTest, ProfilesOfAnInterfaceAreDistinctWithTheirHashInUpperCaseHexadecimal) {
  tests::SampleStore store = NewStore();
  store.AddNetwork("2026-03-07T12:00:30.000Z", {{"profile_name_hash", "x'00fe'"}});
  store.AddNetwork("2026-03-07T12:01:30.000Z", {{"profile_name_hash", "x'00FE'"}});
  store.AddNetwork("2026-03-07T12:02:30.000Z", {{"profile_name_hash", "x'00fe'"}, {"profile_encryption", "NULL"}});
  store.AddNetwork("2026-03-07T12:02:30.000Z", {{"interface_device_id", "'{B}'"}, {"profile_name_hash", "x'77'"}});
  store.AddNetwork("2026-03-07T13:00:30.000Z", {{"profile_name_hash", "x'88'"}});
  const json interfaces = json::parse(Network().at(0).at("network_info"))["interfaces_info"];
  EXPECT_EQ(interfaces[0]["w_lan_profiles"], json::parse(R"([
    {"profile_name_hash": "00FE", "profile_authentication": "WPA2PSK", "profile_encryption": "AES"},
    {"profile_name_hash": "00FE", "profile_authentication": "WPA2PSK", "profile_encryption": null}])"));
  EXPECT_EQ(interfaces[1]["w_lan_profiles"].size(), 1U);
}

TEST_F(SummaryQueryTest, RowsComeByHourWhateverTheOrderOfTheSamples) {
  tests::SampleStore store = NewStore();
  for (const char* hour : {"13", "11", "12"}) {
    store.AddThermal("2026-03-07T" + std::string(hour) + ":10:00");
    store.AddNetwork("2026-03-07 " + std::string(hour) + ":20:00");
  }
  for (const std::vector<SummaryRow>& rows : {Thermal(), Network()}) {
    std::vector<std::string> hours;
    for (const SummaryRow& row : rows) hours.push_back(row.at("hour_window"));
    EXPECT_THAT(hours, ElementsAre("2026-03-07T11:00:00.000Z", "2026-03-07T12:00:00.000Z", "2026-03-07T13:00:00.000Z"));
  }
}

TEST_F(SummaryQueryTest, OnlyTheFirstNineteenCharactersOfATimeCount) {
  tests::SampleStore store = NewStore();
  store.AddThermal("2026-03-07T23:59:59 and whatever follows");
  store.AddThermal("2026-03-07T23:00:00+05:30");
  EXPECT_EQ(Thermal().size(), 1U);
  EXPECT_EQ(Thermal().at(0).at("hour_window"), "2026-03-07T23:00:00.000Z");
}

TEST_F(SummaryQueryTest, AReadingThatIsAlwaysNullIsAbsentFromItsHourOnly) {
  tests::SampleStore store = NewStore();
  store.AddThermal("2026-03-07T12:00:30.000Z", {{"ext_sensor_temp", "NULL"}});
  store.AddThermal("2026-03-07T13:00:30.000Z");
  const std::vector<SummaryRow> rows = Thermal();
  EXPECT_THAT(rows.at(0), Not(Contains(Key("ext_sensor_avg"))));
  EXPECT_THAT(rows.at(0), Contains(Pair("loc_sensor_avg", "30.0")));
  EXPECT_THAT(rows.at(1), Contains(Pair("ext_sensor_avg", "40.0")));
}

TEST_F(SummaryQueryTest, ThermalSamplesWithoutAReadableTimeFormOneGroupWithoutAnHourThatComesFirst) {
  tests::SampleStore store = NewStore();
  store.AddThermal("2026-03-07T12:00:30.000Z");
  store.AddThermal("yesterday");
  store.AddThermal("");
  const std::vector<SummaryRow> rows = Thermal();
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_THAT(rows[0], Not(Contains(Key("hour_window"))));
  EXPECT_THAT(rows[0], Contains(Pair("num_samples", "2")));
  EXPECT_THAT(rows[1], Contains(Key("hour_window")));
}

TEST_F(SummaryQueryTest, NetworkSamplesWithoutAReadableTimeFormOneEntryPerInterfaceWithoutProfiles) {
  tests::SampleStore store = NewStore();
  store.AddNetwork("31/12/2026");
  store.AddNetwork("unknown");
  store.AddNetwork("unknown", {{"interface_device_id", "'{B}'"}});
  const std::vector<SummaryRow> rows = Network();
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_THAT(rows[0], Not(Contains(Key("hour_window"))));
  const json interfaces = json::parse(rows[0].at("network_info"))["interfaces_info"];
  ASSERT_EQ(interfaces.size(), 2U);
  EXPECT_EQ(interfaces[0]["bytes_received"], 6000);
  EXPECT_EQ(interfaces[0]["w_lan_profiles"], json::array());
}

TEST_F(SummaryQueryTest, SamplesWithoutAnInterfaceFormAnEntryWithoutProfiles) {
  NewStore().AddNetwork("2026-03-07T12:00:30.000Z", {{"interface_device_id", "NULL"}});
  const json interface = OnlyNetworkInfo()["interfaces_info"].at(0);
  EXPECT_EQ(interface["interface_device_id"], nullptr);
  EXPECT_EQ(interface["w_lan_profiles"], json::array());
}

TEST_F(SummaryQueryTest, ANulInATextOfASampleIsEscapedInTheJson) {
  NewStore().AddNetwork("2026-03-07T12:00:30.000Z", {{"network_trust_level", "'a' || char(0) || 'b'"}});
  EXPECT_EQ(OnlyNetworkInfo()["interfaces_info"][0]["network_trust_level"], std::string("a\0b", 3));
}

TEST_F(SummaryQueryTest, BytesThatAreNoUtf8ArriveAsTheyWereStored) {
  NewStore().AddNetwork("2026-03-07T12:00:30.000Z", {{"radio_type", "CAST(x'41FF42' AS TEXT)"}});
  EXPECT_THAT(Network().at(0).at("network_info"), testing::HasSubstr("\"radio_type\":\"A\xFF"
                                                                     "B\""));
}

TEST_F(SummaryQueryTest, ReadingsThatAreTextsAreReadAsNumbers) {
  tests::SampleStore store(path_);
  store.CreateTables(WithoutTypes(tests::kThermalColumns));
  store.AddThermal("2026-03-07T12:00:30.000Z", {{"cpu_temp", "'51.5'"}, {"loc_sensor_temp", "'hot'"}});
  EXPECT_THAT(Thermal().at(0), Contains(Pair("cpu_temp_avg", "51.5")));
  EXPECT_THAT(Thermal().at(0), Contains(Pair("loc_sensor_avg", "0.0")));
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
