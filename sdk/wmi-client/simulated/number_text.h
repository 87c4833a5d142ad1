#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Numbers written as text, read as the system's automation library reads them in an English locale.
namespace zt::shared::wmi {

/// A decimal number: `digits` (no leading zero; empty for 0) times ten to the power `exponent`.
struct DecimalNumber {
  bool negative = false;
  std::string digits;
  std::int64_t exponent = 0;
};

/// Reads blanks, a sign before or after the digits or parentheses for a negative number, digits with "," between
/// thousands (anywhere, in fact) and a ".", an exponent; or "&H" and hexadecimal, "&O" and octal digits of at most 64
/// bits. Absent for any other text, also for one of blanks alone.
std::optional<DecimalNumber> ReadNumber(std::wstring_view text);

/// The nearest integer, halves to the even one; absent when it is negative or does not fit.
std::optional<std::uint64_t> ToUnsigned(const DecimalNumber& number);

/// The nearest double; absent when it is too large for one. What is too small for one is 0.
std::optional<double> ToDouble(const DecimalNumber& number);

}  // namespace zt::shared::wmi
