#include "simulation/wql.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "simulation/query_log.h"
#include "simulation/text_comparison.h"
#include "simulation/wql_query.h"

namespace zt::simulation {
namespace {

constexpr auto kInvalidQuery = static_cast<std::int32_t>(0x80041017);  // WBEM_E_INVALID_QUERY

bool IsInteger(std::string_view text) {
  if (!text.empty() && text.front() == '-') text.remove_prefix(1);
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

// Integers compare digit by digit, since 64-bit ones do not fit a double.
bool EqualNumbers(std::string left, std::string right) {
  for (std::string* number : {&left, &right}) {
    if (number->front() == '+') number->erase(0, 1);
  }
  if (left == right) return true;
  if (IsInteger(left) && IsInteger(right)) {
    const auto digits = [](std::string_view number) {
      const std::size_t first = number.find_first_not_of("-0");
      return first == std::string_view::npos ? std::string_view{} : number.substr(first);
    };
    const bool same_sign = (left.front() == '-') == (right.front() == '-');
    return digits(left) == digits(right) && (same_sign || digits(left).empty());
  }
  return std::strtod(left.c_str(), nullptr) == std::strtod(right.c_str(), nullptr);
}

bool EqualsBoolean(const WmiProperty& property, bool literal) {
  const bool* const boolean = std::get_if<bool>(&property);
  return boolean != nullptr && *boolean == literal;
}

bool EqualsNumber(const WmiProperty& property, const std::string& digits) {
  if (const auto* integer = std::get_if<std::int32_t>(&property)) return EqualNumbers(std::to_string(*integer), digits);
  if (const auto* number = std::get_if<double>(&property)) return *number == std::strtod(digits.c_str(), nullptr);
  if (const auto* boolean = std::get_if<bool>(&property)) return EqualNumbers(*boolean ? "1" : "0", digits);
  const auto* const text = std::get_if<std::string>(&property);
  return text != nullptr && IsInteger(*text) && EqualNumbers(*text, digits);
}

bool EqualsText(const WmiProperty& property, const std::string& literal) {
  if (const auto* text = std::get_if<std::string>(&property)) return EqualIgnoringCase(*text, literal);
  const auto* const integer = std::get_if<std::int32_t>(&property);
  return integer != nullptr && std::to_string(*integer) == literal;
}

bool Holds(const wql::Comparison& comparison, const WmiRow& row) {
  const WmiProperty* const property = FindProperty(row, comparison.property);
  if (property == nullptr) return false;
  if (const auto* boolean = std::get_if<bool>(&comparison.literal)) return EqualsBoolean(*property, *boolean);
  if (const auto* number = std::get_if<wql::Number>(&comparison.literal))
    return EqualsNumber(*property, number->digits);
  return EqualsText(*property, std::get<std::string>(comparison.literal));
}

bool Holds(const wql::Condition& condition, const WmiRow& row) {
  const auto term_holds = [&row](const wql::Condition& term) { return Holds(term, row); };
  switch (condition.kind) {
    case wql::Condition::Kind::kComparison:
      return Holds(condition.comparison, row);
    case wql::Condition::Kind::kAll:
      return std::all_of(condition.terms.begin(), condition.terms.end(), term_holds);
    case wql::Condition::Kind::kAny:
      return std::any_of(condition.terms.begin(), condition.terms.end(), term_holds);
  }
  return false;
}

// Not as a variant: one of libstdc++ 12 that has a text goes astray where there is no memory for the copy.
WmiProperty CopyOf(const WmiProperty& property) {
  const auto* const text = std::get_if<std::string>(&property);
  return text != nullptr ? WmiProperty(std::string(*text)) : property;
}

WmiRow Project(const WmiRow& row, const std::vector<std::string>& selected, const std::string& class_name) {
  WmiRow result;
  for (const auto& property : row) {
    const bool wanted = selected.empty() || std::any_of(selected.begin(), selected.end(), [&](const auto& name) {
                          return EqualIgnoringCase(name, property.first);
                        });
    if (wanted) result.emplace(property.first, CopyOf(property.second));
  }
  result.insert_or_assign(kClassProperty, std::string(class_name));
  return result;
}

std::vector<WmiRow> RowsOf(const wql::Select& select) {
  std::vector<WmiRow> result;
  for (const auto& [class_name, rows] : CurrentMachine().wmi.classes) {
    if (!EqualIgnoringCase(class_name, select.class_name)) continue;
    for (const WmiRow& row : rows) {
      if (Holds(select.condition, row)) result.push_back(Project(row, select.properties, class_name));
    }
  }
  return result;
}

std::vector<WmiRow> RowsOf(const wql::AssociatorsOf& associators) {
  std::vector<WmiRow> result;
  for (const WmiAssociation& association : CurrentMachine().wmi.associations) {
    if (association.of != associators.object) continue;
    if (!associators.result_class.empty() && !EqualIgnoringCase(association.result_class, associators.result_class)) {
      continue;
    }
    for (const WmiRow& row : association.rows) result.push_back(Project(row, {}, association.result_class));
  }
  return result;
}

}  // namespace

WqlResult RunQuery(const std::string& wql) {
  if (const std::optional<Failure> failure = RecordQuery(wql)) return {failure->status, {}};
  const std::optional<wql::Query> query = wql::Parse(wql);
  if (!query) return {kInvalidQuery, {}};
  return {0, std::visit([](const auto& parsed) { return RowsOf(parsed); }, *query)};
}

const WmiProperty* FindProperty(const WmiRow& row, std::string_view name) {
  const auto found = std::find_if(row.begin(), row.end(),
                                  [name](const auto& property) { return EqualIgnoringCase(property.first, name); });
  return found == row.end() ? nullptr : &found->second;
}

}  // namespace zt::simulation
