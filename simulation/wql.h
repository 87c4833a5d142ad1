#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "simulation/machine.h"

namespace zt::simulation {

/// Name of the property that every row has: the class it belongs to.
inline constexpr const char* kClassProperty = "__Class";

struct WqlResult {
  std::int32_t status = 0;  // HRESULT
  std::vector<WmiRow> rows;
};

/// Runs a WQL query (UTF-8) on the current machine's tables and records its text.
///
/// Knows `SELECT properties|* FROM class [WHERE condition]`, where a condition is made of `property = literal`, `AND`,
/// `OR` and parentheses (at most 64 in one another), and `ASSOCIATORS OF {object} [WHERE ResultClass = class]`. Any
/// other text is a malformed query (0x80041017). Each row holds the selected properties that the machine's row has,
/// under the machine's spelling, and
/// `__Class`.
ZT_SIMULATION_EXPORT WqlResult RunQuery(const std::string& wql);

/// The property `name` of a row, letter case ignored; null when the row has none.
ZT_SIMULATION_EXPORT const WmiProperty* FindProperty(const WmiRow& row, std::string_view name);

}  // namespace zt::simulation
