#include <fstream>

#include "stored_samples_fixture.h"
#include "support/watched_files.h"

// What the host's database can hold, from the file to the records: whatever it is, the cycle ends with success and the
// live record is sent.
namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::IsEmpty;
using testing::SizeIs;
using tests::SampleStore;

TEST_F(StoredSamplesTest, ASampleWithNothingButItsTimeLosesOnlyWhatItLacks) {
  auto store = MakeStore();
  store.Execute("INSERT INTO ThermalData(date_time) VALUES('2026-03-07T10:00:30.000Z')");
  store.Execute("INSERT INTO NetworkData(date_time) VALUES('2026-03-07T10:00:30.000Z')");
  Cycle();
  ASSERT_THAT(Thermal(), SizeIs(1));
  EXPECT_EQ(Thermal()[0].sample_points_actual(), 1U);
  EXPECT_FALSE(Thermal()[0].hw_info().has_system_board_info());
  // A sum of nothing is null, which is no number: the hour cannot be read.
  EXPECT_THAT(Network(), IsEmpty());
  EXPECT_EQ(store.Count("ThermalData") + store.Count("NetworkData"), 0);
}

TEST_F(StoredSamplesTest, ANullInANumberOfAnAcceptedInterfaceLosesTheHour) {
  auto store = MakeStore();
  store.AddNetwork("2026-03-07T10:00:30.000Z", {{"channel", "NULL"}});
  store.AddNetwork("2026-03-07T11:00:30.000Z");
  Cycle();
  ASSERT_THAT(Network(), SizeIs(1));
  EXPECT_EQ(Network()[0].collection_id(), "2026-03-07T11H_ZT12345678-NE");
}

TEST_F(StoredSamplesTest, ANullInATextOfAnAcceptedInterfaceLosesTheHour) {
  auto store = MakeStore();
  store.AddNetwork("2026-03-07T10:00:30.000Z", {{"radio_type", "NULL"}});
  Cycle();
  EXPECT_THAT(Network(), IsEmpty());
  EXPECT_EQ(store.Count("NetworkData"), 0);
}

TEST_F(StoredSamplesTest, TextsInNumberColumnsCountAsTheNumbersTheyBeginWith) {
  auto store = MakeStore();
  store.AddThermal("2026-03-07T10:00:30.000Z", {{"cpu_temp", "'51.5 degrees'"}, {"fan1_speed_step", "'fast'"}});
  Cycle();
  ASSERT_THAT(Thermal(), SizeIs(1));
  EXPECT_EQ(Thermal()[0].hw_info().cpus_info(0).temperature_sensors_info(0).temperature_celsius(), 51U);
  EXPECT_THAT(Thermal()[0].hw_info().fans_info(0).fan_statistics_info(), SizeIs(2));
}

TEST_F(StoredSamplesTest, ATextThatStaysATextInTheJsonLosesItsHourOnly) {
  auto store = MakeStore();
  store.AddNetwork("2026-03-07T10:00:30.000Z", {{"channel", "'radio'"}});
  store.AddNetwork("2026-03-07T11:00:30.000Z");
  Cycle();
  EXPECT_THAT(Network(), SizeIs(1));
}

TEST_F(StoredSamplesTest, TimesThatCannotBeReadFormAnHourThatIsNotSent) {
  auto store = MakeStore();
  store.AddThermal("yesterday");
  store.AddThermal("");
  store.AddThermal("2026-03-07T10:00:30.000Z");
  store.AddNetwork("yesterday");
  store.AddNetwork("2026-03-07T10:00:30.000Z");
  Cycle();
  EXPECT_THAT(Thermal(), SizeIs(1));
  EXPECT_THAT(Network(), SizeIs(1));
  EXPECT_EQ(store.Count("ThermalData") + store.Count("NetworkData"), 0);
}

TEST_F(StoredSamplesTest, BytesThatAreNoUtf8LoseTheirHourOnly) {
  auto store = MakeStore();
  store.AddNetwork("2026-03-07T10:00:30.000Z", {{"radio_type", "CAST(x'FFFE41' AS TEXT)"}});
  store.AddNetwork("2026-03-07T11:00:30.000Z");
  Cycle();
  EXPECT_THAT(Network(), SizeIs(1));
}

