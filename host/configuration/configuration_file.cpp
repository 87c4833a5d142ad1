#include "host/configuration/configuration_file.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <iterator>
#include <system_error>
#include <utility>

#include "host/configuration/setting_values.h"
#include "host/configuration/toml_settings.h"
#include "host/failure.h"
#include "host/program_environment.h"

namespace zt::telemetry::host {
namespace {

namespace fs = std::filesystem;
using SettingReader = std::function<void(const TomlValue&)>;

template <typename T, typename Value>
void SetFromFile(Setting<T>& setting, const TomlValue& from, Value&& value) {
  setting = {std::forward<Value>(value), {Origin::Kind::kFile, from.Line()}};
}

SettingReader PathReader(const fs::path& file, Setting<std::optional<fs::path>>& setting) {
  return [&file, &setting](const TomlValue& value) {
    const auto* const text = value.Node().as_string();
    if (text == nullptr || text->get().empty()) return value.Expected("a path as a text");
    SetFromFile(setting, value, (fs::absolute(file).parent_path() / PathFromText(text->get())).lexically_normal());
  };
}

SettingReader NumberReader(std::int64_t least, std::int64_t greatest, Setting<std::int64_t>& setting) {
  return [=, &setting](const TomlValue& value) {
    const auto* const number = value.Node().as_integer();
    if (number == nullptr || number->get() < least || number->get() > greatest) {
      return value.Expected("a whole number from " + std::to_string(least) + " to " + std::to_string(greatest));
    }
    SetFromFile(setting, value, number->get());
  };
}

SettingReader FlagReader(Setting<bool>& setting) {
  return [&setting](const TomlValue& value) {
    const auto* const flag = value.Node().as_boolean();
    if (flag == nullptr) return value.Expected("true or false");
    SetFromFile(setting, value, flag->get());
  };
}

template <typename T, typename S>
SettingReader ChoiceReader(const Choices<T>& choices, Setting<S>& setting) {
  return [&choices, &setting](const TomlValue& value) {
    const auto* const text = value.Node().as_string();
    const T* const choice = text != nullptr ? Find(choices, text->get()) : nullptr;
    if (choice != nullptr) return SetFromFile(setting, value, *choice);
    std::string names;
    for (const auto& known : choices) names.append(names.empty() ? "\"" : ", \"").append(known.first).append("\"");
    value.Expected("one of " + names);
  };
}

// What stands in the place of a key is told to nobody.
SettingReader KeyReader(Setting<std::optional<HashKey>>& setting) {
  return [&setting](const TomlValue& value) {
    const std::string expected = "expected " + std::to_string(kKeyDigits) +
                                 " hexadecimal digits as a text, as `config new-key` prints them, but ";
    const auto* const text = value.Node().as_string();
    if (text == nullptr) return value.Wrong(expected + "this is no text");
    const std::optional<HashKey> key = KeyFromText(text->get());
    if (key.has_value()) return SetFromFile(setting, value, key);
    value.Wrong(expected + (text->get().size() == kKeyDigits
                                ? "some of these characters are none"
                                : "got " + std::to_string(text->get().size()) + " characters"));
  };
}

SettingReader TableReader(TomlReaders readers, std::vector<ConfigurationProblem>& problems) {
  return [readers = std::move(readers), &problems](const TomlValue& value) {
    const toml::table* const table = value.Node().as_table();
    if (table == nullptr) return value.Expected("a table, [" + value.Key() + "]");
    ReadTable(value.Key(), *table, readers, problems);
  };
}

TomlReaders OutboxReaders(Configuration& configuration) {
  return {{"folder", PathReader(configuration.file, configuration.outbox_folder)},
          {"max_bytes", NumberReader(kLeastOutboxBytes, kMostOutboxBytes, configuration.max_bytes)},
          {"max_days", NumberReader(1, kMostDays, configuration.max_days)}};
}

TomlReaders LogReaders(Configuration& configuration) {
  return {{"level", ChoiceReader(kLogLevels, configuration.log_level)},
          {"file", PathReader(configuration.file, configuration.log_file)}};
}

TomlReaders SectionReaders(Configuration& configuration) {
  TomlReaders readers;
  for (std::size_t i = 0; i < kSectionNames.size(); ++i) {
    readers.emplace_back(kSectionNames.at(i), FlagReader(configuration.sections.at(i)));
  }
  return readers;
}

TomlReaders IdentityReaders(Configuration& configuration) {
  TomlReaders readers = {{"key", KeyReader(configuration.key)}};
  for (std::size_t i = 0; i < kIdentityNames.size(); ++i) {
    readers.emplace_back(kIdentityNames.at(i), ChoiceReader(kTreatments, configuration.identities.at(i)));
  }
  return readers;
}

void RequireKey(const Configuration& configuration, std::vector<ConfigurationProblem>& problems) {
  // A key that is there and wrong has been told.
  const bool told = std::ranges::any_of(problems, [](const auto& problem) { return problem.key == "redact.key"; });
  if (configuration.key.value.has_value() || told) return;
  for (std::size_t i = 0; i < kIdentityNames.size(); ++i) {
    const Setting<Treatment>& identity = configuration.identities.at(i);
    if (identity.value != Treatment::kHash) continue;
    problems.push_back({identity.origin.line, "redact." + std::string(kIdentityNames.at(i)),
                        "\"hash\" needs a key: expected redact.key beside it, which `config new-key` prints"});
  }
}

std::string FileText(const fs::path& file) {
  constexpr std::uintmax_t kLargest = std::uintmax_t{1} << 20;
  const auto cannot = [&](const std::string& reason) { return WrongUsage(PathText(file) + ": " + reason); };
  std::error_code error;
  if (fs::is_directory(file, error)) throw cannot("this is a folder, not a configuration file");
  const std::uintmax_t size = fs::file_size(file, error);
  if (error) throw cannot("the configuration cannot be read: " + error.message());
  if (size > kLargest) throw cannot("this is larger than a configuration, which has at most 1 MiB");
  errno = 0;
  std::ifstream stream(file, std::ios::binary);
  std::string text((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
  if (stream.is_open() && !stream.bad()) return text;
  throw cannot("the configuration cannot be read: " + std::generic_category().message(errno));
}

}  // namespace

std::vector<ConfigurationProblem> ReadSettings(std::string_view text, Configuration& configuration) {
  std::vector<ConfigurationProblem> problems;
  try {
    const toml::table document = toml::parse(text);
    ReadTable("", document,
              {{"outbox", TableReader(OutboxReaders(configuration), problems)},
               {"log", TableReader(LogReaders(configuration), problems)},
               {"sections", TableReader(SectionReaders(configuration), problems)},
               {"redact", TableReader(IdentityReaders(configuration), problems)}},
              problems);
    RequireKey(configuration, problems);
  } catch (const toml::parse_error& failure) {
    problems.push_back({failure.source().begin.line, "", std::string(failure.description())});
  }
  std::ranges::stable_sort(problems, {}, &ConfigurationProblem::line);
  return problems;
}

std::vector<ConfigurationProblem> ReadConfigurationFile(Configuration& configuration) {
  return ReadSettings(FileText(configuration.file), configuration);
}

}  // namespace zt::telemetry::host
