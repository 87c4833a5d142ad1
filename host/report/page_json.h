#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zt::telemetry::host {

/// `text` as a JSON string that can stand in a script element of a page: without "<", and without the line ends of
/// Unicode. Bytes that are no UTF-8 become U+FFFD.
std::string PageText(std::string_view text);

/// A number as JSON, the shortest that is read as the same; a text ("NaN", "Infinity", "-Infinity") where JSON has
/// none.
std::string PageNumber(double number);
/// The same of a number that had no more digits than a float has.
std::string PageNumber(float number);

/// The texts as a JSON array that can stand in a script element of a page.
std::string PageTexts(const std::vector<std::string>& texts);

/// Numbers that repeat themselves are written once with their count: {"runs":[value,count,…]}, else {"values":[…]}.
/// Each value is JSON.
template <typename Values>
std::string PageValues(const Values& values) {
  std::string runs;
  std::string plain;
  std::size_t count = 0;
  for (auto value = values.begin(); value != values.end(); ++value) {
    plain.append(plain.empty() ? "" : ",").append(*value);
    ++count;
    if (const auto next = value + 1; next != values.end() && *next == *value) continue;
    runs.append(runs.empty() ? "" : ",").append(*value).append(",").append(std::to_string(count));
    count = 0;
  }
  return runs.size() < plain.size() ? R"({"runs":[)" + runs + "]}" : R"({"values":[)" + plain + "]}";
}

}  // namespace zt::telemetry::host