TEST_F(StoredSamplesTest, ANulInATextReachesTheRecordAsItIs) {
  auto store = MakeStore();
  store.AddNetwork("2026-03-07T10:00:30.000Z", {{"radio_type", "CAST(x'410042' AS TEXT)"}});
  Cycle();
  ASSERT_THAT(Network(), SizeIs(1));
  EXPECT_EQ(Network()[0].hw_info().network_info().interfaces_info(0).radio_type(), std::string("A\0B", 3));
}

TEST_F(StoredSamplesTest, BytesWhereATextIsExpectedKeepEverySampleUntilTheyAreGone) {
  auto store = MakeStore();
  store.AddThermal("2026-03-07T10:00:30.000Z");
  store.AddNetwork("2026-03-07T10:00:30.000Z");
  store.AddNetwork("2026-03-07T11:00:30.000Z", {{"radio_type", "x'FF00'"}});
  Cycle();
  EXPECT_THAT(sink_->sent, IsEmpty());
  EXPECT_EQ(store.Count("ThermalData"), 1);
  EXPECT_EQ(store.Count("NetworkData"), 2);
  store.Execute("UPDATE NetworkData SET radio_type = 'a text' WHERE typeof(radio_type) = 'blob'");
  Cycle();
  EXPECT_THAT(Thermal(), SizeIs(1));
  EXPECT_THAT(Network(), SizeIs(2));
  EXPECT_EQ(store.Count("ThermalData") + store.Count("NetworkData"), 0);
}

TEST_F(StoredSamplesTest, TwentyThousandProfilesInAnHourGive32) {
  auto store = MakeStore();
  store.AddNetwork("2026-03-07T10:00:30.000Z");
  store.Execute(
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 20000) "
      "INSERT INTO NetworkData(date_time, interface_device_id, network_trust_level, is_managed, channel, radio_type, "
      "nominal_speed, tx_rate, rx_rate, signal_strength, bytes_received, bytes_sent, co_channel_interference_count, "
      "adjacent_channel_interference_count, is_vpn_connected, has_network_access, has_internet_access, "
      "tcp_ipv4_current_connections, tcp_ipv4_failed_connections, tcp_ipv4_errors_received, "
      "tcp_ipv6_failed_connections, profile_name_hash, profile_authentication, profile_encryption) "
      "SELECT date_time, interface_device_id, network_trust_level, is_managed, channel, radio_type, nominal_speed, "
      "tx_rate, rx_rate, signal_strength, bytes_received, bytes_sent, co_channel_interference_count, "
      "adjacent_channel_interference_count, is_vpn_connected, has_network_access, has_internet_access, "
      "tcp_ipv4_current_connections, tcp_ipv4_failed_connections, tcp_ipv4_errors_received, "
      "tcp_ipv6_failed_connections, CAST(i AS BLOB), profile_authentication, profile_encryption FROM NetworkData, n");
  Cycle();
  ASSERT_THAT(Network(), SizeIs(1));
  EXPECT_EQ(Network()[0].sample_points_actual(), 20001U);
  EXPECT_THAT(Network()[0].hw_info().network_info().interfaces_info(0).w_lan_profiles(), SizeIs(32));
}

TEST_F(StoredSamplesTest, TwoThousandInterfacesInAnHourGive32) {
  auto store = MakeStore();
  store.Execute("BEGIN");
  for (int i = 0; i < 2000; ++i) {
    store.AddNetwork("2026-03-07T10:00:30.000Z", {{"interface_device_id", "'{" + std::to_string(i) + "}'"}});
  }
  store.Execute("COMMIT");
  Cycle();
  ASSERT_THAT(Network(), SizeIs(1));
  EXPECT_EQ(Network()[0].sample_points_actual(), 2000U);
  EXPECT_THAT(Network()[0].hw_info().network_info().interfaces_info(), SizeIs(32));
}

