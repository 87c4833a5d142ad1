#include "zt/telemetry/common/telemetry_collector_base.h"

#include <cstring>
#include <limits>
#include <typeinfo>
#include <utility>

#include <nlohmann/json.hpp>

#include "running_collection.h"
#include "zt/telemetry/common/telemetry_sink.h"

namespace zt::shared::plugin {

// Out of line, so that the tables of virtual operations and the type information live in this library alone.
PluginBufferAllocator::~PluginBufferAllocator() = default;
IPluginModule::~IPluginModule() = default;
IDynamicPluginModule::~IDynamicPluginModule() = default;

}  // namespace zt::shared::plugin

TelemetryCollectorBaseClass::~TelemetryCollectorBaseClass() = default;

namespace zt::telemetry::common {
namespace {

using Json = nlohmann::json;

constexpr char kEventTypeKey[] = "eventType";

Error ParameterError(const std::string& description) {
  return {Error::kCallFailed, -1, description, typeid(TelemetryCollectorBase).name(), ""};
}

// Reads the event type out of a call's parameter text; an error says what was wrong with it.
Error ReadEventType(const char* params, EventType& event_type) {
  if (params == nullptr) return ParameterError("Parameters missing: expected a JSON object with \"eventType\"");
  const Json parsed = Json::parse(params, nullptr, /*allow_exceptions=*/false);
  if (parsed.is_discarded()) return ParameterError("Parameters are not valid JSON");
  if (!parsed.is_object()) {
    return ParameterError(std::string("Parameters must be a JSON object, but are ") + parsed.type_name());
  }
  const auto value = parsed.find(kEventTypeKey);
  if (value == parsed.end()) return ParameterError("Parameter \"eventType\" is missing: expected an integer");
  if (!value->is_number_integer()) {
    return ParameterError("Parameter \"eventType\" must be an integer, but is " + value->dump());
  }
  constexpr std::int64_t kMin = std::numeric_limits<std::int32_t>::min();
  constexpr std::uint64_t kMax = std::numeric_limits<std::int32_t>::max();
  // What is not below zero is read as an unsigned number.
  const bool too_large = value->is_number_unsigned() && value->get<std::uint64_t>() > kMax;
  const std::int64_t number = too_large ? 0 : value->get<std::int64_t>();
  if (too_large || number < kMin) {
    return ParameterError("Parameter \"eventType\" must be a 32-bit integer, but is " + value->dump());
  }
  event_type = static_cast<EventType>(number);
  return {};
}

Error AlreadyRunning() {
  return {Error::kCallFailed, -1, "A collection is already running", typeid(TelemetryCollectorBase).name(), ""};
}

std::string OutcomeText(const Error& outcome, const std::vector<std::shared_ptr<google::protobuf::Message>>& messages,
                        const std::vector<std::string>& databases) {
  Json names = Json::array();
  for (const auto& message : messages) {
    if (message != nullptr) names.push_back(std::string(message->GetTypeName()));
  }
  const Json text = {
      {"kind", outcome.kind},          {"code", outcome.code},       {"description", outcome.description},
      {"typeName", outcome.type_name}, {"message", outcome.message}, {"messages", std::move(names)},
      {"databases", databases}};
  return text.dump(-1, ' ', /*ensure_ascii=*/true, Json::error_handler_t::replace);
}

// What an outcome too long for the caller's buffer is replaced by: its figures without its texts.
std::string ShortOutcomeText(const std::string& outcome) {
  const Json whole = Json::parse(outcome);
  return Json{{"kind", whole["kind"]}, {"code", whole["code"]}}.dump();
}

// Hands something to the sink; a missing sink and an exception of the sink are failures like any other.
template <typename Deliver>
Error DeliverToSink(const Deliver& deliver) {
  const std::shared_ptr<TelemetrySink> sink = RegisteredTelemetrySink();
  if (sink == nullptr)
    return {Error::kCallFailed, -1, "No telemetry sink is registered", typeid(TelemetrySink).name(), ""};
  try {
    return deliver(*sink);
  } catch (...) {
    return Error::FromCurrentException();
  }
}

}  // namespace

TelemetryCollectorBase::TelemetryCollectorBase() = default;
TelemetryCollectorBase::~TelemetryCollectorBase() = default;

void TelemetryCollectorBase::Execute(const char* params, char* result) {
  std::string outcome = Run(params);
  if (result == nullptr) return;
  if (outcome.size() >= kResultCapacity) outcome = ShortOutcomeText(outcome);
  std::memcpy(result, outcome.c_str(), outcome.size() + 1);
}

void TelemetryCollectorBase::Execute(const char* params, char*& result,
                                     const zt::shared::plugin::PluginBufferAllocator& allocator) {
  const std::string outcome = Run(params);
  result = allocator.Allocate(outcome.size() + 1);
  if (result != nullptr) std::memcpy(result, outcome.c_str(), outcome.size() + 1);
}

std::string TelemetryCollectorBase::Run(const char* params) {
  // A host's thread that waits in COM runs its timers meanwhile, and one of them may call again.
  const RunningCollection running(typeid(*this));
  if (!running.IsGranted()) return OutcomeText(AlreadyRunning(), {}, {});
  std::vector<std::shared_ptr<google::protobuf::Message>> messages;
  std::vector<std::string> databases;
  Error outcome = ReadEventType(params, event_type_);
  if (!outcome.Failed()) {
    // The one wall between a collector and its host: whatever a collector throws ends here as a report.
    try {
      GetDatabases(messages, databases);
      outcome = Finalize(ReadSource());
    } catch (...) {
      outcome = Error::FromCurrentException();
    }
  }
  return OutcomeText(outcome, messages, databases);
}

Error TelemetryCollectorBase::Finalize(const Error& outcome) {
  return outcome;
}

Error TelemetryCollectorBase::AddStore(const google::protobuf::Message& record) {
  return DeliverToSink([&](TelemetrySink& sink) { return sink.Store(record); });
}

Error TelemetryCollectorBase::AddSend(const google::protobuf::Message& record) {
  return DeliverToSink([&](TelemetrySink& sink) { return sink.Send(record); });
}

Error TelemetryCollectorBase::AddSend(std::string text) {
  return DeliverToSink([&](TelemetrySink& sink) { return sink.Send(text); });
}

}  // namespace zt::telemetry::common
