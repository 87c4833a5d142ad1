#include "host/doctor/doctor.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "host/consent/consented_texts.h"
#include "host/consent/record_filter.h"
#include "host/doctor/report_view.h"
#include "host/doctor/stored_samples.h"
#include "host/failure.h"
#include "host/inspection/inspect_sources.h"
#include "host/log_appender.h"
#include "host/log_output.h"
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

// What is said of a source that is absent is this program's own; of others, it can be the machine's.
void HoldBack(const Consent& consent, inspection::SourceReport& report) {
  if (consent.IsWhole()) return;
  if (!ApplyConsent(consent, report.figures)) report.figures.Clear();
  if (report.state != SourceState::kAbsent && !report.remark.empty()) report.remark = kLeftOut;
}

}  // namespace

bool AskSources(const DoctorCommand& command, ReportView& view, std::ostream& err) {
  ChooseMachine(command.machine);
  std::optional<QueryRecorder> queries;
  if (command.queries.has_value()) queries.emplace(*command.queries, command.settings.consent);
  std::string issues;
  LogOutput log(command.settings, err);
  const LogAppender::Target log_target([&](const plog::Record& record) {
    if (record.getSeverity() <= command.log_level) log.Write(record);
    if (record.getSeverity() <= kLeastIssue) issues += (issues.empty() ? "" : "; ") + log.Message(record);
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
  inspection::InspectSources(std::max(command.log_level, kLeastIssue), LogAppender::Instance(),
                             [&](inspection::SourceReport report) {
                               HoldBack(command.settings.consent, report);
                               show(std::move(report));
                             });
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