TEST_F(StoredSamplesTest, NegativeAndHugeNumbersAreSentAsTheConversionsGiveThem) {
  auto store = MakeStore();
  store.AddThermal("2026-03-07T10:00:30.000Z", {{"cpu_temp", "-1.5"}, {"ext_sensor_temp", "1e30"}});
  store.AddNetwork("2026-03-07T10:00:30.000Z", {{"rx_rate", "-1"}, {"bytes_sent", "-5"}, {"channel", "1e300"}});
  Cycle();
  ASSERT_THAT(Thermal(), SizeIs(1));
  const auto hardware = Thermal()[0].hw_info();
  EXPECT_EQ(hardware.cpus_info(0).temperature_sensors_info(0).temperature_celsius(), 4294967295U);
  EXPECT_EQ(hardware.system_board_info().temperature_sensors_info(0).temperature_celsius(), 0U);
  ASSERT_THAT(Network(), SizeIs(1));
  EXPECT_EQ(Network()[0].hw_info().network_info().interfaces_info(0).receive_rate(), 4294967296.0F);
  EXPECT_EQ(Network()[0].hw_info().network_info().interfaces_info(0).channel(), 0U);
}

TEST_F(StoredSamplesTest, ASumThatOverflowsEndsTheQueryAndKeepsTheRows) {
  auto store = MakeStore();
  store.AddNetwork("2026-03-07T10:00:30.000Z", {{"bytes_received", "9223372036854775807"}});
  store.AddNetwork("2026-03-07T10:01:30.000Z", {{"bytes_received", "9223372036854775807"}});
  Cycle();
  EXPECT_THAT(Network(), IsEmpty());
  EXPECT_EQ(store.Count("NetworkData"), 2);
}

TEST_F(StoredSamplesTest, AnInfiniteSumLosesItsHourOnly) {
  auto store = MakeStore();
  store.AddNetwork("2026-03-07T10:00:30.000Z", {{"rx_rate", "9e999"}});
  store.AddNetwork("2026-03-07T11:00:30.000Z");
  Cycle();
  EXPECT_THAT(Network(), SizeIs(1));
}

TEST_F(StoredSamplesTest, ATableWithoutTheExpectedColumnsKeepsEveryTablesRows) {
  SampleStore store(File());
  store.CreateTables("date_time TEXT, something_else REAL");
  store.Execute("INSERT INTO ThermalData VALUES('2026-03-07T10:00:30.000Z', 1)");
  store.AddNetwork("2026-03-07T10:00:30.000Z");
  Cycle();
  EXPECT_THAT(sink_->sent, IsEmpty());
  EXPECT_EQ(store.Count("ThermalData"), 1);
  EXPECT_EQ(store.Count("NetworkData"), 1);
}

TEST_F(StoredSamplesTest, AMissingTableKeepsTheOthersRows) {
  SampleStore store(File());
  store.CreateTables();
  store.AddThermal("2026-03-07T10:00:30.000Z");
  store.Execute("DROP TABLE NetworkData");
  Cycle();
  EXPECT_THAT(sink_->sent, IsEmpty());
  EXPECT_EQ(store.Count("ThermalData"), 1);
}

TEST_F(StoredSamplesTest, AViewInPlaceOfATableIsSummarisedAndKeepsItsRows) {
  SampleStore store(File());
  store.CreateTables();
  store.AddThermal("2026-03-07T10:00:30.000Z");
  store.Execute("ALTER TABLE ThermalData RENAME TO RealThermalData");
  store.Execute("CREATE VIEW ThermalData AS SELECT * FROM RealThermalData");
  Cycle();
  EXPECT_THAT(Thermal(), SizeIs(1));
  EXPECT_EQ(store.Count("RealThermalData"), 1);
}

TEST_F(StoredSamplesTest, AFileThatIsNoDatabaseIsLeftAsItIs) {
  std::ofstream(folder_.Path() / "ssm.db") << std::string(8192, '?');
  Cycle();
  EXPECT_THAT(sink_->sent, IsEmpty());
  EXPECT_EQ(std::filesystem::file_size(folder_.Path() / "ssm.db"), 8192U);
}

