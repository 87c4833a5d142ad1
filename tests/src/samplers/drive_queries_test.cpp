#include "simulation/profile.h"
#include "storage_sampler_fixture.h"
#include "support/collector_fixture.h"
#include "support/status_codes.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::ElementsAre;

class DriveQueriesTest : public StorageSamplerTest {};

TEST_F(DriveQueriesTest, AsksForDrivesThenForPartitionsThenForEachLogicalDisk) {
  AddExampleDrive();
  AddDrive(kDrive1, "WD-2");
  Sample();
  EXPECT_THAT(simulation::RecordedQueries(),
              ElementsAre(kDrivesQuery, kPartitionsOfDrive0,
                          "ASSOCIATORS OF {Win32_DiskPartition.DeviceID='Disk #0, Partition #0'} "
                          "WHERE ResultClass = Win32_LogicalDisk",
                          "ASSOCIATORS OF {Win32_DiskPartition.DeviceID='Disk #0, Partition #1'} "
                          "WHERE ResultClass = Win32_LogicalDisk",
                          kPartitionsOfDrive1));
}

TEST_F(DriveQueriesTest, APartitionsIdIsATextOfAnyLanguage) {
  AddDrive(kDrive0, "S4EV");
  AddPartition(kDrive0, "Datenträger Nr. 0, Partition Nr. 1", {{"FreeSpace", "1"}, {"Size", "4"}});
  AddPartition(kDrive0, "ディスク 0、パーティション 2 🖴", {{"FreeSpace", "1"}, {"Size", "4"}});
  EXPECT_THAT(Sample(), ElementsAre(Drive("S4EV", 75)));
  EXPECT_THAT(
      simulation::RecordedQueries(),
      ElementsAre(kDrivesQuery, kPartitionsOfDrive0,
                  "ASSOCIATORS OF {Win32_DiskPartition.DeviceID='Datenträger Nr. 0, Partition Nr. 1'} "
                  "WHERE ResultClass = Win32_LogicalDisk",
                  "ASSOCIATORS OF {Win32_DiskPartition.DeviceID='ディスク 0、パーティション 2 🖴'} "
                  "WHERE ResultClass = Win32_LogicalDisk"));
}

TEST_F(DriveQueriesTest, ADrivesIdIsWidenedByteByByteWithItsSign) {
  AddDrive("é", "");  // the bytes C3 and A9
  Sample();
  EXPECT_THAT(
      simulation::RecordedQueries(),
      ElementsAre(kDrivesQuery, "SELECT SerialNumber FROM Win32_PhysicalMedia WHERE Tag = '\uFFC3\uFFA9'",
                  "ASSOCIATORS OF {Win32_DiskDrive.DeviceID='\uFFC3\uFFA9'} WHERE ResultClass = Win32_DiskPartition"));
}

TEST_F(DriveQueriesTest, WithoutDrivesOneQueryRuns) {
  EXPECT_TRUE(Sample().empty());
  EXPECT_TRUE(PerfMessages::static_cdm_->has_hw_info());
  EXPECT_THAT(simulation::RecordedQueries(), ElementsAre(kDrivesQuery));
}

TEST_F(DriveQueriesTest, AFailedDriveQueryEndsThePass) {
  AddExampleDrive();
  EXPECT_EQ(SampleAndFail("Win32_DiskDrive"), "Error while querying Win32_DiskDrive");
  EXPECT_EQ(simulation::RecordedQueries().size(), 1U);
  EXPECT_TRUE(Drives().empty());
}

TEST_F(DriveQueriesTest, AFailedMediaQueryEndsThePassWithoutADrive) {
  AddExampleDrive();
  AddDrive(kDrive1, "");
  EXPECT_EQ(SampleAndFail("Win32_PhysicalMedia"), "Error while querying Win32_PhysicalMedia");
  EXPECT_EQ(simulation::RecordedQueries().size(), 2U);
  EXPECT_TRUE(Drives().empty());
}

