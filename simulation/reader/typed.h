#pragma once

#include <concepts>
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "simulation/machine.h"
#include "simulation/reader/value.h"

/// `Read(value, target)`: one overload for each kind of fact. A value of another kind or out of range is a
/// `ProfileError`. The overloads for the machine's parts stand in the files named after the profile's keys; all are
/// found through the namespace of `Value`.
namespace zt::simulation::reader {

void Read(const Value& value, bool& target);
void Read(const Value& value, std::string& target);
void Read(const Value& value, float& target);
void Read(const Value& value, double& target);
void Read(const Value& value, Failure& target);

/// An integer from `lowest` to `highest`.
template <std::integral Integer>
void ReadInteger(const Value& value, Integer lowest, Integer highest, Integer& target) {
  const Json& json = value.ToJson();
  const auto fits = [&](auto integer) {
    return std::cmp_less_equal(lowest, integer) && std::cmp_less_equal(integer, highest);
  };
  const bool is_unsigned = json.is_number_unsigned();
  if (!json.is_number_integer() || !(is_unsigned ? fits(json.get<std::uint64_t>()) : fits(json.get<std::int64_t>()))) {
    value.FailExpecting("an integer from " + std::to_string(lowest) + " to " + std::to_string(highest));
  }
  target = json.get<Integer>();
}

template <std::integral Integer>
void Read(const Value& value, Integer& target) {
  using Limits = std::numeric_limits<Integer>;
  ReadInteger(value, Limits::min(), Limits::max(), target);
}

template <typename T>
void Read(const Value& value, std::vector<T>& target) {
  for (const Value& element : value.Elements()) Read(element, target.emplace_back());
}

template <typename T>
void Read(const Value& value, std::optional<T>& target) {
  Read(value, target.emplace());
}

/// A plain value, or {"fails": status} in its place.
template <typename T>
void Read(const Value& value, std::variant<T, Failure>& target) {
  if (value.IsObjectWith("fails")) {
    Read(value, target.template emplace<Failure>());
  } else {
    Read(value.Or(R"({"fails": status})"), target.template emplace<T>());
  }
}

/// A status, negative or unsigned, as a 32-bit pattern.
void ReadStatus(const Value& value, std::int32_t& target);
void ReadStatus(const Value& value, std::uint32_t& target);

using Reader = std::function<void(const Value&)>;

/// What reads a value into `target`.
template <typename T>
Reader To(T& target) {
  return [&target](const Value& value) { Read(value, target); };
}

template <typename T>
Reader ToStatus(T& target) {
  return [&target](const Value& value) { ReadStatus(value, target); };
}

}  // namespace zt::simulation::reader
