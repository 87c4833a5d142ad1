#include "simulated/change_type.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>

#include "simulated/number_text.h"
#include "zt/shared/wmi/wmi_status.h"

// The conversions of the system's automation library, in an English locale.
namespace zt::shared::wmi {
namespace {

// What a conversion comes to: its value, or the status of its failure.
template <typename To>
using Converted = std::variant<To, std::int32_t>;

template <typename To>
Converted<To> Overflow() {
  return Converted<To>(std::in_place_index<1>, kOverflow);
}

template <typename To>
Converted<To> TypeMismatch() {
  return Converted<To>(std::in_place_index<1>, kTypeMismatch);
}

template <typename To>
Converted<To> Value(To value) {
  return Converted<To>(std::in_place_index<0>, std::move(value));
}

template <typename Unsigned>
constexpr bool kKeepsBits = std::is_same_v<Unsigned, std::uint32_t>;

// Automation's true is all bits set.
constexpr std::int32_t kTrue = -1;

template <typename Unsigned>
Converted<Unsigned> NarrowUnsigned(std::uint64_t value) {
  if (value > std::numeric_limits<Unsigned>::max()) return Overflow<Unsigned>();
  return Value(static_cast<Unsigned>(value));
}

// Halves to the even integer. The limits hold for the number before it is rounded, as the library has it. Not a number
// fits no integer.
template <typename Unsigned>
Converted<Unsigned> RoundToUnsigned(double value) {
  const double beyond = std::ldexp(1.0, std::numeric_limits<Unsigned>::digits);
  if (!(value >= -0.5 && value < beyond - 0.5)) return Overflow<Unsigned>();
  const double whole = std::floor(value);
  const double rest = value - whole;
  const bool up = rest > 0.5 || (rest == 0.5 && std::fmod(whole, 2.0) != 0);
  return Value(static_cast<Unsigned>(up ? whole + 1 : whole));
}

Converted<float> NarrowToFloat(double value) {
  constexpr double kFirstTooLarge = 0x1.ffffffp127;  // halfway between the largest float and the next power of two
  if (std::isinf(value) || std::fabs(value) >= kFirstTooLarge) return Overflow<float>();
  return Value(static_cast<float>(value));
}

constexpr std::size_t kLongestReal = 32;

std::wstring UpperCase(std::string_view text) {
  std::wstring result(text.begin(), text.end());
  for (wchar_t& character : result) {
    if (character >= L'a' && character <= L'z') character = static_cast<wchar_t>(character - L'a' + L'A');
  }
  return result;
}

// A number in scientific notation, in two parts.
struct Scientific {
  std::string significand;  // without zeros at its end
  int exponent = 0;
};

Scientific ToScientific(double value, int significant_digits) {
  char text[kLongestReal];
  const auto [end, error] =
      std::to_chars(text, text + kLongestReal, value, std::chars_format::scientific, significant_digits - 1);
  const std::string whole(text, end);
  const std::size_t letter = whole.find('e');
  Scientific result{whole.substr(0, letter), std::stoi(whole.substr(letter + 1))};
  if (result.significand.find('.') == std::string::npos) return result;
  result.significand.erase(result.significand.find_last_not_of('0') + 1);
  if (result.significand.back() == '.') result.significand.pop_back();
  return result;
}

int DigitsAfterPoint(const Scientific& number) {
  const std::size_t point = number.significand.find('.');
  const std::size_t fraction = point == std::string::npos ? 0 : number.significand.size() - point - 1;
  return static_cast<int>(fraction) - number.exponent;
}

// Numbers as small as printf's %G writes them are, and smaller ones as long as their digits are no more than those that
// are significant.
bool IsWrittenPlainly(const Scientific& number, int significant_digits) {
  constexpr int kSmallestPlain = -4;
  if (number.exponent >= significant_digits) return false;
  return number.exponent >= kSmallestPlain ||
         (number.exponent > -significant_digits && DigitsAfterPoint(number) <= significant_digits);
}

template <typename Real>
std::wstring RealAsText(Real value) {
  constexpr int kSignificantDigits = std::is_same_v<Real, float> ? 7 : 15;
  if (value == 0) return L"0";
  char text[kLongestReal];
  if (!std::isfinite(value)) {
    const auto [end, error] = std::to_chars(text, text + kLongestReal, value);
    return UpperCase({text, end});
  }
  const Scientific number = ToScientific(value, kSignificantDigits);
  const bool plain = IsWrittenPlainly(number, kSignificantDigits);
  const auto [end, error] = plain ? std::to_chars(text, text + kLongestReal, value, std::chars_format::fixed,
                                                  std::max(DigitsAfterPoint(number), 0))
                                  : std::to_chars(text, text + kLongestReal, value, std::chars_format::scientific,
                                                  DigitsAfterPoint(number) + number.exponent);
  return UpperCase({text, end});
}

bool EqualIgnoringCase(std::wstring_view left, std::wstring_view upper_case) {
  if (left.size() != upper_case.size()) return false;
  for (std::size_t i = 0; i < left.size(); ++i) {
    const wchar_t letter = left[i] >= L'a' && left[i] <= L'z' ? static_cast<wchar_t>(left[i] - L'a' + L'A') : left[i];
    if (letter != upper_case[i]) return false;
  }
  return true;
}

struct ToBool {
  using Result = bool;
  static Converted<bool> From(bool value) { return Value(value); }
  template <typename Number>
  requires std::is_arithmetic_v<Number>
  static Converted<bool> From(Number value) { return Value(value != 0); }
  static Converted<bool> From(const std::wstring& text) {
    if (EqualIgnoringCase(text, L"TRUE") || text == L"#TRUE#") return Value(true);
    if (EqualIgnoringCase(text, L"FALSE") || text == L"#FALSE#") return Value(false);
    const std::optional<DecimalNumber> number = ReadNumber(text);
    if (!number) return TypeMismatch<bool>();
    const std::optional<double> value = ToDouble(*number);
    return value ? Value(*value != 0) : Overflow<bool>();
  }
};

template <typename Unsigned>
struct ToUnsignedInteger {
  using Result = Unsigned;
  static Converted<Unsigned> From(bool value) { return Value(value ? static_cast<Unsigned>(kTrue) : Unsigned{0}); }
  static Converted<Unsigned> From(std::int32_t value) {
    if (value < 0 && !kKeepsBits<Unsigned>) return Overflow<Unsigned>();
    return Value(static_cast<Unsigned>(value));
  }
  static Converted<Unsigned> From(std::uint32_t value) { return NarrowUnsigned<Unsigned>(value); }
  static Converted<Unsigned> From(std::uint64_t value) { return NarrowUnsigned<Unsigned>(value); }
  static Converted<Unsigned> From(float value) { return RoundToUnsigned<Unsigned>(value); }
  static Converted<Unsigned> From(double value) { return RoundToUnsigned<Unsigned>(value); }
  static Converted<Unsigned> From(const std::wstring& text) {
    const std::optional<DecimalNumber> number = ReadNumber(text);
    if (!number) return TypeMismatch<Unsigned>();
    const std::optional<std::uint64_t> value = ToUnsigned(*number);
    return value ? NarrowUnsigned<Unsigned>(*value) : Overflow<Unsigned>();
  }
};

struct ToFloat {
  using Result = float;
  static Converted<float> From(bool value) { return Value(value ? static_cast<float>(kTrue) : 0.0F); }
  static Converted<float> From(float value) { return Value(value); }
  static Converted<float> From(double value) { return NarrowToFloat(value); }
  template <typename Integer>
  requires std::is_integral_v<Integer>
  static Converted<float> From(Integer value) { return Value(static_cast<float>(value)); }
  static Converted<float> From(const std::wstring& text) {
    const std::optional<DecimalNumber> number = ReadNumber(text);
    if (!number) return TypeMismatch<float>();
    const std::optional<double> value = ToDouble(*number);
    return value ? NarrowToFloat(*value) : Overflow<float>();
  }
};

struct ToText {
  using Result = std::wstring;
  static Converted<std::wstring> From(bool value) { return Value(std::to_wstring(value ? kTrue : 0)); }
  static Converted<std::wstring> From(float value) { return Value(RealAsText(value)); }
  static Converted<std::wstring> From(double value) { return Value(RealAsText(value)); }
  template <typename Integer>
  requires std::is_integral_v<Integer>
  static Converted<std::wstring> From(Integer value) { return Value(std::to_wstring(value)); }
  static Converted<std::wstring> From(const std::wstring& text) { return Value(text); }
};

template <typename Conversion>
std::int32_t Convert(const WmiValue& from, typename Conversion::Result& to) {
  using Result = typename Conversion::Result;
  Converted<Result> converted = std::visit(
      [](const auto& value) -> Converted<Result> {
        using From = std::decay_t<decltype(value)>;
        if constexpr (std::is_same_v<From, std::monostate>) {
          return Value(Result{});
        } else if constexpr (std::is_same_v<From, Null>) {
          return TypeMismatch<Result>();
        } else {
          return Conversion::From(value);
        }
      },
      from);
  if (converted.index() == 1) return std::get<1>(converted);
  to = std::get<0>(std::move(converted));
  return kSuccess;
}

}  // namespace

std::int32_t ChangeType(const WmiValue& from, bool& to) {
  return Convert<ToBool>(from, to);
}

std::int32_t ChangeType(const WmiValue& from, std::uint32_t& to) {
  return Convert<ToUnsignedInteger<std::uint32_t>>(from, to);
}

std::int32_t ChangeType(const WmiValue& from, std::uint64_t& to) {
  return Convert<ToUnsignedInteger<std::uint64_t>>(from, to);
}

std::int32_t ChangeType(const WmiValue& from, float& to) {
  return Convert<ToFloat>(from, to);
}

std::int32_t ChangeType(const WmiValue& from, std::wstring& to) {
  return Convert<ToText>(from, to);
}

}  // namespace zt::shared::wmi
