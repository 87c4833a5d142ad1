#include "fleet/forward/settings.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <utility>

#include "fleet/forward/client_configuration.h"
#include "fleet/forward/upload_topic.h"
#include "host/configuration/toml_settings.h"
#include "host/failure.h"
#include "host/outbox/contract_version.h"
#include "host/program_environment.h"

namespace zt::telemetry::fleet {
namespace {

namespace fs = std::filesystem;
using host::ConfigurationProblem;
using host::TomlReaders;
using host::TomlValue;
using Reader = std::function<void(const TomlValue&)>;

constexpr std::array<std::string_view, 3> kCompressions = {"none", "lz4", "zstd"};
constexpr std::int64_t kMostMessages = 10'000'000;  // librdkafka's own
constexpr std::int64_t kMostKibibytes = 2'097'151;  // likewise
constexpr std::int64_t kLeastKibibytes = 1'024;
constexpr std::int64_t kLastPort = 65'535;
constexpr std::int64_t kSecondsOfDay = 86'400;
constexpr std::size_t kLongestTopic = 249;  // Kafka's own

Reader TextReader(std::string& setting, const std::string& what) {
  return [&setting, what](const TomlValue& value) {
    const auto* const text = value.Node().as_string();
    if (text == nullptr || text->get().empty()) return value.Expected(what);
    setting = text->get();
  };
}

bool IsTopic(std::string_view name) {
  const auto fits = [](char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9') || character == '.' || character == '_' || character == '-';
  };
  return !name.empty() && name.size() <= kLongestTopic && name != "." && name != ".." &&
         std::ranges::all_of(name, fits);
}

// What may follow a name that records' topics are made of.
std::size_t LongestSuffix() {
  return std::ranges::max(kUploadTopicSuffixes, {}, &std::string_view::size).size();
}

// `suffix`: how many characters are added to the name.
Reader TopicReader(std::string& setting, std::size_t suffix = 0) {
  return [&setting, longest = kLongestTopic - suffix](const TomlValue& value) {
    const auto* const text = value.Node().as_string();
    if (text == nullptr || !IsTopic(text->get()) || text->get().size() > longest) {
      return value.Expected("the name of a topic: at most " + std::to_string(longest) +
                            " letters, digits, \".\", \"_\" and \"-\"");
    }
    setting = text->get();
  };
}

Reader FlagReader(bool& setting) {
  return [&setting](const TomlValue& value) {
    const auto* const flag = value.Node().as_boolean();
    if (flag == nullptr) return value.Expected("true or false");
    setting = flag->get();
  };
}

Reader CompressionReader(std::string& setting) {
  return [&setting](const TomlValue& value) {
    const auto* const text = value.Node().as_string();
    if (text == nullptr || std::ranges::find(kCompressions, text->get()) == kCompressions.end()) {
      return value.Expected("\"none\", \"lz4\" or \"zstd\"");
    }
    setting = text->get();
  };
}

template <typename T>
Reader NumberReader(std::int64_t least, std::int64_t greatest, T& setting) {
  return [=, &setting](const TomlValue& value) {
    const auto* const number = value.Node().as_integer();
    if (number == nullptr || number->get() < least || number->get() > greatest) {
      return value.Expected("a whole number from " + std::to_string(least) + " to " + std::to_string(greatest));
    }
    setting = number->get();
  };
}

fs::path PathFrom(const fs::path& file, const std::string& text) {
  return (fs::absolute(file).parent_path() / host::PathFromText(text)).lexically_normal();
}

Reader PathReader(const fs::path& file, std::optional<fs::path>& setting) {
  return [&file, &setting](const TomlValue& value) {
    const auto* const text = value.Node().as_string();
    if (text == nullptr || text->get().empty()) return value.Expected("a path as a text");
    setting = PathFrom(file, text->get());
  };
}

Reader TableReader(TomlReaders readers, std::vector<ConfigurationProblem>& problems) {
  return [readers = std::move(readers), &problems](const TomlValue& value) {
    const toml::table* const table = value.Node().as_table();
    if (table == nullptr) return value.Expected("a table");
    host::ReadTable(value.Key(), *table, readers, problems);
  };
}

// A property is written in quotes, or as it is: TOML takes its dots for tables then.
using PropertyReader = std::function<void(const std::string& name, const TomlValue&)>;

void ReadProperties(const std::string& key, const std::string& prefix, const toml::table& table,
                    const PropertyReader& read, std::vector<ConfigurationProblem>& problems) {
  for (const auto& [part, node] : table) {
    const std::string name = prefix + std::string(part.str());
    if (const toml::table* const inner = node.as_table()) {
      ReadProperties(key, name + ".", *inner, read, problems);
    } else {
      std::string full_name = key;
      full_name.append(".").append(name);
      read(name, TomlValue(full_name, part.source().begin.line, node, problems));
    }
  }
}

Reader PropertiesReader(const PropertyReader& read, std::vector<ConfigurationProblem>& problems) {
  return [read, &problems](const TomlValue& value) {
    const toml::table* const table = value.Node().as_table();
    if (table == nullptr) return value.Expected("a table");
    ReadProperties(value.Key(), "", *table, read, problems);
  };
}

void AddProperty(ClientProperty property, const TomlValue& value, KafkaSettings& kafka) {
  const std::string problem = ProblemOf(property);
  if (!problem.empty()) return value.Wrong(problem);
  kafka.client.push_back(std::move(property));
}

PropertyReader PlainProperty(KafkaSettings& kafka) {
  return [&kafka](const std::string& name, const TomlValue& value) {
    std::string text;
    if (const auto* const string = value.Node().as_string()) {
      text = string->get();
    } else if (const auto* const number = value.Node().as_integer()) {
      text = std::to_string(number->get());
    } else if (const auto* const flag = value.Node().as_boolean()) {
      text = flag->get() ? "true" : "false";
    } else {
      return value.Expected("a text, a whole number, true or false");
    }
    AddProperty({name, text, value.Line()}, value, kafka);
  };
}

// For what is secret: the configuration names a file, which the service manager hands out.
PropertyReader PropertyInFile(const fs::path& file, KafkaSettings& kafka) {
  return [&file, &kafka](const std::string& name, const TomlValue& value) {
    const auto* const text = value.Node().as_string();
    if (text == nullptr || text->get().empty()) return value.Expected("the path of a file");
    const fs::path path = PathFrom(file, text->get());
    std::ifstream stream(path, std::ios::binary);
    std::string secret;
    if (!stream.is_open() || !std::getline(stream, secret)) {
      return value.Wrong("expected a file whose first line is the value, but " + host::PathText(path) +
                         " cannot be read, or is empty");
    }
    if (secret.ends_with('\r')) secret.pop_back();
    AddProperty({name, secret, value.Line()}, value, kafka);
  };
}

TomlReaders KafkaReaders(const fs::path& file, KafkaSettings& kafka, std::vector<ConfigurationProblem>& problems) {
  return {{"brokers", TextReader(kafka.brokers, "the brokers as a text such as \"kafka1:9092,kafka2:9092\"")},
          {"upload_topic", TopicReader(kafka.upload_topic, LongestSuffix())},
          {"upload_topics_by_kind", FlagReader(kafka.upload_topics_by_kind)},
          {"storage_topic", TopicReader(kafka.storage_topic)},
          {"dead_letter_topic", TopicReader(kafka.dead_letter_topic)},
          {"compression", CompressionReader(kafka.compression)},
          {"queue_messages", NumberReader(1, kMostMessages, kafka.queue_messages)},
          {"queue_kibibytes", NumberReader(kLeastKibibytes, kMostKibibytes, kafka.queue_kibibytes)},
          {"client", PropertiesReader(PlainProperty(kafka), problems)},
          {"client_files", PropertiesReader(PropertyInFile(file, kafka), problems)}};
}

std::string FileText(const fs::path& file) {
  const auto cannot = [&file](const std::string& reason) {
    return host::WrongUsage("--config " + host::PathText(file) + ": " + reason);
  };
  std::error_code error;
  if (!fs::exists(file, error)) throw cannot("there is no such file");
  if (fs::is_directory(file, error)) throw cannot("this is a folder, not a file");
  std::ifstream stream(file, std::ios::binary);
  std::string text{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  if (!stream.is_open() || stream.bad()) throw cannot("the file cannot be read");
  return text;
}

bool IsSecret(std::string_view name) {
  return name.find("password") != std::string_view::npos || name.find("secret") != std::string_view::npos ||
         name.find(".pem") != std::string_view::npos || name.find("sasl.oauthbearer") != std::string_view::npos;
}

}  // namespace

std::vector<ConfigurationProblem> ReadSettings(std::string_view text, const fs::path& file, Settings& settings) {
  std::vector<ConfigurationProblem> problems;
  settings.contract_version = host::ContractVersion();
  try {
    const toml::table document = toml::parse(text);
    host::ReadTable(
        "", document,
        {{"kafka", TableReader(KafkaReaders(file, settings.kafka, problems), problems)},
         {"spool", TableReader({{"folder", PathReader(file, settings.spool.folder)},
                                {"done_folder", PathReader(file, settings.spool.done_folder)},
                                {"retry_seconds", NumberReader(1, kSecondsOfDay, settings.spool.retry_seconds)}},
                               problems)},
         {"metrics", TableReader({{"file", PathReader(file, settings.metrics.file)},
                                  {"port", NumberReader(0, kLastPort, settings.metrics.port)}},
                                 problems)},
         {"records", TableReader({{"contract_version",
                                   TextReader(settings.contract_version, "a version as a text such as \"1.0\"")}},
                                 problems)}},
        problems);
    if (problems.empty() && settings.kafka.brokers.empty()) {
      problems.push_back({1, "kafka.brokers", "is missing; expected a text such as \"kafka1:9092,kafka2:9092\""});
    }
  } catch (const toml::parse_error& failure) {
    problems.push_back({failure.source().begin.line, "", std::string(failure.description())});
  }
  std::ranges::stable_sort(problems, {}, &ConfigurationProblem::line);
  return problems;
}

Settings ReadSettingsFile(const fs::path& file) {
  Settings settings;
  const std::vector<ConfigurationProblem> problems = ReadSettings(FileText(file), file, settings);
  if (problems.empty()) return settings;
  std::string text = "the configuration is not as it should be:";
  for (const ConfigurationProblem& problem : problems) {
    text.append("\n  " + host::PathText(file) + ", line " + std::to_string(problem.line) + ": ");
    text.append(problem.key.empty() ? problem.text : problem.key + ": " + problem.text);
  }
  throw host::WrongUsage(text);
}

std::string SettingsText(const Settings& settings) {
  const auto path = [](const std::optional<fs::path>& file, const char* absent) {
    return file.has_value() ? host::PathText(*file) : std::string(absent);
  };
  const KafkaSettings& kafka = settings.kafka;
  std::string text;
  const auto line = [&text](const std::string& key, const std::string& value) {
    text.append(key + " = " + value + "\n");
  };
  line("kafka.brokers", kafka.brokers);
  line("kafka.upload_topic", kafka.upload_topic);
  line("kafka.upload_topics_by_kind", kafka.upload_topics_by_kind ? "true" : "false");
  line("kafka.storage_topic", kafka.storage_topic);
  line("kafka.dead_letter_topic", kafka.dead_letter_topic);
  line("kafka.compression", kafka.compression);
  line("kafka.queue_messages", std::to_string(kafka.queue_messages));
  line("kafka.queue_kibibytes", std::to_string(kafka.queue_kibibytes));
  for (const ClientProperty& property : kafka.client) {
    line("kafka.client." + property.name, IsSecret(property.name) ? "(not told)" : property.value);
  }
  line("spool.folder", path(settings.spool.folder, "(none)"));
  line("spool.done_folder", path(settings.spool.done_folder, "(none: files are removed)"));
  line("spool.retry_seconds", std::to_string(settings.spool.retry_seconds));
  line("metrics.file", path(settings.metrics.file, "(none)"));
  line("metrics.port", settings.metrics.port.has_value() ? std::to_string(*settings.metrics.port) : "(none)");
  line("records.contract_version", settings.contract_version);
  return text;
}

}  // namespace zt::telemetry::fleet