TEST_F(StoredSamplesTest, ATruncatedFileDoesNotDisturbTheCycle) {
  {
    auto store = MakeStore();
    store.Execute("BEGIN");
    for (int i = 0; i < 2000; ++i) store.AddThermal("2026-03-07T10:00:30.000Z");
    store.Execute("COMMIT");
  }
  std::filesystem::resize_file(folder_.Path() / "ssm.db", 8192);
  Cycle();
  EXPECT_THAT(sink_->stored, SizeIs(1));
}

TEST_F(StoredSamplesTest, AFileThatCanBeReadButNotWrittenIsSummarisedAndItsHoursComeAgain) {
  auto store = MakeStore();
  store.AddThermal("2026-03-07T10:00:30.000Z");
  // A writer beside readers: they see the rows and cannot delete them.
  SampleStore writer(File());
  writer.Execute("PRAGMA journal_mode=WAL");
  writer.Execute("BEGIN IMMEDIATE");
  Cycle();
  EXPECT_THAT(Thermal(), SizeIs(1));
  writer.Execute("ROLLBACK");
  Cycle();
  EXPECT_THAT(Thermal(), SizeIs(1));
  EXPECT_EQ(writer.Count("ThermalData"), 0);
}

TEST_F(StoredSamplesTest, AWriterThatEndsInTimeIsWaitedFor) {
  auto store = MakeStore();
  store.AddThermal("2026-03-07T10:00:30.000Z");
  store.Execute("BEGIN EXCLUSIVE");
  tests::WatchedFiles files;
  files.on_wait = [&store] { store.Execute("COMMIT"); };
  Cycle();
  EXPECT_THAT(Thermal(), SizeIs(1));
  EXPECT_EQ(store.Count("ThermalData"), 0);
}

TEST_F(StoredSamplesTest, AWriterThatDoesNotEndCostsACycle200MillisecondsAndKeepsTheRowsForTheNext) {
  auto store = MakeStore();
  store.AddThermal("2026-03-07T10:00:30.000Z");
  store.AddNetwork("2026-03-07T10:00:30.000Z");
  store.Execute("BEGIN EXCLUSIVE");
  {
    const tests::WatchedFiles files;
    Cycle();
    EXPECT_EQ(files.WaitedMs(), 200);
  }
  EXPECT_THAT(sink_->sent, IsEmpty());
  store.Execute("COMMIT");
  EXPECT_EQ(store.Count("ThermalData") + store.Count("NetworkData"), 2);
  Cycle();
  EXPECT_THAT(Thermal(), SizeIs(1));
  EXPECT_THAT(Network(), SizeIs(1));
}

TEST_F(StoredSamplesTest, NoEventWaitsLongerForAWriter) {
  auto store = MakeStore();
  store.AddThermal("2026-03-07T10:00:30.000Z");
  store.Execute("BEGIN EXCLUSIVE");
  for (const int event : {20, 50, 51, 7}) {
    const tests::WatchedFiles files;
    EXPECT_THAT(Execute(event), testing::HasSubstr(R"("code":0)"));
    EXPECT_LE(files.WaitedMs(), 200) << event;
  }
  store.Execute("COMMIT");
}

TEST_F(StoredSamplesTest, AReaderBesideTheCycleIsNotWaitedForAndTheHourComesAgain) {
  auto store = MakeStore();
  store.AddThermal("2026-03-07T10:00:30.000Z");
  store.Execute("BEGIN");
  EXPECT_EQ(store.Count("ThermalData"), 1);
  const tests::WatchedFiles files;
  Cycle();
  EXPECT_EQ(files.WaitedMs(), 0);
  EXPECT_THAT(Thermal(), SizeIs(1));
  store.Execute("COMMIT");
  Cycle();
  EXPECT_THAT(Thermal(), SizeIs(1));
  EXPECT_EQ(store.Count("ThermalData"), 0);
}

