#include "simulated/number_text.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <system_error>

namespace zt::shared::wmi {
namespace {

// A position in a text from which characters are taken one by one.
class Cursor {
 public:
  explicit Cursor(std::string_view text) : rest_(text) {}

  bool AtEnd() const { return rest_.empty(); }

  bool Take(char wanted) {
    const bool found = !rest_.empty() && rest_.front() == wanted;
    if (found) rest_.remove_prefix(1);
    return found;
  }

  bool TakeLetter(char upper_case) { return Take(upper_case) || Take(static_cast<char>(upper_case - 'A' + 'a')); }

  // Takes a sign; true for one, which `negative` tells.
  bool TakeSign(bool& negative) {
    if (Take('+')) return true;
    const bool found = Take('-');
    if (found) negative = true;
    return found;
  }

  std::string_view TakeAll(std::string_view characters) {
    const std::string_view taken = rest_.substr(0, std::min(rest_.find_first_not_of(characters), rest_.size()));
    rest_.remove_prefix(taken.size());
    return taken;
  }

  void SkipBlanks() { TakeAll(" \t\n\v\f\r"); }

  std::string_view Rest() const { return rest_; }

 private:
  std::string_view rest_;
};

constexpr std::string_view kDigits = "0123456789";
// Any exponent beyond it makes the number 0 or too large, whatever its digits are.
constexpr std::int64_t kLargestExponent = 100'000;

void DropLeadingZeros(std::string& digits) {
  digits.erase(0, digits.find_first_not_of('0'));
}

std::optional<DecimalNumber> ReadBased(Cursor cursor) {
  const bool hexadecimal = cursor.TakeLetter('H');
  if (!hexadecimal && !cursor.TakeLetter('O')) return std::nullopt;
  const std::string_view digits = cursor.Rest().substr(0, cursor.Rest().find_last_not_of(" \t\n\v\f\r") + 1);
  std::uint64_t value = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, hexadecimal ? 16 : 8);
  if (error != std::errc{} || end != digits.data() + digits.size()) return std::nullopt;
  DecimalNumber number{false, std::to_string(value), 0};
  DropLeadingZeros(number.digits);
  return number;
}

bool ReadExponent(Cursor& cursor, DecimalNumber& number) {
  if (!cursor.TakeLetter('E')) return true;
  bool negative = false;
  cursor.TakeSign(negative);
  const std::string_view digits = cursor.TakeAll(kDigits);
  if (digits.empty()) return false;
  std::int64_t exponent = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), exponent);
  if (error != std::errc{} || exponent > kLargestExponent) exponent = kLargestExponent;
  number.exponent += negative ? -exponent : exponent;
  return true;
}

bool ReadDigits(Cursor& cursor, DecimalNumber& number) {
  number.digits = cursor.TakeAll(kDigits);
  if (!number.digits.empty()) {
    number.digits += cursor.TakeAll("0123456789,");
    std::erase(number.digits, ',');
  }
  if (cursor.Take('.')) {
    const std::string_view fraction = cursor.TakeAll(kDigits);
    number.digits += fraction;
    number.exponent = -static_cast<std::int64_t>(fraction.size());
  }
  return !number.digits.empty();
}

std::optional<DecimalNumber> ReadDecimal(Cursor cursor) {
  DecimalNumber number;
  const bool parenthesis = cursor.Take('(');
  const bool sign = !parenthesis && cursor.TakeSign(number.negative);
  cursor.SkipBlanks();
  if (!ReadDigits(cursor, number) || !ReadExponent(cursor, number)) return std::nullopt;
  cursor.SkipBlanks();
  if (parenthesis) {
    number.negative = true;
    if (!cursor.Take(')')) return std::nullopt;
  } else if (!sign) {
    cursor.TakeSign(number.negative);
  }
  cursor.SkipBlanks();
  if (!cursor.AtEnd()) return std::nullopt;
  DropLeadingZeros(number.digits);
  return number;
}

// Whether the digits after the first `kept` ones round the number up, halves to the even one.
bool RoundsUp(const std::string& digits, std::size_t kept) {
  if (digits[kept] != '5') return digits[kept] > '5';
  const bool exactly_half = digits.find_first_not_of('0', kept + 1) == std::string::npos;
  const bool odd = kept > 0 && (digits[kept - 1] - '0') % 2 != 0;
  return !exactly_half || odd;
}

}  // namespace

std::optional<DecimalNumber> ReadNumber(std::wstring_view text) {
  std::string narrow;
  for (const wchar_t character : text) {
    if (character <= 0 || character > 0x7F) return std::nullopt;
    narrow += static_cast<char>(character);
  }
  Cursor cursor(narrow);
  cursor.SkipBlanks();
  return cursor.Take('&') ? ReadBased(cursor) : ReadDecimal(cursor);
}

std::optional<std::uint64_t> ToUnsigned(const DecimalNumber& number) {
  constexpr std::int64_t kMostDigits = 20;
  const std::int64_t places = static_cast<std::int64_t>(number.digits.size()) + number.exponent;
  if (number.digits.empty() || places < 0) return 0;
  if (places > kMostDigits) return std::nullopt;
  const auto kept = static_cast<std::size_t>(places);
  std::string whole = number.digits.substr(0, kept);
  whole.resize(kept, '0');
  std::uint64_t value = 0;
  const auto [end, error] = std::from_chars(whole.data(), whole.data() + whole.size(), value);
  if (!whole.empty() && error != std::errc{}) return std::nullopt;
  if (kept < number.digits.size() && RoundsUp(number.digits, kept)) {
    if (++value == 0) return std::nullopt;
  }
  if (number.negative && value != 0) return std::nullopt;
  return value;
}

std::optional<double> ToDouble(const DecimalNumber& number) {
  if (number.digits.empty()) return number.negative ? -0.0 : 0.0;
  const std::string text = (number.negative ? "-" : "") + number.digits + "e" + std::to_string(number.exponent);
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error == std::errc{}) return value;
  const bool too_small = static_cast<std::int64_t>(number.digits.size()) + number.exponent < 0;
  return too_small ? std::optional(0.0) : std::nullopt;
}

}  // namespace zt::shared::wmi
