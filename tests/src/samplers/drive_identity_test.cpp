#include "storage_sampler_fixture.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::ElementsAre;

class DriveIdentityTest : public StorageSamplerTest {};

TEST_F(DriveIdentityTest, TrimsTheSerialNumber) {
  AddDrive(kDrive0, "  S4EV NX0 \t\r\n ");
  EXPECT_THAT(Sample(), ElementsAre(Drive("S4EV NX0", 0)));
}

TEST_F(DriveIdentityTest, LooksUpAMissingSerialNumberByTheEscapedId) {
  AddDrive(kDrive0, "S4EV");
  AddDrive(kDrive1, "");
  AddMedia(kDrive1, "  WD-WX11  ");
  EXPECT_THAT(Sample(), ElementsAre(Drive("S4EV", 0), Drive("WD-WX11", 0)));
  EXPECT_THAT(
      simulation::RecordedQueries(),
      ElementsAre(kDrivesQuery, R"(SELECT SerialNumber FROM Win32_PhysicalMedia WHERE Tag = '\\\\.\\PHYSICALDRIVE1')",
                  kPartitionsOfDrive0, kPartitionsOfDrive1));
}

TEST_F(DriveIdentityTest, LooksUpASerialNumberThatCannotBeRead) {
  machine_.wmi.classes["Win32_DiskDrive"] = {{{"DeviceID", kDrive0}},
                                             {{"DeviceID", kDrive1}, {"SerialNumber", simulation::WmiNull()}}};
  AddMedia(kDrive0, "first");
  AddMedia(kDrive1, "second");
  EXPECT_THAT(Sample(), ElementsAre(Drive("first", 0), Drive("second", 0)));
}

TEST_F(DriveIdentityTest, ASerialNumberOfBlanksIsNotLookedUp) {
  AddDrive(kDrive0, "   ");
  AddMedia(kDrive0, "media");
  EXPECT_TRUE(Sample().empty());
  EXPECT_THAT(simulation::RecordedQueries(), ElementsAre(kDrivesQuery, kPartitionsOfDrive0));
}

TEST_F(DriveIdentityTest, TheLastReadableMediaSerialNumberWins) {
  AddDrive(kDrive0, "");
  AddMedia(kDrive0, "first");
  AddMedia(kDrive0, "second");
  AddMedia(kDrive0, simulation::WmiNull());
  EXPECT_THAT(Sample(), ElementsAre(Drive("second", 0)));
}

TEST_F(DriveIdentityTest, ADriveWithoutAnySerialNumberIsNotReported) {
  AddDrive(kDrive0, "");
  AddDrive(kDrive1, "S4EV");
  EXPECT_THAT(Sample(), ElementsAre(Drive("S4EV", 0)));
}

TEST_F(DriveIdentityTest, ADriveWithoutAnIdStillTakesPart) {
  machine_.wmi.classes["Win32_DiskDrive"] = {{{"SerialNumber", "S4EV"}}};
  EXPECT_THAT(Sample(), ElementsAre(Drive("S4EV", 0)));
  EXPECT_THAT(simulation::RecordedQueries(),
              ElementsAre(kDrivesQuery,
                          "ASSOCIATORS OF {Win32_DiskDrive.DeviceID=''} WHERE ResultClass = Win32_DiskPartition"));
}

TEST_F(DriveIdentityTest, RowsWithOneIdShareTheLastSerialNumber) {
  AddDrive(kDrive0, "first");
  AddDrive(kDrive0, "second");
  EXPECT_THAT(Sample(), ElementsAre(Drive("second", 0), Drive("second", 0)));
  EXPECT_THAT(simulation::RecordedQueries(), ElementsAre(kDrivesQuery, kPartitionsOfDrive0, kPartitionsOfDrive0));
}

TEST_F(DriveIdentityTest, ReportsTheLibrarysIdentityOfADrive) {
  AddDrive(kDrive0, " 0025_38B1_1234_5678. ");
  AddDrive(kDrive1, "WD-WX11");
  machine_.storage_library = {{"other", "0025"}, {"S4EVNX0M", "0025_38B1_1234_5678."}};
  EXPECT_THAT(Sample(), ElementsAre(Drive("S4EVNX0M", 0), Drive("WD-WX11", 0)));
}

TEST_F(DriveIdentityTest, MatchesSerialNumbersByteForByte) {
  AddDrive(kDrive0, "s4ev");
  machine_.storage_library = {{"a", "S4EV"}, {"b", "s4ev "}, {"c", "s4e"}, {"d", "s4ev1"}};
  EXPECT_THAT(Sample(), ElementsAre(Drive("s4ev", 0)));
}

TEST_F(DriveIdentityTest, TheFirstMatchingLibraryDriveWins) {
  AddDrive(kDrive0, "S4EV");
  machine_.storage_library = {{"first", "S4EV"}, {"second", "S4EV"}};
  EXPECT_THAT(Sample(), ElementsAre(Drive("first", 0)));
}

TEST_F(DriveIdentityTest, TwoMissingSerialNumbersAreEqual) {
  AddDrive(kDrive0, "");
  machine_.storage_library = {{"S4EV", "0025"}, {"behind a controller", ""}};
  EXPECT_THAT(Sample(), ElementsAre(Drive("behind a controller", 0)));
}

TEST_F(DriveIdentityTest, AnEmptyLibraryIdentityIsNotReported) {
  AddDrive(kDrive0, "S4EV");
  machine_.storage_library = {{"", "S4EV"}};
  EXPECT_TRUE(Sample().empty());
}

TEST_F(DriveIdentityTest, CutsAnIdentityToThirtyTwoBytes) {
  AddDrive(kDrive0, std::string(31, 's') + "é");
  AddDrive(kDrive1, "S4EV");
  machine_.storage_library = {{std::string(33, 'l'), "S4EV"}};
  EXPECT_THAT(Sample(), ElementsAre(Drive(std::string(31, 's'), 0), Drive(std::string(32, 'l'), 0)));
}

TEST_F(DriveIdentityTest, MatchesTheWholeSerialNumberBeforeItIsCut) {
  AddDrive(kDrive0, std::string(40, 's'));
  machine_.storage_library = {{"short", std::string(32, 's')}, {"long", std::string(40, 's')}};
  EXPECT_THAT(Sample(), ElementsAre(Drive("long", 0)));
}

class ManyDrivesTest : public StorageSamplerTest, public testing::WithParamInterface<std::size_t> {};

TEST_P(ManyDrivesTest, OnlyTheFirstThirtyTwoAreHandled) {
  for (std::size_t i = 0; i < GetParam(); ++i) {
    AddDrive(R"(\\.\PHYSICALDRIVE)" + std::to_string(i), "serial " + std::to_string(i));
  }
  const std::vector<Reported> drives = Sample();
  const std::size_t handled = std::min<std::size_t>(GetParam(), 32);
  ASSERT_EQ(drives.size(), handled);
  EXPECT_EQ(drives.back().identity, "serial " + std::to_string(handled - 1));
  EXPECT_EQ(simulation::RecordedQueries().size(), 1 + handled);
}

INSTANTIATE_TEST_SUITE_P(, ManyDrivesTest, testing::Values(1U, 31U, 32U, 33U, 40U));

TEST_F(DriveIdentityTest, ADriveWithoutASerialNumberCountsTowardsTheThirtyTwo) {
  for (int i = 0; i < 40; ++i) AddDrive(R"(\\.\PHYSICALDRIVE)" + std::to_string(i), i == 0 ? "" : "serial");
  EXPECT_EQ(Sample().size(), 31U);
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