TEST_F(DriveQueriesTest, AFailedPartitionQueryEndsThePassWithoutADrive) {
  AddExampleDrive();
  AddDrive(kDrive1, "WD-2");
  EXPECT_EQ(SampleAndFail("PHYSICALDRIVE1"),
            "Error while querying associates of Win32_DiskDrive that are of the type Win32_DiskPartition class");
  EXPECT_EQ(simulation::RecordedQueries().size(), 5U);
  EXPECT_TRUE(Drives().empty());
}

TEST_F(DriveQueriesTest, AFailedLogicalDiskQueryEndsThePassWithoutADrive) {
  AddExampleDrive();
  EXPECT_EQ(SampleAndFail("Partition #1"),
            "Error while querying associates of Win32_DiskPartition that are of the type Win32_LogicalDisk class");
  EXPECT_EQ(simulation::RecordedQueries().size(), 4U);
  EXPECT_TRUE(Drives().empty());
}

TEST_F(DriveQueriesTest, ADriveWithoutANeedForMediaSurvivesItsFailure) {
  AddExampleDrive();
  machine_.wmi.failures = {{"Win32_PhysicalMedia", tests::kAccessDenied, std::nullopt, 0}};
  EXPECT_THAT(Sample(), ElementsAre(Drive("S4EV", 66.67)));
}

TEST_F(DriveQueriesTest, ACopyOfAnotherBuilderUsesItsClient) {
  AddExampleDrive();
  PopulateByCopy(StorageInfoMsg(&wmi_, nullptr));
  EXPECT_THAT(Drives(), ElementsAre(Drive("S4EV", 66.67)));
}

class StorageCycleTest : public CollectorTest {};

// A drive as Windows in German shows it: two partitions, of which the second has a logical disk of 400 GB, 100 of them
// free.
constexpr char kGermanMachine[] = R"({
  "wmi": {
    "classes": {
      "Win32_DiskDrive": [{"DeviceID": "\\\\.\\PHYSICALDRIVE0", "SerialNumber": "S4EV"}]
    },
    "associations": [
      {
        "of": "Win32_DiskDrive.DeviceID='\\\\.\\PHYSICALDRIVE0'",
        "result_class": "Win32_DiskPartition",
        "rows": [
          {"DeviceID": "Datenträger Nr. 0, Partition Nr. 0"},
          {"DeviceID": "Datenträger Nr. 0, Partition Nr. 1"}
        ]
      },
      {
        "of": "Win32_DiskPartition.DeviceID='Datenträger Nr. 0, Partition Nr. 1'",
        "result_class": "Win32_LogicalDisk",
        "rows": [{"DeviceID": "C:", "FreeSpace": "100000000000", "Size": "400000000000"}]
      }
    ]
  }
})";

TEST_F(StorageCycleTest, AMachineInGermanIsSentWithTheUseOfItsDrive) {
  simulation::UseMachine(simulation::ParseProfile(kGermanMachine, "german"));
  Execute(50);
  ASSERT_EQ(OnlySent().hw_info().storage_drives_info_size(), 1);
  EXPECT_EQ(OnlySent().hw_info().storage_drives_info(0).drive_serial_number(), "S4EV");
  EXPECT_EQ(OnlySent().hw_info().storage_drives_info(0).utilization_percent(), 75.0F);
}

TEST_F(StorageCycleTest, AFailedQueryIsOneErrorLineAndTheRecordIsSent) {
  simulation::Machine machine;
  machine.clock = ExampleClock();
  machine.wmi.failures = {{"Win32_DiskDrive", tests::kAccessDenied, std::nullopt, 0}};
  simulation::UseMachine(machine);
  Execute(50);
  EXPECT_THAT(log_.Messages(plog::error),
              testing::Contains("Error handling message. Details: Error while querying Win32_DiskDrive").Times(1));
  EXPECT_EQ(OnlySent().hw_info().storage_drives_info_size(), 0);
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
