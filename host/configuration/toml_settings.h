#pragma once

#include <toml++/toml.h>

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/configuration/configuration_file.h"

namespace zt::telemetry::host {

/// A value of a configuration file, as a reader of one setting sees it.
class TomlValue {
 public:
  TomlValue(std::string key, std::uint32_t line, const toml::node& node, std::vector<ConfigurationProblem>& problems)
      : key_(std::move(key)), line_(line), node_(node), problems_(problems) {}

  const toml::node& Node() const { return node_; }
  std::uint32_t Line() const { return line_; }
  const std::string& Key() const { return key_; }

  /// Notes that something else was expected, and what stands there.
  void Expected(const std::string& what) const { Wrong("expected " + what + ", but got " + Description()); }
  /// Notes what is wrong.
  void Wrong(const std::string& text) const { problems_.push_back({line_, key_, text}); }

 private:
  std::string Description() const;

  std::string key_;
  std::uint32_t line_;
  const toml::node& node_;
  std::vector<ConfigurationProblem>& problems_;
};

/// The keys of a table, each with what reads its value.
using TomlReaders = std::vector<std::pair<std::string_view, std::function<void(const TomlValue&)>>>;

/// Reads each value of `table`, whose own key is `name`; a key without a reader is a problem.
void ReadTable(const std::string& name, const toml::table& table, const TomlReaders& readers,
               std::vector<ConfigurationProblem>& problems);

}  // namespace zt::telemetry::host
