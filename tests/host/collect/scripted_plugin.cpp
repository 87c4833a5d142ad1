// A plugin that does what its event type says, for what the collector never does: fail, and answer nonsense.

#include <plog/Appenders/IAppender.h>

#include <cstring>
#include <string>

#include <nlohmann/json.hpp>

#include "scripted_plugin_export.h"
#include "zt/shared/plugin/plugin_module.h"
#include "zt/telemetry/common/telemetry_sink.h"

namespace {

// Event types, and the outcome that each reports.
constexpr int kFails = 1;
constexpr int kFailsByCodeAlone = 2;
constexpr int kReportsNothing = 3;
constexpr int kReportsNonsense = 4;
constexpr int kReportsTextForKind = 5;
constexpr int kCountsItsCalls = 6;

class ScriptedModule : public zt::shared::plugin::IDynamicPluginModule {
 public:
  void Execute(const char*, char*) override {}

  void Execute(const char* params, char*& result, const zt::shared::plugin::PluginBufferAllocator& allocator) override {
    const int event = nlohmann::json::parse(params)["eventType"].get<int>();
    ++calls_;
    if (event == kReportsNothing) return;
    if (event == kCountsItsCalls) {
      zt::telemetry::common::RegisteredTelemetrySink()->Send("call " + std::to_string(calls_));
    }
    const std::string outcome = Outcome(event);
    result = allocator.Allocate(outcome.size() + 1);
    std::memcpy(result, outcome.c_str(), outcome.size() + 1);
  }

 private:
  static std::string Outcome(int event) {
    switch (event) {
      case kFails:
        return R"({"kind":5,"code":-7,"description":"scripted failure","typeName":"t","message":"m"})";
      case kFailsByCodeAlone:
        return R"({"kind":0,"code":9})";
      case kReportsNonsense:
        return "nonsense";
      case kReportsTextForKind:
        return R"({"kind":"five","code":0})";
      default:
        return R"({"kind":0,"code":0,"description":"","typeName":"","message":""})";
    }
  }

  int calls_ = 0;
};

}  // namespace

extern "C" SCRIPTED_PLUGIN_EXPORT zt::shared::plugin::IDynamicPluginModule* LoadPlugin() {
  return new ScriptedModule();
}

// Logs one line at once, so that a test sees the appender and the severity that the host gave.
extern "C" SCRIPTED_PLUGIN_EXPORT void ztSharedInitializeLogger(plog::Severity max_severity,
                                                                plog::IAppender* appender) {
  plog::Record record(plog::error, "Scripted::Start", 12, "", nullptr, 0);
  const char8_t* const beyond_ascii = u8" für 日本";
  record << "severity " << static_cast<int>(max_severity) << beyond_ascii;
  appender->write(record);
}
