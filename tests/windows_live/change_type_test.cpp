#include <gtest/gtest.h>

#include "tests/simulation/change_type_check.h"

// The system's own conversions and the simulated ones agree on the same list of cases.
namespace zt::tests {
namespace {

TEST(SystemChangeTypeTest, EmptyIsZeroAndNullIsNothing) {
  ExpectConversions(change_type::NothingCases());
}

TEST(SystemChangeTypeTest, TrueIsAllBitsSet) {
  ExpectConversions(change_type::BooleanCases());
}

TEST(SystemChangeTypeTest, IntegersOfOneWidthKeepTheirBitsAndOthersTheirValue) {
  ExpectConversions(change_type::IntegerCases());
}

TEST(SystemChangeTypeTest, RealNumbersRoundHalvesToTheEvenInteger) {
  ExpectConversions(change_type::RealToNumberCases());
}

TEST(SystemChangeTypeTest, RealNumbersAreWrittenWithTheirSignificantDigits) {
  ExpectConversions(change_type::RealToTextCases());
}

TEST(SystemChangeTypeTest, ATextIsABooleanByNameOrByNumber) {
  ExpectConversions(change_type::TextToBooleanCases());
}

TEST(SystemChangeTypeTest, ATextOfDigitsIsAnIntegerWithinItsRange) {
  ExpectConversions(change_type::TextToIntegerCases());
}

TEST(SystemChangeTypeTest, ATextThatIsNoNumberIsATypeMismatch) {
  ExpectConversions(change_type::TextThatIsNoNumberCases());
}

TEST(SystemChangeTypeTest, ATextIsTheNearestFloat) {
  ExpectConversions(change_type::TextToFloatAndTextCases());
}

}  // namespace
}  // namespace zt::tests
