#include "host/network/network.h"

#include <optional>
#include <stdexcept>
#include <string>

#include "host/failure.h"
#include "host/inspection_library.h"
#include "host/log_appender.h"
#include "host/machine_choice.h"
#include "host/network/network_json.h"
#include "host/network/network_text.h"
#include "host/query_recorder.h"

namespace zt::telemetry::host {

int Network(const NetworkCommand& command, std::ostream& out, std::ostream& err) {
  ChooseMachine(command.machine);
  const InspectionLibrary library;
  std::optional<QueryRecorder> queries;
  if (command.queries.has_value()) queries.emplace(*command.queries);
  const LogAppender::Target log_target(err);

  inspection::NetworkReport report;
  library.InspectNetwork(LogAppender::Instance(), report);
  if (command.format == OutputFormat::kJson) {
    out << NetworkJson(report) << std::endl;
  } else {
    out << NetworkText(report) << std::flush;
  }
  if (!out) throw std::runtime_error("the output cannot be written");
  for (const std::string& failure : report.failures) err << "network: " << failure << std::endl;
  if (queries.has_value()) queries->RequireWritten();
  return report.failures.empty() ? kExitDone : kExitFailed;
}

}  // namespace zt::telemetry::host
