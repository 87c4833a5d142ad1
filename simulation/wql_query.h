#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

/// What a WQL text says.
namespace zt::simulation::wql {

/// The right side of a comparison: a boolean, a number as it was written, or a text with its escapes resolved.
struct Number {
  std::string digits;
};
using Literal = std::variant<bool, Number, std::string>;

struct Comparison {
  std::string property;
  Literal literal;
};

/// A comparison, or terms of which all or any have to hold.
struct Condition {
  enum class Kind { kComparison, kAll, kAny };
  Kind kind = Kind::kAll;
  Comparison comparison;
  std::vector<Condition> terms;
};

struct Select {
  std::vector<std::string> properties;  // empty: all
  std::string class_name;
  Condition condition;  // all of no terms where the query has none
};

struct AssociatorsOf {
  std::string object;
  std::string result_class;  // empty: any
};

using Query = std::variant<Select, AssociatorsOf>;

/// Absent for a malformed text.
std::optional<Query> Parse(std::string_view text);

}  // namespace zt::simulation::wql
