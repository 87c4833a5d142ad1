#include "storage_sampler_fixture.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::ElementsAre;

TEST_F(StorageSampler, AsksForDrivesThenForPartitionsThenForEachLogicalDisk) {
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

TEST_F(StorageSampler, WithoutDrivesOneQueryRuns) {
  EXPECT_TRUE(Sample().empty());
  EXPECT_TRUE(PerfMessages::static_cdm_->has_hw_info());
  EXPECT_THAT(simulation::RecordedQueries(), ElementsAre(kDrivesQuery));
}

TEST_F(StorageSampler, AFailedDriveQueryEndsThePass) {
  AddExampleDrive();
  EXPECT_EQ(SampleAndFail("Win32_DiskDrive"), "Error while querying Win32_DiskDrive");
  EXPECT_EQ(simulation::RecordedQueries().size(), 1U);
  EXPECT_TRUE(Drives().empty());
}

TEST_F(StorageSampler, AFailedMediaQueryEndsThePassWithoutADrive) {
  AddExampleDrive();
  AddDrive(kDrive1, "");
  EXPECT_EQ(SampleAndFail("Win32_PhysicalMedia"), "Error while querying Win32_PhysicalMedia");
  EXPECT_EQ(simulation::RecordedQueries().size(), 2U);
  EXPECT_TRUE(Drives().empty());
}

TEST_F(StorageSampler, AFailedPartitionQueryEndsThePassWithoutADrive) {
  AddExampleDrive();
  AddDrive(kDrive1, "WD-2");
  EXPECT_EQ(SampleAndFail("PHYSICALDRIVE1"),
            "Error while querying associates of Win32_DiskDrive that are of the type Win32_DiskPartition class");
  EXPECT_EQ(simulation::RecordedQueries().size(), 5U);
  EXPECT_TRUE(Drives().empty());
}

TEST_F(StorageSampler, AFailedLogicalDiskQueryEndsThePassWithoutADrive) {
  AddExampleDrive();
  EXPECT_EQ(SampleAndFail("Partition #1"),
            "Error while querying associates of Win32_DiskPartition that are of the type Win32_LogicalDisk class");
  EXPECT_EQ(simulation::RecordedQueries().size(), 4U);
  EXPECT_TRUE(Drives().empty());
}

TEST_F(StorageSampler, ADriveWithoutANeedForMediaSurvivesItsFailure) {
  AddExampleDrive();
  machine_.wmi.failures = {{"Win32_PhysicalMedia", kAccessDenied, std::nullopt, 0}};
  EXPECT_THAT(Sample(), ElementsAre(Drive("S4EV", 66.67)));
}

TEST_F(StorageSampler, ACopyOfAnotherBuilderUsesItsClient) {
  AddExampleDrive();
  simulation::UseMachine(machine_);
  PerfMessages::static_cdm_.reset();
  PerfMessages::Init(this, 50);
  shared::wmi::WMIClient wmi(LR"(\\.\root\cimv2)");
  const StorageInfoMsg original(&wmi, nullptr);
  const PerfMessages& base = original;
  StorageInfoMsg(base).PopulateStorageAndUploadProtos();
  EXPECT_THAT(Drives(), ElementsAre(Drive("S4EV", 66.67)));
}

class StorageCycle : public CollectorTest {};

TEST_F(StorageCycle, AFailedQueryIsOneErrorLineAndTheRecordIsSent) {
  simulation::Machine machine;
  machine.clock = ExampleClock();
  machine.wmi.failures = {{"Win32_DiskDrive", kAccessDenied, std::nullopt, 0}};
  simulation::UseMachine(machine);
  Execute(50);
  EXPECT_THAT(log_.Messages(plog::error),
              testing::Contains("Error handling message. Details: Error while querying Win32_DiskDrive").Times(1));
  EXPECT_EQ(OnlySent().hw_info().storage_drives_info_size(), 0);
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
