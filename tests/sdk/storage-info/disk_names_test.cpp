#include "disk_names.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace zt::tests {
namespace {

using namespace std::string_literals;
using shared::storage::FindDiskNumbers;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(DiskNamesTest, FindsDisksInOrderWithTheirGaps) {
  EXPECT_THAT(FindDiskNumbers(L"C:\0PhysicalDrive12\0PIPE\0PhysicalDrive0\0PhysicalDrive3\0\0"s),
              ElementsAre(0, 3, 12));
}

TEST(DiskNamesTest, WhatOnlyLooksLikeADiskIsNone) {
  EXPECT_THAT(FindDiskNumbers(L"PhysicalDrive\0PhysicalDriveX\0PhysicalDrive1a\0MyPhysicalDrive1\0"
                              L"Harddisk0Partition1\0PhysicalDrive 1\0PhysicalDrive-1\0PhysicalDrive1234567\0\0"s),
              IsEmpty());
}

TEST(DiskNamesTest, AListWithoutItsEndIsReadToItsEnd) {
  EXPECT_THAT(FindDiskNumbers(L"PhysicalDrive1\0PhysicalDrive2"s), ElementsAre(1, 2));
}

TEST(DiskNamesTest, AnEmptyListHasNoDisks) {
  EXPECT_THAT(FindDiskNumbers({}), IsEmpty());
  EXPECT_THAT(FindDiskNumbers(L"\0\0"s), IsEmpty());
}

}  // namespace
}  // namespace zt::tests
