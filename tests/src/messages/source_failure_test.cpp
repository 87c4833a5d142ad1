#include "messages/source_failure.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace zt::telemetry::collector::performancesamples {
namespace {

using common::Error;

constexpr char kUnknown[] = "Unknown exception type.";

template <typename Thrown>
SourceFailure FailureOf(const Thrown& thrown) {
  try {
    throw thrown;  // NOLINT(misc-throw-by-value-catch-by-reference): pointers too
  } catch (...) {
    return CurrentSourceFailure();
  }
}

TEST(SourceFailureTest, AnErrorTellsItsStatus) {
  const Error error(Error::kCallFailed, 0x80041010, "Error while querying Win32_X", "", "");
  EXPECT_EQ(FailureOf(error).error, error);
  EXPECT_EQ(FailureOf(error).own_words, "Error while querying Win32_X (status 0x80041010)");
  EXPECT_EQ(OutcomeText({Error::kCallFailed, 1460, "no answer", "", ""}), "no answer (status 1460)");
}

TEST(SourceFailureTest, AConditionOfOurOwnHasNoStatus) {
  for (const int code : {-1, 0, 1}) EXPECT_EQ(OutcomeText({Error::kCallFailed, code, "none", "", ""}), "none") << code;
  EXPECT_EQ(OutcomeText({Error::kSystemError, 1460, "none", "", ""}), "none");
}

TEST(SourceFailureTest, AStandardExceptionIsUnknownToTheLogAndToldInItsOwnWords) {
  const SourceFailure thrown = FailureOf(std::runtime_error("out of order"));
  EXPECT_EQ(thrown.error.description, kUnknown);
  EXPECT_EQ(thrown.own_words, "out of order");
}

TEST(SourceFailureTest, SoIsOneThatIsThrownByItsAddress) {
  const std::runtime_error kept("out of order");
  const SourceFailure thrown = FailureOf<const std::exception*>(&kept);
  EXPECT_EQ(thrown.error.description, kUnknown);
  EXPECT_EQ(thrown.own_words, "out of order");
}

TEST(SourceFailureTest, AnythingElseIsToldAsTheLogTellsIt) {
  EXPECT_EQ(FailureOf(std::string("text")).own_words, "text");
  EXPECT_EQ(FailureOf(7).own_words, kUnknown);
}

TEST(SourceFailureTest, StatusesAreTextsAsDocumentationListsThem) {
  EXPECT_EQ(StatusText(0xFFFF), "65535");
  EXPECT_EQ(StatusText(0x10000), "0x00010000");
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
