#include "zt/shared/storage/pcie_storage_drive.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "simulation/machine.h"

// The library as its users see it.
namespace zt::tests {
namespace {

using shared::storage::PCIeStorageDrive;

struct FreeArray {
  void operator()(char** names) const { std::free(names); }
};
using NameArray = std::unique_ptr<char*[], FreeArray>;

void UseDrives(std::vector<simulation::LibraryDrive> drives) {
  simulation::Machine machine;
  machine.storage_library = std::move(drives);
  simulation::UseMachine(machine);
}

std::vector<std::string> Names(PCIeStorageDrive& library) {
  int count = -1;
  const NameArray names(library.GetAllStorageDrives(count));
  return {names.get(), names.get() + count};
}

TEST(PcieStorageDriveTest, WithoutDrivesThereIsNoArray) {
  PCIeStorageDrive library;
  int count = -1;
  EXPECT_EQ(library.GetAllStorageDrives(count), nullptr);
  EXPECT_EQ(count, 0);
}

TEST(PcieStorageDriveTest, ListsTheDrivesInTheirOrder) {
  UseDrives({{"S4EV", "0025."}, {"WD-1", "WD-1"}});
  PCIeStorageDrive library;
  EXPECT_THAT(Names(library), testing::ElementsAre("S4EV", "WD-1"));
}

TEST(PcieStorageDriveTest, EachCallGivesAnArrayOfItsOwn) {
  UseDrives({{"S4EV", "0025."}});
  PCIeStorageDrive library;
  int count = 0;
  const NameArray first(library.GetAllStorageDrives(count));
  const NameArray second(library.GetAllStorageDrives(count));
  EXPECT_NE(first.get(), second.get());
  EXPECT_EQ(first[0], second[0]);
}

TEST(PcieStorageDriveTest, TellsTheWmiFormOfADrive) {
  UseDrives({{"S4EV", "0025."}, {"WD-1", "WD-1"}});
  PCIeStorageDrive library;
  EXPECT_STREQ(library.GetWMISN("S4EV"), "0025.");
  EXPECT_STREQ(library.GetWMISN("WD-1"), "WD-1");
  EXPECT_STREQ(library.GetWMISN("S4E"), "");
}

TEST(PcieStorageDriveTest, TellsDrivesOfOneIdentityApart) {
  UseDrives({{"S4EV", "0025."}, {"S4EV", "0026."}});
  PCIeStorageDrive library;
  int count = 0;
  const NameArray names(library.GetAllStorageDrives(count));
  ASSERT_EQ(count, 2);
  EXPECT_STREQ(library.GetWMISN(names[0]), "0025.");
  EXPECT_STREQ(library.GetWMISN(names[1]), "0026.");
}

TEST(PcieStorageDriveTest, KeepsWhatItFoundWhenItWasMade) {
  UseDrives({{"S4EV", "0025."}});
  PCIeStorageDrive library;
  UseDrives({});
  EXPECT_THAT(Names(library), testing::ElementsAre("S4EV"));
}

}  // namespace
}  // namespace zt::tests
