#include "host/inspection/failure_text.h"

#include <gtest/gtest.h>

#include <exception>
#include <stdexcept>
#include <string>

namespace zt::telemetry::host::inspection {
namespace {

using common::Error;

constexpr char kUnknown[] = "Unknown exception type.";

// What the collector's log knows of an exception, and what it says itself.
struct Failure {
  Error error;
  std::string own_words;
};

template <typename Thrown>
Failure FailureOf(const Thrown& thrown) {
  try {
    throw thrown;  // NOLINT(misc-throw-by-value-catch-by-reference): pointers too
  } catch (...) {
    return {Error::FromCurrentException(), CurrentFailureText()};
  }
}

TEST(FailureTextTest, AnErrorTellsItsStatus) {
  const Error error(Error::kCallFailed, 0x80041010, "Error while querying Win32_X", "", "");
  EXPECT_EQ(FailureOf(error).error, error);
  EXPECT_EQ(FailureOf(error).own_words, "Error while querying Win32_X (status 0x80041010)");
  EXPECT_EQ(OutcomeText({Error::kCallFailed, 1460, "no answer", "", ""}), "no answer (status 1460)");
}

TEST(FailureTextTest, AConditionOfOurOwnHasNoStatus) {
  for (const int code : {-1, 0, 1}) EXPECT_EQ(OutcomeText({Error::kCallFailed, code, "none", "", ""}), "none") << code;
  EXPECT_EQ(OutcomeText({Error::kSystemError, 1460, "none", "", ""}), "none");
}

TEST(FailureTextTest, AStandardExceptionIsUnknownToTheLogAndToldInItsOwnWords) {
  const Failure thrown = FailureOf(std::runtime_error("out of order"));
  EXPECT_EQ(thrown.error.description, kUnknown);
  EXPECT_EQ(thrown.own_words, "out of order");
}

TEST(FailureTextTest, SoIsOneThatIsThrownByItsAddress) {
  const std::runtime_error kept("out of order");
  const Failure thrown = FailureOf<const std::exception*>(&kept);
  EXPECT_EQ(thrown.error.description, kUnknown);
  EXPECT_EQ(thrown.own_words, "out of order");
}

TEST(FailureTextTest, AStandardExceptionWithoutWordsIsToldAsTheLogTellsIt) {
  struct Wordless : std::exception {
    const char* what() const noexcept override { return nullptr; }
  };
  EXPECT_EQ(FailureOf(Wordless()).own_words, kUnknown);
}

TEST(FailureTextTest, AnythingElseIsToldAsTheLogTellsIt) {
  EXPECT_EQ(FailureOf(std::string("text")).own_words, "text");
  EXPECT_EQ(FailureOf(7).own_words, kUnknown);
}

TEST(FailureTextTest, StatusesAreTextsAsDocumentationListsThem) {
  EXPECT_EQ(StatusText(0xFFFF), "65535");
  EXPECT_EQ(StatusText(0x10000), "0x00010000");
}

}  // namespace
}  // namespace zt::telemetry::host::inspection
