#include "zt/telemetry/common/error.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <exception>
#include <functional>
#include <locale>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <system_error>
#include <typeinfo>

#include "support/status_codes.h"

namespace zt::telemetry::common {
namespace {

template <typename Throw>
Error ErrorOf(const Throw& throw_something) {
  try {
    throw_something();
  } catch (...) {
    return Error::FromCurrentException();
  }
  return {};
}

template <typename Thrown>
Error ErrorOfThrown(const Thrown& thrown) {
  return ErrorOf([&] { throw thrown; });
}

const Error kUnknown(1, 0, "Unknown exception type.", "Unknown", "");

// An exception that counts how many of its kind live.
class CountedException : public std::exception {
 public:
  explicit CountedException(int& alive) : alive_(alive) { ++alive_; }
  CountedException(const CountedException& other) : std::exception(other), alive_(other.alive_) { ++alive_; }
  CountedException& operator=(const CountedException&) = delete;
  ~CountedException() override { --alive_; }

 private:
  int& alive_;
};

class OwnSystemError : public std::system_error {
 public:
  using std::system_error::system_error;
};

// A locale in which a stream writes 10022 as 10,022.
class GroupedDigits : public std::numpunct<char> {
  char do_thousands_sep() const override { return ','; }
  std::string do_grouping() const override { return "\3"; }
};

TEST(ErrorTest, ADefaultErrorIsASuccess) {
  const Error success;
  EXPECT_EQ(success, Error(0, 0, "", "", ""));
  EXPECT_FALSE(success.Failed());
}

TEST(ErrorTest, AKindOrACodeIsAFailure) {
  EXPECT_TRUE(Error(5, 0, "", "", "").Failed());
  EXPECT_TRUE(Error(0, -1, "", "", "").Failed());
}

TEST(ErrorTest, TextsAloneAreNoFailure) {
  EXPECT_FALSE(Error(0, 0, "done", "type", "message").Failed());
}

TEST(ErrorTest, AThrownErrorIsItself) {
  const Error thrown(5, tests::kWmiFailed, "Error while querying Win32_DiskDrive", "type", "message");
  EXPECT_EQ(ErrorOfThrown(thrown), thrown);
}

TEST(ErrorTest, ASystemErrorTellsItsTextCategoryAndCode) {
  const std::system_error thrown(ENOENT, std::generic_category(), "opening");
  const Error error = ErrorOfThrown(thrown);
  EXPECT_EQ(error.kind, 2);
  EXPECT_EQ(error.code, 1);
  EXPECT_EQ(error.description, std::string("message: '") + thrown.what() + "' system code : 'generic:2'");
  EXPECT_EQ(error.type_name, typeid(std::system_error).name());
  EXPECT_EQ(error.message, "");
}

TEST(ErrorTest, AnExceptionDerivedFromSystemErrorNamesItsOwnType) {
  const Error error = ErrorOfThrown(OwnSystemError(EACCES, std::generic_category()));
  EXPECT_EQ(error.kind, 2);
  EXPECT_EQ(error.type_name, typeid(OwnSystemError).name());
}

TEST(ErrorTest, ANegativeSystemCodeKeepsItsSign) {
  const Error error = ErrorOfThrown(std::system_error(-7, std::generic_category()));
  EXPECT_NE(error.description.find("system code : 'generic:-7'"), std::string::npos) << error.description;
}

TEST(ErrorTest, ASystemCodeIsNotGroupedByTheHostsLocale) {
  std::locale::global(std::locale(std::locale::classic(), new GroupedDigits));
  const Error error = ErrorOfThrown(std::system_error(10022, std::generic_category()));
  EXPECT_NE(error.description.find("'generic:10022'"), std::string::npos) << error.description;
}

TEST(ErrorTest, AThrownStringIsTheDescription) {
  const Error error = ErrorOfThrown(std::string("no such drive"));
  EXPECT_EQ(error.kind, 5);
  EXPECT_EQ(error.code, static_cast<std::int64_t>(typeid(std::string).hash_code()));
  EXPECT_EQ(error.description, "no such drive");
}

TEST(ErrorTest, AThrownCTextIsTheDescription) {
  const Error error = ErrorOf([] { throw "no such drive"; });
  EXPECT_EQ(error.kind, 5);
  EXPECT_EQ(error.code, static_cast<std::int64_t>(typeid(const char*).hash_code()));
  EXPECT_EQ(error.description, "no such drive");
}

TEST(ErrorTest, AThrownWritableCTextIsTheDescription) {
  char text[] = "no such drive";
  const Error error = ErrorOf([&] { throw static_cast<char*>(text); });
  EXPECT_EQ(error.kind, 5);
  EXPECT_EQ(error.description, "no such drive");
}

TEST(ErrorTest, AThrownNullCTextIsAnEmptyDescription) {
  const Error error = ErrorOfThrown(static_cast<const char*>(nullptr));
  EXPECT_EQ(error.kind, 5);
  EXPECT_EQ(error.description, "");
}

TEST(ErrorTest, AThrownSystemCodeIsTheCodeWithoutText) {
  const Error error = ErrorOfThrown(1450UL);
  EXPECT_EQ(error.kind, 5);
  EXPECT_EQ(error.code, 1450);
  EXPECT_EQ(error.description, "");
  EXPECT_EQ(error.message, "");
}

TEST(ErrorTest, AThrownSystemCodeOfAllBitsIsNotNegative) {
  EXPECT_EQ(ErrorOfThrown(0xFFFFFFFFUL).code, 0xFFFFFFFFLL);
}

TEST(ErrorTest, OtherStandardExceptionsAreUnknown) {
  EXPECT_EQ(ErrorOfThrown(std::runtime_error("lost text")), kUnknown);
  EXPECT_EQ(ErrorOfThrown(std::out_of_range("lost text")), kUnknown);
  EXPECT_EQ(ErrorOfThrown(std::bad_alloc()), kUnknown);
}

TEST(ErrorTest, OtherTypesAreUnknown) {
  EXPECT_EQ(ErrorOfThrown(42), kUnknown);
  EXPECT_EQ(ErrorOfThrown(42U), kUnknown);
  EXPECT_EQ(ErrorOfThrown(4.2), kUnknown);
  EXPECT_EQ(ErrorOfThrown(std::wstring(L"wide")), kUnknown);
}

TEST(ErrorTest, AnExceptionThrownByItsAddressIsUnknownAndStaysItsOwners) {
  int alive = 0;
  {
    const auto owner = std::make_unique<CountedException>(alive);
    EXPECT_EQ(ErrorOf([&] { throw static_cast<std::exception*>(owner.get()); }), kUnknown);
    EXPECT_EQ(ErrorOf([&] { throw owner.get(); }), kUnknown);
    EXPECT_EQ(alive, 1);
  }
  EXPECT_EQ(alive, 0);
}

TEST(ErrorTest, AnExceptionThatIsNotOnTheHeapMayBeThrownByItsAddress) {
  static std::runtime_error failure("lost text");
  EXPECT_EQ(ErrorOf([] { throw static_cast<std::exception*>(&failure); }), kUnknown);
  EXPECT_STREQ(failure.what(), "lost text");
}

TEST(ErrorTest, ASystemErrorThrownByItsAddressIsUnknown) {
  std::system_error failure(1, std::generic_category());
  EXPECT_EQ(ErrorOf([&] { throw &failure; }), kUnknown);
}

TEST(ErrorTest, TheExceptionStaysTheOneBeingHandled) {
  try {
    throw std::string("still here");
  } catch (...) {
    EXPECT_EQ(Error::FromCurrentException(), Error::FromCurrentException());
    EXPECT_THROW(throw, std::string);
  }
}

}  // namespace
}  // namespace zt::telemetry::common
