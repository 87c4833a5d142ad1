#pragma once

#include <optional>
#include <variant>

#include "simulation/machine.h"

namespace zt::simulation {

/// The value of an answer; absent for a failure.
template <typename T>
std::optional<T> Given(const Answer<T>& answer) {
  const T* const value = std::get_if<T>(&answer);
  return value != nullptr ? std::optional(*value) : std::nullopt;
}

/// The value of an answer; absent for a failure, and where none is stated.
template <typename T>
std::optional<T> Given(const OptionalAnswer<T>& answer) {
  return answer ? Given(*answer) : std::nullopt;
}

}  // namespace zt::simulation
