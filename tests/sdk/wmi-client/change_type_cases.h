#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "sdk/wmi-client/simulated/wmi_value.h"
#include "zt/shared/wmi/wmi_status.h"

/// What `ChangeType` makes of a value, as data: the simulated definition and the system's own have to agree on it. In
/// an English locale.
namespace zt::tests {

using shared::wmi::kOverflow;
using shared::wmi::kSuccess;
using shared::wmi::kTypeMismatch;
using shared::wmi::Null;
using shared::wmi::WmiValue;

enum class WantedType { kBool, kUInt32, kUInt64, kFloat, kText };

struct ChangeTypeCase {
  WmiValue from;
  WantedType wanted = WantedType::kBool;
  std::int32_t status = kSuccess;
  WmiValue value = {};  // on success
};

/// A conversion that succeeds: the type of `value` is the wanted one.
inline ChangeTypeCase Gives(const WmiValue& from, const WmiValue& value) {
  const bool is_bool = std::holds_alternative<bool>(value);
  const bool is_uint32 = std::holds_alternative<std::uint32_t>(value);
  const bool is_uint64 = std::holds_alternative<std::uint64_t>(value);
  const bool is_float = std::holds_alternative<float>(value);
  const WantedType wanted = is_bool     ? WantedType::kBool
                            : is_uint32 ? WantedType::kUInt32
                            : is_uint64 ? WantedType::kUInt64
                            : is_float  ? WantedType::kFloat
                                        : WantedType::kText;
  return {from, wanted, kSuccess, value};
}

inline ChangeTypeCase Fails(const WmiValue& from, WantedType wanted, std::int32_t status) {
  return {from, wanted, status, {}};
}

namespace change_type {

inline WmiValue Int(std::int32_t value) {
  return value;
}
inline WmiValue UInt(std::uint32_t value) {
  return value;
}
inline WmiValue UInt64(std::uint64_t value) {
  return value;
}
inline WmiValue Float(float value) {
  return value;
}
inline WmiValue Double(double value) {
  return value;
}
inline WmiValue Text(const wchar_t* value) {
  return std::wstring(value);
}

inline constexpr std::uint32_t kAll32 = std::numeric_limits<std::uint32_t>::max();
inline constexpr std::uint64_t kAll64 = std::numeric_limits<std::uint64_t>::max();
inline constexpr std::int32_t kLowest32 = std::numeric_limits<std::int32_t>::min();
inline constexpr float kLargestFloat = std::numeric_limits<float>::max();

inline std::vector<ChangeTypeCase> NothingCases() {
  const WmiValue empty;
  const WmiValue null = Null{};
  return {Gives(empty, false),
          Gives(empty, UInt(0)),
          Gives(empty, UInt64(0)),
          Gives(empty, Float(0)),
          Gives(empty, Text(L"")),
          Fails(null, WantedType::kBool, kTypeMismatch),
          Fails(null, WantedType::kUInt32, kTypeMismatch),
          Fails(null, WantedType::kUInt64, kTypeMismatch),
          Fails(null, WantedType::kFloat, kTypeMismatch),
          Fails(null, WantedType::kText, kTypeMismatch)};
}

inline std::vector<ChangeTypeCase> BooleanCases() {
  return {Gives(true, true),        Gives(true, UInt(kAll32)), Gives(true, UInt64(kAll64)), Gives(true, Float(-1)),
          Gives(true, Text(L"-1")), Gives(false, false),       Gives(false, UInt(0)),       Gives(false, UInt64(0)),
          Gives(false, Float(0)),   Gives(false, Text(L"0"))};
}

inline std::vector<ChangeTypeCase> IntegerCases() {
  return {Gives(Int(0), false),
          Gives(Int(1), true),
          Gives(Int(-1), true),
          Gives(Int(1), UInt(1)),
          Gives(Int(-1), UInt(kAll32)),
          Gives(Int(kLowest32), UInt(0x80000000)),
          Gives(Int(2147483647), UInt64(2147483647)),
          Fails(Int(-1), WantedType::kUInt64, kOverflow),
          Fails(Int(kLowest32), WantedType::kUInt64, kOverflow),
          Gives(Int(-1), Float(-1)),
          Gives(Int(16777217), Float(16777216)),
          Gives(Int(16777219), Float(16777220)),
          Gives(Int(-1), Text(L"-1")),
          Gives(Int(kLowest32), Text(L"-2147483648")),
          Gives(UInt(kAll32), true),
          Gives(UInt(kAll32), UInt(kAll32)),
          Gives(UInt(kAll32), UInt64(kAll32)),
          Gives(UInt(kAll32), Float(4294967296.0F)),
          Gives(UInt(kAll32), Text(L"4294967295")),
          Gives(UInt64(0), false),
          Gives(UInt64(kAll64), true),
          Gives(UInt64(kAll32), UInt(kAll32)),
          Fails(UInt64(4294967296), WantedType::kUInt32, kOverflow),
          Gives(UInt64(kAll64), UInt64(kAll64)),
          Gives(UInt64(kAll64), Float(18446744073709551616.0F)),
          Gives(UInt64(kAll64), Text(L"18446744073709551615"))};
}

inline std::vector<ChangeTypeCase> RealToNumberCases() {
  const double infinity = std::numeric_limits<double>::infinity();
  return {Gives(Double(0), false),
          Gives(Double(-0.25), true),
          Gives(Float(0.5F), true),
          Gives(Double(0.5), UInt(0)),
          Gives(Double(1.5), UInt(2)),
          Gives(Double(2.5), UInt(2)),
          Gives(Float(2.5F), UInt64(2)),
          Gives(Double(99.5), UInt64(100)),
          Gives(Double(-0.5), UInt(0)),
          Gives(Double(-0.25), UInt64(0)),
          Fails(Double(-0.50001), WantedType::kUInt32, kOverflow),
          Fails(Float(-0.75F), WantedType::kUInt64, kOverflow),
          Gives(Double(4294967295.49), UInt(kAll32)),
          Fails(Double(4294967295.5), WantedType::kUInt32, kOverflow),
          Gives(Double(4294967295.5), UInt64(4294967296)),
          Gives(Double(18446744073709549568.0), UInt64(18446744073709549568U)),
          Fails(Double(18446744073709551616.0), WantedType::kUInt64, kOverflow),
          Fails(Double(infinity), WantedType::kUInt64, kOverflow),
          Gives(Double(0.1), Float(0.1F)),
          Gives(Double(1e-300), Float(0)),
          Gives(Double(3.4028235e38), Float(kLargestFloat)),
          Fails(Double(0x1.ffffffp127), WantedType::kFloat, kOverflow),
          Fails(Double(-1e300), WantedType::kFloat, kOverflow),
          Fails(Double(infinity), WantedType::kFloat, kOverflow),
          Gives(Float(75.405F), Float(75.405F))};
}

inline std::vector<ChangeTypeCase> RealToTextCases() {
  return {Gives(Double(0), Text(L"0")),
          Gives(Double(-0.0), Text(L"0")),
          Gives(Double(-2.5), Text(L"-2.5")),
          Gives(Double(123456.789), Text(L"123456.789")),
          Gives(Double(1.0 / 3), Text(L"0.333333333333333")),
          Gives(Double(0.1 + 0.2), Text(L"0.3")),
          Gives(Double(123456789012345.0), Text(L"123456789012345")),
          Gives(Double(1e15), Text(L"1E+15")),
          Gives(Double(0.0001), Text(L"0.0001")),
          Gives(Double(1e300), Text(L"1E+300")),
          Gives(Float(75.405F), Text(L"75.405")),
          Gives(Float(123456.7F), Text(L"123456.7")),
          Gives(Float(1234567), Text(L"1234567")),
          Gives(Float(12345678), Text(L"1.234568E+07"))};
}

// Written without an exponent as long as the digits after the point are no more than the type has significant ones.
inline std::vector<ChangeTypeCase> SmallRealToTextCases() {
  return {Gives(Double(1e-5), Text(L"0.00001")),
          Gives(Double(-1e-5), Text(L"-0.00001")),
          Gives(Double(1e-11), Text(L"0.00000000001")),
          Gives(Double(1e-14), Text(L"0.00000000000001")),
          Gives(Double(1e-15), Text(L"1E-15")),
          Gives(Double(1.5e-14), Text(L"0.000000000000015")),
          Gives(Double(1.25e-14), Text(L"1.25E-14")),
          Gives(Double(1.23456789e-7), Text(L"0.000000123456789")),
          Gives(Double(1.23456789e-8), Text(L"1.23456789E-08")),
          Gives(Double(1.23456789012345e-4), Text(L"0.000123456789012345")),
          Gives(Double(1.23456789012345e-5), Text(L"1.23456789012345E-05")),
          Gives(Float(1e-6F), Text(L"0.000001")),
          Gives(Float(1.5e-6F), Text(L"0.0000015")),
          Gives(Float(1.25e-6F), Text(L"1.25E-06")),
          Gives(Float(1e-7F), Text(L"1E-07")),
          Gives(Float(1.234567e-4F), Text(L"0.0001234567"))};
}

inline std::vector<ChangeTypeCase> TextToBooleanCases() {
  return {Gives(Text(L"true"), true),
          Gives(Text(L"TRUE"), true),
          Gives(Text(L"False"), false),
          Gives(Text(L"#TRUE#"), true),
          Gives(Text(L"#FALSE#"), false),
          Gives(Text(L"0"), false),
          Gives(Text(L"-0.4"), true),
          Gives(Text(L"1e-400"), false),
          Fails(Text(L"1e309"), WantedType::kBool, kOverflow),
          Fails(Text(L"yes"), WantedType::kBool, kTypeMismatch),
          Fails(Text(L""), WantedType::kBool, kTypeMismatch)};
}

inline std::vector<ChangeTypeCase> TextToIntegerCases() {
  return {Gives(Text(L"00012"), UInt(12)),
          Gives(Text(L"\t 12 \n"), UInt(12)),
          Gives(Text(L"+5"), UInt64(5)),
          Gives(Text(L"5+"), UInt64(5)),
          Gives(Text(L"1,234"), UInt(1234)),
          Gives(Text(L"1,2,3.4"), UInt(123)),
          Gives(Text(L"5."), UInt(5)),
          Gives(Text(L".5"), UInt(0)),
          Gives(Text(L"1.5"), UInt(2)),
          Gives(Text(L"2.5"), UInt64(2)),
          Gives(Text(L"1.4999999"), UInt(1)),
          Gives(Text(L"-0.5"), UInt(0)),
          Gives(Text(L"1E3"), UInt(1000)),
          Gives(Text(L"15e-1"), UInt(2)),
          Gives(Text(L"1e-400"), UInt(0)),
          Gives(Text(L"&H10"), UInt(16)),
          Gives(Text(L"&hFFFFFFFF"), UInt(kAll32)),
          Gives(Text(L"&O17"), UInt64(15)),
          Gives(Text(L"4294967295"), UInt(kAll32)),
          Gives(Text(L"4294967295.4"), UInt(kAll32)),
          Fails(Text(L"4294967295.5"), WantedType::kUInt32, kOverflow),
          Fails(Text(L"4294967296"), WantedType::kUInt32, kOverflow),
          Gives(Text(L"17179869184"), UInt64(17179869184)),
          Gives(Text(L"18446744073709551615"), UInt64(kAll64)),
          Gives(Text(L"18446744073709551615.4"), UInt64(kAll64)),
          Fails(Text(L"18446744073709551616"), WantedType::kUInt64, kOverflow),
          Fails(Text(L"99999999999999999999999999999"), WantedType::kUInt64, kOverflow),
          Fails(Text(L"1e309"), WantedType::kUInt32, kOverflow),
          Fails(Text(L"-1"), WantedType::kUInt32, kOverflow),
          Fails(Text(L"5-"), WantedType::kUInt64, kOverflow),
          Fails(Text(L"(5)"), WantedType::kUInt32, kOverflow),
          Fails(Text(L"-0.6"), WantedType::kUInt64, kOverflow)};
}

inline std::vector<ChangeTypeCase> TextThatIsNoNumberCases() {
  std::vector<ChangeTypeCase> cases;
  for (const wchar_t* text : {L"", L" ", L".", L"abc", L"12abc", L"1 2", L"1.5.5", L"--5", L"e5", L"5e", L"0x10",
                              L"1d3", L"true", L"NaN", L"inf", L"5%", L"20260307142042.000000-180"}) {
    cases.push_back(Fails(Text(text), WantedType::kUInt32, kTypeMismatch));
    cases.push_back(Fails(Text(text), WantedType::kUInt64, kTypeMismatch));
    cases.push_back(Fails(Text(text), WantedType::kFloat, kTypeMismatch));
  }
  return cases;
}

inline std::vector<ChangeTypeCase> TextToFloatAndTextCases() {
  return {Gives(Text(L"75.405"), Float(75.405F)),
          Gives(Text(L" -5 "), Float(-5)),
          Gives(Text(L"5-"), Float(-5)),
          Gives(Text(L"(5)"), Float(-5)),
          Gives(Text(L"1e3"), Float(1000)),
          Gives(Text(L"1e-400"), Float(0)),
          Gives(Text(L"0.333333333333333333333333"), Float(1.0F / 3)),
          Gives(Text(L"18446744073709551615"), Float(18446744073709551616.0F)),
          Fails(Text(L"1e39"), WantedType::kFloat, kOverflow),
          Fails(Text(L"1e309"), WantedType::kFloat, kOverflow),
          Gives(Text(L""), Text(L"")),
          Gives(Text(L" 1 "), Text(L" 1 "))};
}

}  // namespace change_type
}  // namespace zt::tests
