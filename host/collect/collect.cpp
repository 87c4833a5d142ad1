#include "host/collect/collect.h"

#include <fstream>
#include <memory>
#include <string>
#include <system_error>

#include "host/collect/hand_over_sink.h"
#include "host/collect/loaded_plugin.h"
#include "host/failure.h"
#include "host/files.h"
#include "host/log_appender.h"
#include "host/machine_choice.h"
#include "host/program_environment.h"
#include "host/query_recorder.h"
#include "host/seed/sample_schema.h"
#include "host/views/json_lines.h"
#include "host/views/text_report.h"
#include "zt/shared/telemetry_storage.h"

namespace zt::telemetry::host {
namespace {

namespace fs = std::filesystem;

// The summaries empty the tables that they have sent: a database that could not be written would be sent again and
// again.
void UseDatabaseFolder(const fs::path& folder) {
  RequireWritableFolder(folder, "--database-dir");
  RequireWritableWhenPresent(folder / kDatabaseName, "--database-dir");
  shared::TelemetryStorage::SetDefaultDBPath(ToText(fs::absolute(folder)));
}

void RequireDifferentFiles(const CollectCommand& command) {
  if (!command.output.has_value() || !command.queries.has_value()) return;
  if (fs::absolute(*command.output).lexically_normal() != fs::absolute(*command.queries).lexically_normal()) return;
  throw WrongUsage("--output and --queries name the same file, " + PathText(*command.output));
}

std::unique_ptr<HandOverView> MakeView(OutputFormat format, std::ostream& stream) {
  if (format == OutputFormat::kJson) return std::make_unique<JsonLines>(stream);
  return std::make_unique<TextReport>(stream);
}

// Runs one event; false when it failed.
bool RunEvent(LoadedPlugin& plugin, std::int32_t event, const HandOverSink& sink, std::ostream& err) {
  const std::size_t before = sink.Count();
  const common::Error outcome = plugin.Execute(event);
  if (outcome.Failed()) {
    err << "event " << event << " failed: " << outcome.description << " (kind " << outcome.kind << ", code "
        << outcome.code << ")" << std::endl;
    return false;
  }
  if (sink.Count() == before) err << "event " << event << ": nothing was handed over" << std::endl;
  return true;
}

}  // namespace

int Collect(const CollectCommand& command, std::ostream& out, std::ostream& err) {
  RequireDifferentFiles(command);
  ChooseMachine(command.machine);
  if (command.database_dir.has_value()) UseDatabaseFolder(*command.database_dir);

  const LogAppender::Target log_target(err);
  LoadedPlugin plugin(command.plugin.value_or(DefaultPluginFile()), command.log_level, LogAppender::Instance());
  std::ofstream file;
  if (command.output.has_value()) file = OpenForWriting(*command.output, "--output");
  std::optional<QueryRecorder> queries;
  if (command.queries.has_value()) queries.emplace(*command.queries);

  const std::unique_ptr<HandOverView> view = MakeView(command.format, command.output.has_value() ? file : out);
  const auto sink = std::make_shared<HandOverSink>(*view);
  const SinkRegistration registration(sink);

  bool all_done = true;
  for (const std::int32_t event : command.events) all_done = RunEvent(plugin, event, *sink, err) && all_done;

  if (sink->FirstFailure().Failed()) {
    throw Failure(kExitFailed, "a hand-over could not be written: " + sink->FirstFailure().description);
  }
  if (queries.has_value()) queries->RequireWritten();
  return all_done ? kExitDone : kExitFailed;
}

}  // namespace zt::telemetry::host
