#include <chrono>
#include <fstream>
#include <thread>

#include "stored_samples_fixture.h"

// What the host's database can hold, from the file to the records: whatever it is, the cycle ends with success and the
// live record is sent.
namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::IsEmpty;
using testing::SizeIs;
using tests::SampleStore;

TEST_F(StoredSamples, ASampleWithNothingButItsTimeLosesOnlyWhatItLacks) {
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

TEST_F(StoredSamples, ANullInANumberOfAnAcceptedInterfaceLosesTheHour) {
  auto store = MakeStore();
  store.AddNetwork("2026-03-07T10:00:30.000Z", {{"channel", "NULL"}});
  store.AddNetwork("2026-03-07T11:00:30.000Z");
  Cycle();
  ASSERT_THAT(Network(), SizeIs(1));
  EXPECT_EQ(Network()[0].collection_id(), "2026-03-07T11H_ZT12345678-NE");
}

TEST_F(StoredSamples, ANullInATextOfAnAcceptedInterfaceLosesTheHour) {
  auto store = MakeStore();
  store.AddNetwork("2026-03-07T10:00:30.000Z", {{"radio_type", "NULL"}});
  Cycle();
  EXPECT_THAT(Network(), IsEmpty());
  EXPECT_EQ(store.Count("NetworkData"), 0);
}

TEST_F(StoredSamples, TextsInNumberColumnsCountAsTheNumbersTheyBeginWith) {
  auto store = MakeStore();
  store.AddThermal("2026-03-07T10:00:30.000Z", {{"cpu_temp", "'51.5 degrees'"}, {"fan1_speed_step", "'fast'"}});
  Cycle();
  ASSERT_THAT(Thermal(), SizeIs(1));
  EXPECT_EQ(Thermal()[0].hw_info().cpus_info(0).temperature_sensors_info(0).temperature_celsius(), 51U);
  EXPECT_THAT(Thermal()[0].hw_info().fans_info(0).fan_statistics_info(), SizeIs(2));
}

TEST_F(StoredSamples, ATextThatStaysATextInTheJsonLosesItsHourOnly) {
  auto store = MakeStore();
  store.AddNetwork("2026-03-07T10:00:30.000Z", {{"channel", "'radio'"}});
  store.AddNetwork("2026-03-07T11:00:30.000Z");
  Cycle();
  EXPECT_THAT(Network(), SizeIs(1));
}

TEST_F(StoredSamples, TimesThatCannotBeReadFormAnHourThatIsNotSent) {
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

TEST_F(StoredSamples, BytesThatAreNoUtf8LoseTheirHourOnly) {
  auto store = MakeStore();
  store.AddNetwork("2026-03-07T10:00:30.000Z", {{"radio_type", "CAST(x'FFFE41' AS TEXT)"}});
  store.AddNetwork("2026-03-07T11:00:30.000Z");
  Cycle();
  EXPECT_THAT(Network(), SizeIs(1));
}

TEST_F(StoredSamples, ANulInATextReachesTheRecordAsItIs) {
  auto store = MakeStore();
  store.AddNetwork("2026-03-07T10:00:30.000Z", {{"radio_type", "CAST(x'410042' AS TEXT)"}});
  Cycle();
  ASSERT_THAT(Network(), SizeIs(1));
  EXPECT_THAT(Network()[0].hw_info().network_info().interfaces_info(0).radio_type(), testing::StartsWith("A"));
}

TEST_F(StoredSamples, BytesWhereATextIsExpectedEndTheQueryThereAndNothingElse) {
  auto store = MakeStore();
  store.AddThermal("2026-03-07T10:00:30.000Z");
  store.AddNetwork("2026-03-07T11:00:30.000Z", {{"radio_type", "x'FF00'"}});
  Cycle();
  EXPECT_THAT(Network(), IsEmpty());
  EXPECT_EQ(store.Count("NetworkData"), 1);
}

TEST_F(StoredSamples, AHundredThousandProfilesInAnHourGive32) {
  auto store = MakeStore();
  store.AddNetwork("2026-03-07T10:00:30.000Z");
  store.Execute(
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 100000) "
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
  EXPECT_EQ(Network()[0].sample_points_actual(), 100001U);
  EXPECT_THAT(Network()[0].hw_info().network_info().interfaces_info(0).w_lan_profiles(), SizeIs(32));
}

TEST_F(StoredSamples, TwoThousandInterfacesInAnHourGive32) {
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

TEST_F(StoredSamples, NegativeAndHugeNumbersAreSentAsTheConversionsGiveThem) {
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

TEST_F(StoredSamples, ASumThatOverflowsEndsTheQueryAndKeepsTheRows) {
  auto store = MakeStore();
  store.AddNetwork("2026-03-07T10:00:30.000Z", {{"bytes_received", "9223372036854775807"}});
  store.AddNetwork("2026-03-07T10:01:30.000Z", {{"bytes_received", "9223372036854775807"}});
  Cycle();
  EXPECT_THAT(Network(), IsEmpty());
  EXPECT_EQ(store.Count("NetworkData"), 2);
}

TEST_F(StoredSamples, AnInfiniteSumLosesItsHourOnly) {
  auto store = MakeStore();
  store.AddNetwork("2026-03-07T10:00:30.000Z", {{"rx_rate", "9e999"}});
  store.AddNetwork("2026-03-07T11:00:30.000Z");
  Cycle();
  EXPECT_THAT(Network(), SizeIs(1));
}

TEST_F(StoredSamples, ATableWithoutTheExpectedColumnsKeepsEveryTablesRows) {
  SampleStore store(File());
  store.CreateTables("date_time TEXT, something_else REAL");
  store.Execute("INSERT INTO ThermalData VALUES('2026-03-07T10:00:30.000Z', 1)");
  store.AddNetwork("2026-03-07T10:00:30.000Z");
  Cycle();
  EXPECT_THAT(sink_->sent, IsEmpty());
  EXPECT_EQ(store.Count("ThermalData"), 1);
  EXPECT_EQ(store.Count("NetworkData"), 1);
}

TEST_F(StoredSamples, AMissingTableKeepsTheOthersRows) {
  SampleStore store(File());
  store.CreateTables();
  store.AddThermal("2026-03-07T10:00:30.000Z");
  store.Execute("DROP TABLE NetworkData");
  Cycle();
  EXPECT_THAT(sink_->sent, IsEmpty());
  EXPECT_EQ(store.Count("ThermalData"), 1);
}

TEST_F(StoredSamples, AViewInPlaceOfATableIsSummarisedAndKeepsItsRows) {
  SampleStore store(File());
  store.CreateTables();
  store.AddThermal("2026-03-07T10:00:30.000Z");
  store.Execute("ALTER TABLE ThermalData RENAME TO RealThermalData");
  store.Execute("CREATE VIEW ThermalData AS SELECT * FROM RealThermalData");
  Cycle();
  EXPECT_THAT(Thermal(), SizeIs(1));
  EXPECT_EQ(store.Count("RealThermalData"), 1);
}

TEST_F(StoredSamples, AFileThatIsNoDatabaseIsLeftAsItIs) {
  std::ofstream(folder_.Path() / "ssm.db") << std::string(8192, '?');
  Cycle();
  EXPECT_THAT(sink_->sent, IsEmpty());
  EXPECT_EQ(std::filesystem::file_size(folder_.Path() / "ssm.db"), 8192U);
}

TEST_F(StoredSamples, ATruncatedFileDoesNotDisturbTheCycle) {
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

TEST_F(StoredSamples, AFileThatCanBeReadButNotWrittenIsSummarisedAndItsHoursComeAgain) {
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

TEST_F(StoredSamples, AReadOnlyFileIsSummarised) {
  MakeStore().AddThermal("2026-03-07T10:00:30.000Z");
  const auto file = folder_.Path() / "ssm.db";
  std::filesystem::permissions(file, std::filesystem::perms::owner_read);
  Cycle();
  std::filesystem::permissions(file, std::filesystem::perms::owner_all);
  EXPECT_THAT(Thermal(), SizeIs(1));
}

TEST_F(StoredSamples, AWriterThatEndsInTimeIsWaitedFor) {
  auto store = MakeStore();
  store.AddThermal("2026-03-07T10:00:30.000Z");
  store.Execute("BEGIN EXCLUSIVE");
  std::thread writer([&store] {
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    store.Execute("COMMIT");
  });
  Cycle();
  writer.join();
  EXPECT_THAT(Thermal(), SizeIs(1));
  EXPECT_EQ(store.Count("ThermalData"), 0);
}

TEST_F(StoredSamples, AWriterThatDoesNotEndKeepsTheRowsForTheNextCycle) {
  auto store = MakeStore();
  store.AddThermal("2026-03-07T10:00:30.000Z");
  store.Execute("BEGIN EXCLUSIVE");
  Cycle();
  EXPECT_THAT(sink_->sent, IsEmpty());
  store.Execute("COMMIT");
  EXPECT_EQ(store.Count("ThermalData"), 1);
  Cycle();
  EXPECT_THAT(Thermal(), SizeIs(1));
}

TEST_F(StoredSamples, ADatabaseInWalModeIsSummarisedBesideItsWriter) {
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
