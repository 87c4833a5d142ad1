#include "sdk/wmi-client/simulated/change_type.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tests/sdk/wmi-client/change_type_check.h"

namespace zt::tests {
namespace {

TEST(ChangeTypeTest, EmptyIsZeroAndNullIsNothing) {
  ExpectConversions(change_type::NothingCases());
}

TEST(ChangeTypeTest, TrueIsAllBitsSet) {
  ExpectConversions(change_type::BooleanCases());
}

TEST(ChangeTypeTest, IntegersOfOneWidthKeepTheirBitsAndOthersTheirValue) {
  ExpectConversions(change_type::IntegerCases());
}

TEST(ChangeTypeTest, RealNumbersRoundHalvesToTheEvenInteger) {
  ExpectConversions(change_type::RealToNumberCases());
}

TEST(ChangeTypeTest, RealNumbersAreWrittenWithTheirSignificantDigits) {
  ExpectConversions(change_type::RealToTextCases());
}

TEST(ChangeTypeTest, SmallRealNumbersAreWrittenWithoutAnExponentWhileTheyAreShort) {
  ExpectConversions(change_type::SmallRealToTextCases());
}

TEST(ChangeTypeTest, ATextIsABooleanByNameOrByNumber) {
  ExpectConversions(change_type::TextToBooleanCases());
}

TEST(ChangeTypeTest, ATextOfDigitsIsAnIntegerWithinItsRange) {
  ExpectConversions(change_type::TextToIntegerCases());
}

TEST(ChangeTypeTest, ATextThatIsNoNumberIsATypeMismatch) {
  ExpectConversions(change_type::TextThatIsNoNumberCases());
}

TEST(ChangeTypeTest, ATextIsTheNearestFloat) {
  ExpectConversions(change_type::TextToFloatAndTextCases());
}

// Not in the list: what the system makes of it is not the same everywhere.
TEST(ChangeTypeTest, NotANumberFitsNoInteger) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  ExpectConversions({Fails(nan, WantedType::kUInt32, kOverflow), Fails(nan, WantedType::kUInt64, kOverflow)});
  float narrowed = 0;
  EXPECT_EQ(shared::wmi::ChangeType(change_type::Double(nan), narrowed), kSuccess);
  EXPECT_TRUE(std::isnan(narrowed));
}

}  // namespace
}  // namespace zt::tests
