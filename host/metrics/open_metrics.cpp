#include "host/metrics/open_metrics.h"

#include <utf8.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <iterator>
#include <limits>

namespace zt::telemetry::host {
namespace {

constexpr char kPrefix[] = "zt";
constexpr char kEntryLabel[] = "entry";
constexpr char kReplacement[] = "\xEF\xBF\xBD";  // U+FFFD

std::string ValidUtf8(const std::string& text) {
  std::string valid;
  utf8::replace_invalid(text.begin(), text.end(), std::back_inserter(valid));
  return valid;
}

// A NUL ends the text for readers that are written in C.
std::string LabelValue(const std::string& text) {
  std::string value;
  for (const char character : ValidUtf8(text)) {
    switch (character) {
      case '\\':
        value += "\\\\";
        break;
      case '"':
        value += "\\\"";
        break;
      case '\n':
        value += "\\n";
        break;
      case '\0':
        value += kReplacement;
        break;
      default:
        value += character;
    }
  }
  return value;
}

// The older form knows no escaped quotes in a help, OpenMetrics no plain ones.
std::string HelpText(const std::string& text) {
  std::string help;
  for (const char character : ValidUtf8(text)) {
    switch (character) {
      case '\\':
        help += "\\\\";
        break;
      case '"':
        help += '\'';
        break;
      case '\n':
        help += "\\n";
        break;
      default:
        help += character;
    }
  }
  return help;
}

std::string LabelsText(const Labels& labels) {
  std::string text;
  for (const auto& [name, value] : labels) {
    text.append(text.empty() ? "{" : ",").append(name).append("=\"").append(LabelValue(value)).append("\"");
  }
  return text.empty() ? text : text + "}";
}

// With the digits that a decimal of a double keeps: 33.24 % is 0.3324, and not 0.33240000000000003.
std::string ValueText(double value) {
  if (std::isnan(value)) return "NaN";
  if (std::isinf(value)) return value > 0 ? "+Inf" : "-Inf";
  constexpr int kDigits = std::numeric_limits<double>::digits10;
  constexpr std::size_t kLongest = 32;
  std::array<char, kLongest> text{};
  const auto written =
      std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::general, kDigits);
  return {text.data(), written.ptr};
}

bool IsWordCharacter(char character) {
  return (character >= 'a' && character <= 'z') || (character >= '0' && character <= '9');
}

char InLowerCase(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

}  // namespace

void OpenMetrics::Add(const MetricFamily& family, Labels labels, double value) {
  const auto [place, is_new] = places_.emplace(family.name, families_.size());
  if (is_new) families_.push_back({family, {}, {}});
  Family& known = families_[place->second];
  const std::size_t entry = ++known.entries[labels];
  if (entry > 1) labels.emplace_back(kEntryLabel, std::to_string(entry));
  known.samples.push_back(family.name + LabelsText(labels) + " " + ValueText(value) + "\n");
}

std::string OpenMetrics::Text() const {
  std::string text;
  for (const Family& family : families_) {
    const std::string& name = family.family.name;
    text.append("# HELP ").append(name).append(" ").append(HelpText(family.family.help)).append("\n");
    text.append("# TYPE ").append(name).append(" gauge\n");
    if (!family.family.unit.empty()) {
      text.append("# UNIT ").append(name).append(" ").append(family.family.unit).append("\n");
    }
    for (const std::string& sample : family.samples) text += sample;
  }
  return text + "# EOF\n";
}

std::string MetricWord(std::string_view text) {
  std::string word;
  for (const char character : text) {
    const char lower = InLowerCase(character);
    if (IsWordCharacter(lower)) {
      word += lower;
    } else if (!word.empty() && word.back() != '_') {
      word += '_';
    }
  }
  if (word.ends_with('_')) word.pop_back();
  return word;
}

std::string MetricName(const std::vector<std::string_view>& words) {
  std::string name = kPrefix;
  for (const std::string_view word : words) {
    if (const std::string part = MetricWord(word); !part.empty()) name.append("_").append(part);
  }
  return name;
}

}  // namespace zt::telemetry::host
