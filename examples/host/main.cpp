// A telemetry host: it takes the collector's records and log lines, has it collect once, and prints one figure.
//   example-telemetry-host PLUGIN        the plugin's file, with its full path
#include <plog/Appenders/IAppender.h>
#include <plog/Record.h>

#include <array>
#include <iostream>
#include <memory>

#include "performance_samples_upload.pb.h"
#include "plugin_library.h"
#include "zt/shared/plugin/plugin_module.h"
#include "zt/telemetry/common/telemetry_sink.h"

namespace {

using zt::shared::plugin::IDynamicPluginModule;
using zt::shared::plugin::IPluginModule;
using zt::telemetry::common::Error;
using Upload = zt::telemetry::contract::upload::log::PcLogPerformanceSamplesAsCDM;

// Where the records go. A real host keeps those of `Store` and uploads the others; the messages are the collector's
// own, so it copies what it needs before it returns.
class Sink : public zt::telemetry::common::TelemetrySink {
 public:
  Error Store(const google::protobuf::Message& record) override {
    std::cout << "stored " << record.GetTypeName() << ", " << record.ByteSizeLong() << " bytes\n";
    return {};
  }
  Error Send(const google::protobuf::Message& record) override {
    std::cout << "sent " << record.GetTypeName() << ", " << record.ByteSizeLong() << " bytes\n";
    if (const auto* upload = dynamic_cast<const Upload*>(&record)) ShowOneField(*upload);
    return {};
  }
  Error Send(const std::string& text) override {
    std::cout << "sent a text of " << text.size() << " bytes\n";
    return {};
  }

 private:
  static void ShowOneField(const Upload& record) {
    if (!record.hw_info().has_system_memory_info()) return;
    std::cout << "  physical memory in use: " << record.hw_info().system_memory_info().utilization_physical_percent()
              << " %\n";
  }
};

// Where the log lines go. plog's messages are wide texts on Windows, by default.
class Log : public plog::IAppender {
 public:
  void write(const plog::Record& record) override {
    std::cerr << plog::severityToString(record.getSeverity()) << ": ";
    for (const auto* letter = record.getMessage(); *letter != 0; ++letter) std::cerr << static_cast<char>(*letter);
    std::cerr << '\n';
  }
};

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) {
    std::cerr << "usage: example-telemetry-host PLUGIN\n";
    return 2;
  }
  const PluginLibrary library = OpenPlugin(arguments[1]);
  if (library.load_plugin == nullptr || library.initialize_logger == nullptr) {
    std::cerr << arguments[1] << " cannot be loaded, or is no plugin\n";
    return 1;
  }

  // Both outlive the plugin.
  static Log log;
  reinterpret_cast<void (*)(plog::Severity, plog::IAppender*)>(library.initialize_logger)(plog::info, &log);
  zt::telemetry::common::RegisterTelemetrySink(std::make_shared<Sink>());

  const std::unique_ptr<IDynamicPluginModule> collector(
      reinterpret_cast<IDynamicPluginModule* (*)()>(library.load_plugin)());
  if (collector == nullptr) {
    std::cerr << "the plugin gave no collector\n";
    return 1;
  }
  // Event 50 is a collection. It may wait for minutes where the machine does not answer, and empties the tables of
  // stored samples: a host calls it on a thread that may wait, and has kept the records when `Execute` returns.
  std::array<char, IPluginModule::kResultCapacity> outcome{};
  collector->Execute(R"({"eventType": 50})", outcome.data());
  std::cout << "outcome: " << outcome.data() << '\n';
  zt::telemetry::common::RegisterTelemetrySink(nullptr);
  return 0;
}
