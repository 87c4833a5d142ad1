#include "host/doctor/doctor.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string>

#include "host/doctor/report_view.h"
#include "host/doctor/stored_samples.h"
#include "host/failure.h"
#include "host/inspection/inspect_sources.h"
#include "host/log_appender.h"
#include "host/machine_choice.h"
#include "host/program_environment.h"
#include "host/query_recorder.h"
#include "host/whole_file.h"
#include "zt/shared/telemetry_storage.h"

namespace zt::telemetry::host {

using inspection::SourceState;

namespace {

// What a source logs is an issue of it from a warning on.
constexpr plog::Severity kLeastIssue = plog::warning;

}  // namespace

bool AskSources(const DoctorCommand& command, ReportView& view, std::ostream& err) {
  ChooseMachine(command.machine);
  std::optional<QueryRecorder> queries;
  if (command.queries.has_value()) queries.emplace(*command.queries);
  std::string issues;
  const LogAppender::Target log_target([&](const plog::Record& record) {
    if (record.getSeverity() <= command.log_level) err << LogLine(record) << std::endl;
    if (record.getSeverity() <= kLeastIssue) issues += (issues.empty() ? "" : "; ") + MessageText(record);
  });
  bool any_failed = false;
  const auto show = [&](inspection::SourceReport report) {
    // Some sources go on after a failure, and tell of it in the log alone.
    if (!issues.empty() && report.state != SourceState::kFailed) {
      report.state = SourceState::kFailed;
      report.remark = issues;
    }
    issues.clear();
    any_failed = any_failed || report.state == SourceState::kFailed;
    view.Show(report);
  };
  show(InspectStoredSamples(command.database_dir.value_or(PathFromText(shared::TelemetryStorage::GetDefaultDBPath()))));
  inspection::InspectSources(std::max(command.log_level, kLeastIssue), LogAppender::Instance(), show);
  view.Finish();
  if (queries.has_value()) queries->RequireWritten();
  return !any_failed;
}

int Doctor(const DoctorCommand& command, std::ostream& out, std::ostream& err) {
  std::optional<WholeFile> file;
  if (command.output.has_value()) file.emplace(*command.output, "--output");
  const bool all_done =
      AskSources(command, *MakeReportView(command.format, file.has_value() ? file->Stream() : out), err);
  if (file.has_value()) file->Finish();
  return all_done ? kExitDone : kExitFailed;
}

}  // namespace zt::telemetry::host