// Somebody else empties the tables between the summary and the count, and goes on writing.
TEST_F(StoredSamplesTest, ATableThatIsEmptyByThenIsNeitherSentNorEmptied) {
  auto store = MakeStore();
  store.AddThermal("2026-03-07T10:00:30.000Z");
  store.AddNetwork("2026-03-07T10:00:30.000Z");
  tests::WatchedFiles files;
  bool counted = false;
  files.on_open = [&](int number) {
    if (number == 2) store.Execute("DELETE FROM ThermalData; DELETE FROM NetworkData");
  };
  files.on_release = [&] { counted = true; };
  Cycle();
  EXPECT_TRUE(counted);
  EXPECT_THAT(sink_->sent, IsEmpty());
}

TEST_F(StoredSamplesTest, NothingIsDeletedThatWasNotSummarised) {
  auto store = MakeStore();
  store.AddThermal("2026-03-07T10:00:30.000Z");
  tests::WatchedFiles files;
  int opened = 0;
  files.on_open = [&](int number) {
    opened = number;
    // After the summary: the first network sample of all.
    if (number == 2) store.AddNetwork("2026-03-07T10:00:30.000Z");
  };
  Cycle();
  EXPECT_GE(opened, 3);
  EXPECT_THAT(Thermal(), SizeIs(1));
  EXPECT_EQ(store.Count("ThermalData"), 0);
  EXPECT_EQ(store.Count("NetworkData"), 1);
}

TEST_F(StoredSamplesTest, HoursThatTheHostDoesNotTakeAreDeletedAllTheSame) {
  auto store = MakeStore();
  for (const char* time : {"2026-03-07T10:00:30.000Z", "2026-03-07T11:00:30.000Z"}) {
    store.AddThermal(time);
    store.AddNetwork(time);
  }
  sink_->send_outcome = {5, 1, "no upload today", "", ""};
  Cycle();
  EXPECT_THAT(Thermal(), SizeIs(2));
  EXPECT_THAT(Network(), SizeIs(2));
  EXPECT_EQ(store.Count("ThermalData") + store.Count("NetworkData"), 0);
}

TEST_F(StoredSamplesTest, CountsOfFailuresAddUpOverSamplesAndInterfaces) {
  auto store = MakeStore();
  store.AddNetwork("2026-03-07T10:00:30.000Z",
                   {{"tcp_ipv4_failed_connections", "1"}, {"tcp_ipv6_failed_connections", "10"}});
  store.AddNetwork("2026-03-07T10:01:30.000Z", {{"tcp_ipv4_failed_connections", "2"},
                                                {"tcp_ipv6_failed_connections", "20"},
                                                {"tcp_ipv4_errors_received", "300"}});
  store.AddNetwork("2026-03-07T10:01:30.000Z", {{"interface_device_id", "'{B}'"},
                                                {"tcp_ipv4_failed_connections", "4"},
                                                {"tcp_ipv6_failed_connections", "40"},
                                                {"tcp_ipv4_errors_received", "600"}});
  Cycle();
  ASSERT_THAT(Network(), SizeIs(1));
  const auto network = Network()[0].hw_info().network_info();
  EXPECT_EQ(network.tcp_i_p_v4_stats_info().failed_connections(), 7U);
  EXPECT_EQ(network.tcp_i_p_v4_stats_info().errors_received(), 901U);
  EXPECT_EQ(network.tcp_i_p_v6_stats_info().failed_connections(), 70U);
}

TEST_F(StoredSamplesTest, ADatabaseInWalModeIsSummarisedBesideItsWriter) {
  auto store = MakeStore();
  store.Execute("PRAGMA journal_mode=WAL");
  store.AddThermal("2026-03-07T10:00:30.000Z");
  store.AddNetwork("2026-03-07T10:00:30.000Z");
  Cycle();
  EXPECT_THAT(Thermal(), SizeIs(1));
  EXPECT_THAT(Network(), SizeIs(1));
  EXPECT_EQ(store.Count("ThermalData") + store.Count("NetworkData"), 0);
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
