#include "host/doctor/doctor.h"

#include <memory>
#include <string>

#include "host/doctor/report_view.h"
#include "host/doctor/stored_samples.h"
#include "host/failure.h"
#include "host/inspection_library.h"
#include "host/log_appender.h"
#include "host/machine_choice.h"
#include "host/program_environment.h"
#include "zt/shared/telemetry_storage.h"

namespace zt::telemetry::host {

using inspection::SourceState;

int Doctor(const DoctorCommand& command, std::ostream& out) {
  ChooseMachine(command.machine);
  const InspectionLibrary library;
  const std::unique_ptr<ReportView> view = MakeReportView(command.format, out);
  std::string issues;
  const LogAppender::Target log_target(
      [&issues](const plog::Record& record) { issues += (issues.empty() ? "" : "; ") + MessageText(record); });
  bool any_failed = false;
  const auto show = [&](inspection::SourceReport report) {
    // Some sources go on after a failure, and tell of it in the log alone.
    if (!issues.empty() && report.state != SourceState::kFailed) {
      report.state = SourceState::kFailed;
      report.remark = issues;
    }
    issues.clear();
    any_failed = any_failed || report.state == SourceState::kFailed;
    view->Show(report);
  };
  show(InspectStoredSamples(command.database_dir.value_or(PathFromText(shared::TelemetryStorage::GetDefaultDBPath()))));
  library.InspectSources(LogAppender::Instance(), show);
  view->Finish();
  return any_failed ? kExitFailed : kExitDone;
}

}  // namespace zt::telemetry::host
