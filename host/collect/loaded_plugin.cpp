#include "host/collect/loaded_plugin.h"

#include <cstring>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "host/failure.h"
#include "host/program_environment.h"

namespace zt::telemetry::host {
namespace {

using common::Error;

constexpr char kPluginName[] = "zt-telemetry-performance-samples-collector";
constexpr char kLoadPlugin[] = "LoadPlugin";
constexpr char kInitializeLogger[] = "ztSharedInitializeLogger";

using LoadPluginFunction = shared::plugin::IDynamicPluginModule*();
using InitializeLoggerFunction = void(plog::Severity, plog::IAppender*);

std::filesystem::path ExistingFile(const std::filesystem::path& file) {
  std::error_code error;
  const std::filesystem::path absolute = std::filesystem::absolute(file, error);
  const std::filesystem::file_status status = std::filesystem::status(absolute, error);
  if (!std::filesystem::exists(status)) throw WrongUsage("the plugin " + PathText(file) + " does not exist");
  if (std::filesystem::is_directory(status))
    throw WrongUsage("the plugin " + PathText(file) + " is a folder, not a file");
  return absolute;
}

template <typename Function>
Function* EntryPoint(const LoadedLibrary& library, const std::filesystem::path& file, const char* name) {
  void* const address = library.Find(name);
  if (address == nullptr) throw WrongUsage("the plugin " + PathText(file) + " exports no \"" + name + "\"");
  return reinterpret_cast<Function*>(address);
}

// Keeps the one result of one call.
class ResultBuffer : public shared::plugin::PluginBufferAllocator {
 public:
  char* Allocate(std::size_t size) const override {
    buffer_.assign(size, '\0');
    return buffer_.data();
  }

 private:
  mutable std::vector<char> buffer_;
};

Error ReportError(const std::string& description) {
  return {Error::kCallFailed, -1, description, "", ""};
}

Error ReadOutcome(const char* text) {
  if (text == nullptr) return ReportError("The plugin reported no outcome");
  const nlohmann::json outcome = nlohmann::json::parse(text, nullptr, /*allow_exceptions=*/false);
  const auto has = [&](const char* key, auto is) { return outcome.contains(key) && (outcome[key].*is)(); };
  using Json = nlohmann::json;
  if (!outcome.is_object() || !has("kind", &Json::is_number_integer) || !has("code", &Json::is_number_integer)) {
    return ReportError(std::string("The plugin's outcome cannot be understood: ") + text);
  }
  const auto text_of = [&](const char* key) {
    return has(key, &Json::is_string) ? outcome[key].get<std::string>() : std::string();
  };
  return {outcome["kind"].get<std::int32_t>(), outcome["code"].get<std::int64_t>(), text_of("description"),
          text_of("typeName"), text_of("message")};
}

}  // namespace

LoadedPlugin::LoadedPlugin(const std::filesystem::path& file, plog::Severity log_level, plog::IAppender& appender)
    : library_(ExistingFile(file)) {
  auto* const load = EntryPoint<LoadPluginFunction>(library_, file, kLoadPlugin);
  auto* const initialize_logger = EntryPoint<InitializeLoggerFunction>(library_, file, kInitializeLogger);
  module_.reset(load());
  if (module_ == nullptr) throw WrongUsage("the plugin " + PathText(file) + " gave no module object");
  initialize_logger(log_level, &appender);
}

Error LoadedPlugin::Execute(std::int32_t event_type) {
  const std::string parameters = nlohmann::json{{"eventType", event_type}}.dump();
  const ResultBuffer buffer;
  char* result = nullptr;
  module_->Execute(parameters.c_str(), result, buffer);
  return ReadOutcome(result);
}

std::filesystem::path DefaultPluginFile() {
  return ProgramFile().parent_path() / (std::string(kPluginName) + kLibrarySuffix);
}

}  // namespace zt::telemetry::host
