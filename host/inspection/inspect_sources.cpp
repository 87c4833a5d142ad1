#include "host/inspection/inspect_sources.h"

#include <google/protobuf/descriptor.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <utility>
#include <vector>

#include "host/inspection/diagnoses.h"
#include "host/inspection/failure_text.h"
#include "host/inspection/firmware_checks.h"
#include "messages/perf_messages.h"
#include "plugin/logger_export.h"

namespace zt::telemetry::host::inspection {
namespace {

using samples::PerfMessages;

constexpr int kEventOfInspections = 0;  // no collection's

// A builder may leave sections behind that hold nothing.
bool HoldsFigures(const google::protobuf::Message& message) {
  const auto& reflection = *message.GetReflection();
  std::vector<const google::protobuf::FieldDescriptor*> fields;
  reflection.ListFields(message, &fields);
  return std::any_of(fields.begin(), fields.end(), [&](const google::protobuf::FieldDescriptor* field) {
    const bool is_section = !field->is_repeated() && field->message_type() != nullptr;
    return !is_section || HoldsFigures(reflection.GetMessage(message, field));
  });
}

// A builder that adds nothing tells of an absence in `none`.
Answer RunBuilder(PerfMessages& builder, const char* none) {
  builder.PopulateStorageAndUploadProtos();
  if (HoldsFigures(*PerfMessages::static_cdm_)) return {};
  return {SourceState::kAbsent, none};
}

template <typename Ask>
Answer AskSafely(const Ask& ask) {
  try {
    return ask();
  } catch (...) {
    return {SourceState::kFailed, CurrentFailureText()};
  }
}

Answer AskSource(const samples::Source& source, const Diagnosis& diagnosis, samples::Clients& clients) {
  Answer answer = AskSafely([&] { return RunBuilder(*source.make(clients), diagnosis.none); });
  if (diagnosis.look_behind == nullptr) return answer;
  return AskSafely([&] { return diagnosis.look_behind(std::move(answer)); });
}

// `ask` leaves its figures in the collector's record.
template <typename Ask>
SourceReport Report(const char* name, const Ask& ask) {
  PerfMessages::static_cdm_->Clear();
  const auto start = std::chrono::steady_clock::now();
  Answer answer = ask();
  const std::chrono::nanoseconds time = std::chrono::steady_clock::now() - start;
  SourceReport report{name, answer.state, std::move(answer.remark), time, {}};
  if (answer.state != SourceState::kAbsent) report.figures = *PerfMessages::static_cdm_;
  return report;
}

void RunChecks(std::span<const Check> checks, samples::Clients& clients, const ReportReceiver& receive) {
  for (const Check& check : checks) {
    receive(Report(check.name, [&] { return AskSafely([&] { return check.ask(clients); }); }));
  }
}

}  // namespace

void InspectSource(const samples::Source& source, samples::Clients& clients, const ReportReceiver& receive) {
  const Diagnosis diagnosis = DiagnosisOf(source.name);
  RunChecks(diagnosis.checks_before, clients, receive);
  receive(Report(source.name, [&] { return AskSource(source, diagnosis, clients); }));
}

void InspectSources(plog::Severity log_level, plog::IAppender& log, const ReportReceiver& receive) {
  ztSharedInitializeLogger(log_level, &log);
  PerfMessages::Init(nullptr, kEventOfInspections);
  samples::Clients clients;
  RunChecks(FirmwareChecks(), clients, receive);
  for (const samples::Source& source : samples::Sources()) InspectSource(source, clients, receive);
}

}  // namespace zt::telemetry::host::inspection
