#include "storage_sampler_fixture.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::ElementsAre;

class DriveUsageTest : public StorageSamplerTest {};

TEST_F(DriveUsageTest, SumsTheLogicalDisksOfADrive) {
  AddExampleDrive();
  EXPECT_THAT(Sample(), ElementsAre(Drive("S4EV", 66.67)));
}

TEST_F(DriveUsageTest, DividesInDoubleAndGoesOnInSinglePrecisionUnrounded) {
  AddDrive(kDrive0, "S4EV");
  AddPartition(kDrive0, "a", {{"FreeSpace", "267691096204"}, {"Size", "331020807702"}});
  // All in single precision would be 19.1316376, all in double precision 19.1316414.
  EXPECT_EQ(Sample().at(0).percent, 19.1316452F);
}

TEST_F(DriveUsageTest, AFullDriveIsAtAHundredAndAnEmptyOneAtZero) {
  AddDrive(kDrive0, "full");
  AddPartition(kDrive0, "a", {{"FreeSpace", "0"}, {"Size", Gigabytes(1)}});
  AddDrive(kDrive1, "empty");
  AddPartition(kDrive1, "b", {{"FreeSpace", Gigabytes(1)}, {"Size", Gigabytes(1)}});
  EXPECT_THAT(Sample(), ElementsAre(Drive("full", 100), Drive("empty", 0)));
}

TEST_F(DriveUsageTest, MoreFreeThanThereIsIsTheDistance) {
  AddDrive(kDrive0, "odd");
  AddPartition(kDrive0, "a", {{"FreeSpace", Gigabytes(3)}, {"Size", Gigabytes(2)}});
  EXPECT_THAT(Sample(), ElementsAre(Drive("odd", 50)));
}

TEST_F(DriveUsageTest, ADriveWithoutPartitionsIsAtZero) {
  AddDrive(kDrive0, "S4EV");
  EXPECT_THAT(Sample(), ElementsAre(Drive("S4EV", 0)));
}

TEST_F(DriveUsageTest, APartitionWithoutALogicalDiskAddsNothing) {
  AddExampleDrive();
  AddPartition(kDrive0, "Disk #0, Partition #2", {});
  EXPECT_THAT(Sample(), ElementsAre(Drive("S4EV", 66.67)));
}

TEST_F(DriveUsageTest, ASizeSumOfZeroIsAtZero) {
  AddDrive(kDrive0, "zero");
  AddPartition(kDrive0, "a", {{"FreeSpace", "0"}, {"Size", "0"}});
  AddDrive(kDrive1, "infinite");
  AddPartition(kDrive1, "b", {{"FreeSpace", "1"}, {"Size", "0"}});
  EXPECT_THAT(Sample(), ElementsAre(Drive("zero", 0), Drive("infinite", 0)));
}

TEST_F(DriveUsageTest, AFigureThatCannotBeReadCountsAsZero) {
  AddDrive(kDrive0, "S4EV");
  AddPartition(kDrive0, "a", {{"FreeSpace", Gigabytes(50)}, {"Size", Gigabytes(100)}});
  AddPartition(kDrive0, "b", {{"FreeSpace", simulation::WmiNull()}, {"Size", Gigabytes(100)}});
  AddPartition(kDrive0, "c", {{"FreeSpace", "much"}, {"VolumeName", "locked"}});
  EXPECT_THAT(Sample(), ElementsAre(Drive("S4EV", 75)));
}

TEST_F(DriveUsageTest, OnlyTheFirstLogicalDiskOfAPartitionCounts) {
  AddDrive(kDrive0, "S4EV");
  AddPartition(kDrive0, "a", {});
  AddLogicalDisks("a", {{{"FreeSpace", "1"}, {"Size", "4"}}, {{"FreeSpace", "0"}, {"Size", "96"}}});
  EXPECT_THAT(Sample(), ElementsAre(Drive("S4EV", 75)));
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
