#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "change_type_cases.h"

namespace zt::tests {

template <typename Wanted>
void ExpectConversion(const ChangeTypeCase& expected, const Wanted& untouched) {
  Wanted converted = untouched;
  // That of the machine: each gives its own for a `WmiValue`.
  EXPECT_EQ(ChangeType(expected.from, converted), expected.status);
  EXPECT_EQ(converted, expected.status == kSuccess ? std::get<Wanted>(expected.value) : untouched);
}

/// Checks the machine's `ChangeType` against each case; a failure names the case by its place in the list.
inline void ExpectConversions(const std::vector<ChangeTypeCase>& cases) {
  for (std::size_t i = 0; i < cases.size(); ++i) {
    SCOPED_TRACE("case " + std::to_string(i));
    switch (cases[i].wanted) {
      case WantedType::kBool:
        // Neither value is out of the question, so both start out.
        for (const bool untouched : {false, true}) ExpectConversion<bool>(cases[i], untouched);
        break;
      case WantedType::kUInt32:
        ExpectConversion<std::uint32_t>(cases[i], 7777);
        break;
      case WantedType::kUInt64:
        ExpectConversion<std::uint64_t>(cases[i], 7777);
        break;
      case WantedType::kFloat:
        ExpectConversion<float>(cases[i], 77.5F);
        break;
      case WantedType::kText:
        ExpectConversion<std::wstring>(cases[i], L"untouched");
        break;
    }
  }
}

}  // namespace zt::tests
