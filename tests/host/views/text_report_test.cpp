#include "host/views/text_report.h"

#include <gmock/gmock.h>
#include <google/protobuf/wrappers.pb.h>

#include <sstream>

#include "device_performance_storage.pb.h"
#include "performance_samples_upload.pb.h"

namespace zt::telemetry::host {
namespace {

using contract::storage::device_performance::AmdPmfSamples;
using contract::storage::device_performance::EnergyEMISamples;
using contract::upload::log::PcLogPerformanceSamplesAsCDM;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

std::string Sent(const google::protobuf::Message& record) {
  std::ostringstream out;
  TextReport(out).ShowSent(record);
  return out.str();
}

std::string SentText(const std::string& text) {
  std::ostringstream out;
  TextReport(out).ShowSentText(text);
  return out.str();
}

TEST(TextReportTest, ASentRecordHasItsIdentityTimeAndSamplesInTheHeading) {
  PcLogPerformanceSamplesAsCDM record;
  record.set_collection_id("5CG0000001_2026-03-07T12:20:42");
  record.set_local_time("2026-03-07T12:20:42.000Z");
  record.set_sample_points_actual(1);
  EXPECT_EQ(Sent(record),
            "SENT PcLogPerformanceSamplesAsCDM  5CG0000001_2026-03-07T12:20:42  2026-03-07 12:20:42  1 sample\n\n");
}

TEST(TextReportTest, AStoredRecordKeepsTheOffsetOfItsTime) {
  AmdPmfSamples record;
  record.set_local_time("2026-03-07T12:20:42-03:00");
  record.set_memory_clock_mhz(4800);
  std::ostringstream out;
  TextReport(out).ShowStored(record);
  EXPECT_EQ(out.str(),
            "STORED AmdPmfSamples  2026-03-07 12:20:42-03:00\n"
            "  Platform management\n"
            "    smallest memory clock  4,800 MHz\n\n");
}

TEST(TextReportTest, MemoryIsShownWithItsUnits) {
  PcLogPerformanceSamplesAsCDM record;
  auto& memory = *record.mutable_hw_info()->mutable_system_memory_info();
  memory.set_used_physical_memory_kb(9'053'405);
  memory.set_utilization_physical_percent(52.7F);
  memory.set_used_virtual_memory_kb(0);
  memory.set_total_virtual_memory_kb(20'252'928);
  EXPECT_THAT(Sent(record), HasSubstr("  Memory\n"
                                      "    physical memory in use    9,053,405 kB\n"
                                      "    share of physical memory  52.7 %\n"
                                      "    virtual memory in use     0 kB\n"
                                      "    virtual memory            20,252,928 kB (19.31 GiB)\n"));
}

TEST(TextReportTest, AFigureThatIsUnsetIsLeftOutAndZeroIsShown) {
  PcLogPerformanceSamplesAsCDM record;
  record.mutable_hw_info()->mutable_system_memory_info()->set_used_virtual_memory_kb(0);
  const std::string text = Sent(record);
  EXPECT_THAT(text, HasSubstr("virtual memory in use  0 kB"));
  EXPECT_THAT(text, Not(HasSubstr("physical")));
}

TEST(TextReportTest, ASectionThatHoldsNothingIsNotShown) {
  PcLogPerformanceSamplesAsCDM record;
  record.mutable_hw_info()->mutable_system_memory_info();
  record.mutable_hw_info()->add_storage_drives_info();
  EXPECT_EQ(Sent(record), "SENT PcLogPerformanceSamplesAsCDM\n\n");
}

TEST(TextReportTest, EntriesOfAListAreRowsOfOneTable) {
  PcLogPerformanceSamplesAsCDM record;
  auto& one = *record.mutable_hw_info()->add_storage_drives_info();
  one.set_drive_serial_number("S5XYNX0R123456");
  one.set_utilization_percent(43.21F);
  record.mutable_hw_info()->add_storage_drives_info()->set_drive_serial_number("WINEHDISK");
  EXPECT_THAT(Sent(record), HasSubstr("  Storage drives\n"
                                      "    drive              used\n"
                                      "    S5XYNX0R123456  43.21 %\n"
                                      "    WINEHDISK\n"));
}

TEST(TextReportTest, TemperaturesAndFansAreShownByName) {
  PcLogPerformanceSamplesAsCDM record;
  auto& sensor = *record.mutable_hw_info()->mutable_system_board_info()->add_temperature_sensors_info();
  sensor.set_sensor_name("ext_sensor");
  sensor.set_temperature_celsius(27);
  auto& fan = *record.mutable_hw_info()->add_fans_info();
  fan.set_fan_id(2);
  auto& duty = *fan.add_fan_statistics_info();
  duty.set_fan_stat_name("duty_cycle");
  duty.set_fan_stat_value(37.5F);
  auto& speed = *fan.add_fan_statistics_info();
  speed.set_fan_stat_name("tach_current");
  speed.set_fan_stat_value(2234);
  const std::string text = Sent(record);
  EXPECT_THAT(text, HasSubstr("temperatures  ext_sensor 27 °C\n"));
  EXPECT_THAT(text, HasSubstr("  2  duty_cycle 37.5, tach_current 2,234\n"));
}

TEST(TextReportTest, ASignalStrengthIsNegativeAgainAndFlagsAreWords) {
  PcLogPerformanceSamplesAsCDM record;
  auto& network = *record.mutable_hw_info()->mutable_network_info();
  network.set_has_internet_access(true);
  network.set_is_vpn_connected(false);
  auto& interface = *network.add_interfaces_info();
  interface.set_device_id("{A}");
  interface.set_signal_strength(4'294'967'235U);
  interface.set_bytes_received(1.5e9F);
  const std::string text = Sent(record);
  EXPECT_THAT(text, HasSubstr("internet access  yes\n"));
  EXPECT_THAT(text, HasSubstr("VPN              no\n"));
  EXPECT_THAT(text, HasSubstr("    interface   signal  received\n"
                              "    {A}        -61 dBm    1.5 GB\n"));
}

TEST(TextReportTest, ALongProfileHashIsShownByItsBeginning) {
  PcLogPerformanceSamplesAsCDM record;
  auto& profile = *record.mutable_hw_info()->mutable_network_info()->add_interfaces_info()->add_w_lan_profiles();
  profile.set_w_lan_profile_name("ABCDEF0123456789ABCDEF0123456789");
  profile.set_w_lan_profile_authentication("WPA2");
  profile.set_w_lan_profile_encryption("AES");
  profile.set_is_active(false);
  EXPECT_THAT(Sent(record), HasSubstr("    ABCDEF0123456789… WPA2 AES\n"));
  profile.set_is_active(true);
  EXPECT_THAT(Sent(record), HasSubstr("    ABCDEF0123456789… WPA2 AES active\n"));
}

TEST(TextReportTest, ProcessesAreOneLineEachWithWhatTheyUse) {
  PcLogPerformanceSamplesAsCDM record;
  auto& process = *record.mutable_operating_system_info()->add_resource_intensive_processes_info();
  process.set_executable_file_id("editor");
  process.set_is_elevated(true);
  process.mutable_resource_utilization_info()->set_cpu_utilization_percent(12.25F);
  process.mutable_resource_utilization_info()->set_io_reads(12'345);
  EXPECT_THAT(Sent(record), HasSubstr("    process      CPU   reads  elevated\n"
                                      "    editor   12.25 %  12,345  yes\n"));
}

TEST(TextReportTest, TheSessionIsShownInDaysAndHours) {
  PcLogPerformanceSamplesAsCDM record;
  record.mutable_operating_system_info()->mutable_operating_session_info()->set_time_since_last_boot_minutes(4567);
  EXPECT_THAT(Sent(record), HasSubstr("since the last start  3 d 4 h 7 min\n"));
}

TEST(TextReportTest, ATextInARecordCannotSteerTheTerminal) {
  PcLogPerformanceSamplesAsCDM record;
  record.mutable_hw_info()->mutable_device_state()->set_device_mode("\x1b[2Jposition\nTablet");
  EXPECT_THAT(Sent(record), HasSubstr("mode   [2Jposition Tablet\n"));
}

TEST(TextReportTest, ARecordThatIsNotKnownIsShownByTheNamesOfItsFields) {
  google::protobuf::StringValue record;
  record.set_value("some text");
  EXPECT_EQ(Sent(record), "SENT StringValue\n  Other fields\n    value  some text\n\n");
}

TEST(TextReportTest, AnEmptyRecordIsItsHeading) {
  EXPECT_EQ(Sent(EnergyEMISamples()), "SENT EnergyEMISamples\n\n");
}

TEST(TextReportTest, ATextThatHoldsAnUploadIsShownAsTheUpload) {
  const std::string text = SentText(
      R"({"data":{"collectionId":"ID","swInfo":{"a":1},"hwInfo":{"deviceState":{"deviceMode":"tablet"}}},"gun":"g"})");
  EXPECT_THAT(text, StartsWith("SENT text of 106 characters (--format json shows it whole); the upload in it:\n"
                               "SENT PcLogPerformanceSamplesAsCDM  ID\n"));
  EXPECT_THAT(text, HasSubstr("  Device state\n    mode  tablet\n"));
}

TEST(TextReportTest, AnyOtherTextIsShownAsItIs) {
  EXPECT_EQ(SentText("plain text"), "SENT text of 10 characters:\nplain text\n\n");
  EXPECT_EQ(SentText("{\"data\":5}"), "SENT text of 10 characters:\n{\"data\":5}\n\n");
  EXPECT_EQ(SentText("[1,2]"), "SENT text of 5 characters:\n[1,2]\n\n");
}

TEST(TextReportTest, AStreamThatTakesNothingIsAFailure) {
  std::ostringstream out;
  out.setstate(std::ios::badbit);
  EXPECT_THROW(TextReport(out).ShowSent(AmdPmfSamples()), std::runtime_error);
}

}  // namespace
}  // namespace zt::telemetry::host
