#include "host/views/record_reader.h"

#include <gmock/gmock.h>

#include "device_performance_storage.pb.h"
#include "performance_samples_upload.pb.h"

namespace zt::telemetry::host {
namespace {

using contract::storage::device_performance::AmdPmfSamples;
using contract::upload::log::PcLogPerformanceSamplesAsCDM;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

TEST(RecordReaderTest, AFieldOfAMessageThatIsUnsetIsUnset) {
  const PcLogPerformanceSamplesAsCDM record;
  EXPECT_EQ(FigureText(record, {"", "hw_info.system_memory_info.used_virtual_memory_kb", Form::kNumber}), std::nullopt);
}

TEST(RecordReaderTest, APathThatTheMessageDoesNotHaveIsUnset) {
  PcLogPerformanceSamplesAsCDM record;
  record.mutable_hw_info()->add_batteries_info()->set_voltage(1);
  for (const char* path :
       {"nothing", "hw_info.nothing", "collection_id.nothing", "hw_info.batteries_info.voltage", ""}) {
    EXPECT_EQ(FigureText(record, {"", path, Form::kNumber}), std::nullopt) << path;
    EXPECT_THAT(MessagesAt(record, "nothing"), IsEmpty());
  }
}

TEST(RecordReaderTest, LargeNumbersOf64BitsKeepTheirMagnitude) {
  AmdPmfSamples record;
  record.set_battery_charge_rate_mw(-9'000'000'000);
  record.set_battery_remaining_capacity_percent(18'000'000'000'000'000'000U);
  EXPECT_EQ(FigureText(record, {"", "battery_charge_rate_mw", Form::kNumber, " mW"}), "-9,000,000,000 mW");
  EXPECT_EQ(FigureText(record, {"", "battery_remaining_capacity_percent", Form::kNumber}),
            "18,000,000,000,000,000,000");
}

TEST(RecordReaderTest, AFigureThatRepeatsAnotherIsNotShown) {
  AmdPmfSamples record;
  record.set_memory_clock_mhz(4800);
  EXPECT_EQ(FigureText(record, {"", "memory_clock_mhz", Form::kOmitted}), std::nullopt);
}

TEST(RecordReaderTest, AListOfTextsIsJoined) {
  PcLogPerformanceSamplesAsCDM::HwInfo::BatteryInfo battery;
  battery.add_battery_status("0");
  battery.add_battery_status("7");
  EXPECT_EQ(FigureText(battery, {"", "battery_status", Form::kList}), "0, 7");
}

TEST(RecordReaderTest, MessagesAreTheEntriesOfAListTheOneOfASingularFieldOrTheRecordItself) {
  PcLogPerformanceSamplesAsCDM record;
  EXPECT_THAT(MessagesAt(record, ""), ElementsAre(&record));
  EXPECT_THAT(MessagesAt(record, "hw_info"), IsEmpty());
  record.mutable_hw_info()->add_gpus_info();
  record.mutable_hw_info()->add_gpus_info();
  EXPECT_THAT(MessagesAt(record, "hw_info"), SizeIs(1));
  EXPECT_THAT(MessagesAt(record, "hw_info.gpus_info"), SizeIs(2));
}

TEST(RecordReaderTest, FieldsThatAreNotKnownAreToldByTheirPaths) {
  PcLogPerformanceSamplesAsCDM record;
  record.set_collection_id("known");
  record.set_sample_points_actual(7);
  record.mutable_hw_info()->mutable_device_state()->set_device_mode("tablet");
  record.mutable_hw_info()->mutable_system_memory_info()->set_used_virtual_memory_kb(5);
  record.mutable_hw_info()->add_storage_drives_info()->set_drive_serial_number("S5");
  EXPECT_THAT(OtherFields(record, {"collection_id", "hw_info.device_state.device_mode"}),
              ElementsAre(Pair("sample_points_actual", "7"), Pair("hw_info.storage_drives_info", "S5"),
                          Pair("hw_info.system_memory_info", "used_virtual_memory_kb: 5")));
}

TEST(RecordReaderTest, NothingIsLeftWhenAllIsKnown) {
  AmdPmfSamples record;
  record.set_device_mode("tablet");
  EXPECT_THAT(OtherFields(record, {"device_mode"}), IsEmpty());
}

}  // namespace
}  // namespace zt::telemetry::host
