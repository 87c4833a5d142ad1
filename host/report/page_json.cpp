#include "host/report/page_json.h"

#include <array>
#include <charconv>
#include <cmath>
#include <utility>

#include <nlohmann/json.hpp>

namespace zt::telemetry::host {
namespace {

constexpr std::array kEscapes = std::to_array<std::pair<std::string_view, std::string_view>>({
    {"<", "\\u003c"},
    {"\xE2\x80\xA8", "\\u2028"},
    {"\xE2\x80\xA9", "\\u2029"},
});

template <typename Number>
std::string NumberOf(Number number) {
  if (std::isnan(number)) return "\"NaN\"";
  if (std::isinf(number)) return number < 0 ? "\"-Infinity\"" : "\"Infinity\"";
  constexpr std::size_t kLongest = 32;
  std::array<char, kLongest> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), number).ptr;
  return {text.data(), end};
}

}  // namespace

std::string PageText(std::string_view text) {
  std::string json =
      nlohmann::json(text).dump(-1, ' ', /*ensure_ascii=*/false, nlohmann::json::error_handler_t::replace);
  for (const auto& [plain, escaped] : kEscapes) {
    for (std::size_t at = json.find(plain); at != std::string::npos; at = json.find(plain, at + escaped.size())) {
      json.replace(at, plain.size(), escaped);
    }
  }
  return json;
}

std::string PageTexts(const std::vector<std::string>& texts) {
  std::string json;
  for (const std::string& text : texts) json.append(json.empty() ? "" : ",").append(PageText(text));
  return "[" + json + "]";
}

std::string PageNumber(double number) {
  return NumberOf(number);
}

std::string PageNumber(float number) {
  return NumberOf(number);
}

}  // namespace zt::telemetry::host
