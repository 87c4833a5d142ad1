#pragma once

#include <algorithm>
#include <charconv>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "host/utc_time.h"

/// What the values of options may be; each check says what was expected and what was given instead.
namespace zt::telemetry::host {

/// The values that an option takes by name.
template <typename T>
using Choices = std::vector<std::pair<std::string_view, T>>;

/// The value of a choice, null when there is none of this name.
template <typename T>
const T* Find(const Choices<T>& choices, std::string_view name) {
  const auto found =
      std::find_if(choices.begin(), choices.end(), [name](const auto& choice) { return choice.first == name; });
  return found != choices.end() ? &found->second : nullptr;
}

/// The names of `choices`, joined by `separator`.
template <typename T>
std::string Names(const Choices<T>& choices, std::string_view separator) {
  std::string names;
  for (const auto& choice : choices) names.append(names.empty() ? "" : separator).append(choice.first);
  return names;
}

/// One of the names of `choices`, which must outlive the check. The check's own name is these names, joined by "|": for
/// the shells' completion.
template <typename T>
CLI::Validator OneOf(const Choices<T>& choices) {
  const auto check = [&choices](std::string& text) -> std::string {
    if (Find(choices, text) != nullptr) return {};
    return "expected one of " + Names(choices, ", ") + ", but got \"" + text + "\"";
  };
  return CLI::Validator(check, "", Names(choices, "|"));
}

/// A whole number of type T, all of the text, between the limits. To be used as a transformation: the text becomes the
/// number in decimal without leading zeros, which the library would take for another number base.
template <typename T>
CLI::Validator WholeNumber(T least, T greatest) {
  const auto check = [least, greatest](std::string& text) -> std::string {
    T value{};
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error == std::errc() && stop == end && value >= least && value <= greatest) {
      text = std::to_string(value);
      return {};
    }
    return "expected a whole number from " + std::to_string(least) + " to " + std::to_string(greatest) +
           ", but got \"" + text + "\"";
  };
  return CLI::Validator(check, "");
}

/// A name of something. An option in its place is a value that was forgotten.
inline CLI::Validator Name() {
  return CLI::Validator(
      [](std::string& text) {
        if (!text.empty() && !text.starts_with("--")) return std::string();
        return "expected a name, but got " + (text.empty() ? "an empty text" : "the option " + text);
      },
      "");
}

/// A time that `ParseUtcTime` reads; `clock` tells whose time it is.
inline CLI::Validator TimeText(const std::string& clock) {
  return CLI::Validator(
      [clock](std::string& text) {
        if (ParseUtcTime(text).has_value()) return std::string();
        return "expected a time " + clock + " such as 2026-03-07T14:00:00, but got \"" + text + "\"";
      },
      "");
}

/// A time that `ParseUtcTime` reads.
inline CLI::Validator UtcTimeText() {
  return CLI::Validator(
      [](std::string& text) {
        if (ParseUtcTime(text).has_value()) return std::string();
        return "expected a time in UTC such as 2026-03-07T14:00:00Z, but got \"" + text + "\"";
      },
      "");
}

}  // namespace zt::telemetry::host
