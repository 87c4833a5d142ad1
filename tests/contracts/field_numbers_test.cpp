// A number, once given, stays: records of other versions are read by it.
#include <gtest/gtest.h>

#include "agreed_records.h"
#include "record_listing.h"

namespace zt::tests {
namespace {

TEST(FieldNumbersTest, EveryNumberOnRecordIsInUseAsItWasGiven) {
  ASSERT_FALSE(FieldsOf(kAgreedRecords).empty());
  EXPECT_EQ(Without(StatementsOf(kAgreedRecords), StatementsOf(ListingOfTheContract())), "")
      << "removed, renamed, renumbered or given another type: put it back, older records are read by it; what is new "
         "gets a name and a number of its own";
}

TEST(FieldNumbersTest, EveryNumberInUseIsOnRecord) {
  EXPECT_EQ(Without(StatementsOf(ListingOfTheContract()), StatementsOf(kAgreedRecords)), "")
      << "new: scripts/contract adds it to tests/contracts/agreed_records.txt";
}

TEST(FieldNumbersTest, ANumberIsGivenOnce) {
  const std::string before = "file a.proto: proto3, package p\nmessage M\n  1 one: optional uint32, JSON one\n";
  const std::string after = "file a.proto: proto3, package p\nmessage M\n  1 two: optional uint32, JSON two\n";
  EXPECT_EQ(Without(StatementsOf(before), StatementsOf(after)), "M 1 one: optional uint32, JSON one\n");
}

}  // namespace
}  // namespace zt::tests
