#include "host/network/network.h"

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/consent/consented_network.h"
#include "host/consent/consented_texts.h"
#include "host/failure.h"
#include "host/inspection/inspect_network.h"
#include "host/log_appender.h"
#include "host/log_output.h"
#include "host/machine_choice.h"
#include "host/network/network_json.h"
#include "host/network/network_text.h"
#include "host/query_recorder.h"

namespace zt::telemetry::host {
namespace {

// A pass that goes on after a failure tells of it in the log alone, as an error.
constexpr plog::Severity kLeastFailure = plog::error;

void Show(const NetworkCommand& command, const inspection::NetworkReport& report, std::ostream& out) {
  if (command.format == OutputFormat::kJson) {
    out << NetworkJson(report) << std::endl;
  } else {
    out << NetworkText(report) << std::flush;
  }
  if (!out) throw std::runtime_error("the output cannot be written");
}

}  // namespace

int Network(const NetworkCommand& command, std::ostream& out, std::ostream& err) {
  const Consent& consent = command.settings.consent;
  if (!consent.Includes(RecordSection::kNetwork)) {
    throw WrongUsage("network: the configuration switches this section off (sections.network)");
  }
  ChooseMachine(command.machine);
  std::optional<QueryRecorder> queries;
  if (command.queries.has_value()) queries.emplace(*command.queries, command.settings.consent);
  std::vector<std::string> errors;
  LogOutput log(command.settings, err);
  const LogAppender::Target log_target([&](const plog::Record& record) {
    if (record.getSeverity() <= command.log_level) log.Write(record);
    if (record.getSeverity() <= kLeastFailure) errors.push_back(MessageText(record));
  });

  inspection::NetworkReport report =
      inspection::InspectNetwork(std::max(command.log_level, kLeastFailure), LogAppender::Instance());
  ApplyConsent(consent, report);
  Show(command, report, out);
  for (const std::string& error : errors) {
    if (inspection::TellsOfFailure(error, report)) report.failures.push_back(ConsentedMessage(consent, error));
  }
  for (const std::string& failure : report.failures) err << "network: " << failure << std::endl;
  if (queries.has_value()) queries->RequireWritten();
  return report.failures.empty() ? kExitDone : kExitFailed;
}

}  // namespace zt::telemetry::host
