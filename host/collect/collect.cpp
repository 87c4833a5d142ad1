#include "host/collect/collect.h"

#include <exception>
#include <fstream>
#include <memory>
#include <string>
#include <system_error>

#include "host/collect/hand_over_sink.h"
#include "host/collect/loaded_plugin.h"
#include "host/collect/sample_copy.h"
#include "host/collect/taking.h"
#include "host/consent/consented_texts.h"
#include "host/consent/consented_view.h"
#include "host/failure.h"
#include "host/files.h"
#include "host/log_appender.h"
#include "host/log_output.h"
#include "host/machine_choice.h"
#include "host/outbox/keeping_view.h"
#include "host/program_environment.h"
#include "host/query_recorder.h"
#include "host/seed/sample_schema.h"
#include "host/views/json_lines.h"
#include "host/views/text_report.h"
#include "zt/shared/telemetry_storage.h"

namespace zt::telemetry::host {
namespace {

namespace fs = std::filesystem;

// The stored samples that the command means. Those that are to be taken must be writable: else they were sent again and
// again.
fs::path StoredSamples(const CollectCommand& command) {
  constexpr char kOption[] = "--database-dir";
  if (!command.database_dir.has_value())
    return PathFromText(shared::TelemetryStorage::GetDefaultDBPath()) / kDatabaseName;
  RequireFolder(*command.database_dir, kOption);
  const fs::path database = fs::absolute(*command.database_dir) / kDatabaseName;
  if (command.takes_samples) {
    RequireWritableFolder(*command.database_dir, kOption);
    RequireWritableWhenPresent(database, kOption);
  }
  return database;
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

// What a collection tells beside its hand-overs, and where that goes: to standard error, and what somebody has to look
// after to the Event Log too, if the log goes there.
class Reports {
 public:
  Reports(const CollectCommand& command, std::ostream& err) : err_(err), log_(command.settings, err) {}

  void Log(const plog::Record& record) { log_.Write(record); }

  void Tell(const std::string& text) { err_ << text << std::endl; }

  void Complain(const std::string& text) {
    Tell(text);
    log_.Complain(text);
  }

  /// For what the program itself tells on standard error.
  void ComplainToOthers(const std::string& text) { log_.Complain(text); }

 private:
  std::ostream& err_;
  LogOutput log_;
};

// Runs one event; false when it failed.
bool RunEvent(LoadedPlugin& plugin, std::int32_t event, const HandOverSink& sink, const Consent& consent,
              Reports& reports) {
  const std::size_t before = sink.Count();
  const std::string name = "event " + std::to_string(event);
  const common::Error outcome = plugin.Execute(event);
  if (outcome.Failed()) {
    reports.Complain(name + " failed: " + ConsentedMessage(consent, outcome.description) + " (kind " +
                     std::to_string(outcome.kind) + ", code " + std::to_string(outcome.code) + ")");
    return false;
  }
  if (sink.Count() == before) reports.Tell(name + ": nothing was handed over");
  return true;
}

// Runs the events one after the other, each hand-over shown on `view`; false when one failed.
bool RunEvents(const CollectCommand& command, LoadedPlugin& plugin, HandOverView& view, Reports& reports) {
  const Consent& consent = command.settings.consent;
  ConsentedView consented(consent, view);
  const auto sink = std::make_shared<HandOverSink>(consented);
  const SinkRegistration registration(sink);
  bool all_done = true;
  for (const std::int32_t event : command.events) {
    all_done = RunEvent(plugin, event, *sink, consent, reports) && all_done;
  }
  if (sink->FirstFailure().Failed()) {
    throw Failure(kExitFailed, "a hand-over could not be written: " + sink->FirstFailure().description +
                                   (command.takes_samples ? "; the stored samples stay as they are" : ""));
  }
  if (consented.HeldBack() > 0) {
    reports.Tell("held back as the configuration says: " + std::to_string(consented.HeldBack()) + " hand-overs");
  }
  return all_done;
}

// As long as it lives, collections work in `folder`.
class WorkingFolder {
 public:
  explicit WorkingFolder(const fs::path& folder) { shared::TelemetryStorage::SetDefaultDBPath(ToText(folder)); }
  ~WorkingFolder() { shared::TelemetryStorage::SetDefaultDBPath(""); }
  WorkingFolder(const WorkingFolder&) = delete;
  WorkingFolder& operator=(const WorkingFolder&) = delete;
};

// Where the hand-overs of a command are written.
class Output {
 public:
  Output(const CollectCommand& command, std::ostream& out) : file_(command.output), stream_(out) {
    if (file_.has_value()) stream_of_file_ = OpenForWriting(*file_, "--output");
  }

  std::ostream& Stream() { return file_.has_value() ? stream_of_file_ : stream_; }

  /// Everything has arrived, in a file also on the disk. Throws `Failure`.
  void RequireSafe() {
    const bool flushed = static_cast<bool>(Stream().flush());
    if (flushed && file_.has_value()) {
      stream_of_file_.close();
      Sync(*file_);
    }
    if (!flushed || Stream().fail()) throw Failure(kExitFailed, "the output cannot be written");
  }

 private:
  std::optional<fs::path> file_;
  std::ostream& stream_;
  std::ofstream stream_of_file_;
};

int RunCycle(const CollectCommand& command, Reports& reports, std::ostream& out, std::ostream& err) {
  RequireDifferentFiles(command);
  ChooseMachine(command.machine);
  Taking taking(command, StoredSamples(command), err);

  const LogAppender::Target log_target([&reports](const plog::Record& record) { reports.Log(record); });
  LoadedPlugin plugin(command.plugin.value_or(DefaultPluginFile()), command.log_level, LogAppender::Instance());
  Output output(command, out);
  std::optional<QueryRecorder> queries;
  if (command.queries.has_value()) queries.emplace(*command.queries, command.settings.consent);

  const WorkingFolder working_folder(taking.Folder());
  bool all_done = false;
  if (command.outbox.has_value()) {
    KeepingView kept;
    all_done = RunEvents(command, plugin, kept, reports);
    taking.KeepInOutbox(kept.HandOvers(), output.Stream());
  } else {
    all_done = RunEvents(command, plugin, *MakeView(command.format, output.Stream()), reports);
  }
  output.RequireSafe();
  const bool taken = taking.Take();
  taking.HoldToLimits(command.limits);
  if (queries.has_value()) queries->RequireWritten();
  return all_done && taken ? kExitDone : kExitFailed;
}

}  // namespace

int Collect(const CollectCommand& command, std::ostream& out, std::ostream& err) {
  Reports reports(command, err);
  try {
    return RunCycle(command, reports, out, err);
  } catch (const std::exception& failure) {
    reports.ComplainToOthers(failure.what());
    throw;
  }
}

}  // namespace zt::telemetry::host
