#pragma once

#include <optional>
#include <string>
#include <vector>

namespace zt::tests {

/// Runs NVIDIA's query tool, which comes with the driver, for `fields` (as its option --query-gpu names them). One row
/// for each card, one text for each field; absent when the tool is missing or fails.
std::optional<std::vector<std::vector<std::string>>> QueryCards(const std::string& fields);

}  // namespace zt::tests
