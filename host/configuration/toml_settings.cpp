#include "host/configuration/toml_settings.h"

#include <algorithm>
#include <sstream>

namespace zt::telemetry::host {
namespace {

std::string NamesOf(const TomlReaders& readers) {
  std::string names;
  for (const auto& reader : readers) names.append(names.empty() ? "" : ", ").append(reader.first);
  return names;
}

}  // namespace

std::string TomlValue::Description() const {
  if (const auto* const text = node_.as_string()) return "\"" + text->get() + "\"";
  if (const auto* const number = node_.as_integer()) return std::to_string(number->get());
  if (const auto* const flag = node_.as_boolean()) return flag->get() ? "true" : "false";
  if (node_.is_table()) return "a table";
  if (node_.is_array()) return "a list";
  if (node_.is_floating_point()) return "a number with a fraction";
  return "a date or a time";
}

void ReadTable(const std::string& name, const toml::table& table, const TomlReaders& readers,
               std::vector<ConfigurationProblem>& problems) {
  for (const auto& [key, node] : table) {
    const std::string full = name.empty() ? std::string(key.str()) : name + "." + std::string(key.str());
    const TomlValue value(full, key.source().begin.line, node, problems);
    const auto reader =
        std::ranges::find_if(readers, [name = key.str()](const auto& known) { return known.first == name; });
    if (reader == readers.end()) {
      value.Wrong("there is no such key; expected one of " + NamesOf(readers));
    } else {
      reader->second(value);
    }
  }
}

}  // namespace zt::telemetry::host
