#include "zt/telemetry/common/telemetry_collector_base.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <limits>
#include <string_view>
#include <typeinfo>
#include <utility>

#include "base/json_document.h"
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

using base::JsonDocument;
using Json = JsonDocument::Json;

constexpr char kEventTypeKey[] = "eventType";

Error ParameterError(const std::string& description) {
  return {Error::kCallFailed, -1, description, typeid(TelemetryCollectorBase).name(), ""};
}

// Whether a value holds others below so many levels of them.
bool IsDeeperThan(int levels, const Json& value) {
  if (!value.is_structured()) return false;
  if (levels == 0) return true;
  return std::any_of(value.begin(), value.end(), [=](const Json& member) { return IsDeeperThan(levels - 1, member); });
}

// A value as JSON; one of many levels by its type alone. The library writes each level by a call in a call, and a
// host's thread has only so much of a stack.
std::string Describe(const Json& value) {
  constexpr int kMostLevels = 32;
  return IsDeeperThan(kMostLevels, value) ? std::string("deeply nested ") + value.type_name() : value.dump();
}

// Reads the event type out of a call's parameter text; an error says what was wrong with it.
Error ReadEventType(const char* params, EventType& event_type) {
  if (params == nullptr) return ParameterError("Parameters missing: expected a JSON object with \"eventType\"");
  JsonDocument document;
  if (!document.Read(params)) return ParameterError("Parameters are not valid JSON");
  const Json& parsed = document.Root();
  if (!parsed.is_object()) {
    return ParameterError(std::string("Parameters must be a JSON object, but are ") + parsed.type_name());
  }
  const auto value = parsed.find(kEventTypeKey);
  if (value == parsed.end()) return ParameterError("Parameter \"eventType\" is missing: expected an integer");
  if (!value->is_number_integer()) {
    return ParameterError("Parameter \"eventType\" must be an integer, but is " + Describe(*value));
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
  JsonDocument document;
  Json& text = document.Root() = Json::value_t::object;
  text["kind"] = outcome.kind;
  text["code"] = outcome.code;
  text["description"] = outcome.description;
  text["typeName"] = outcome.type_name;
  text["message"] = outcome.message;
  Json& names = text["messages"] = Json::value_t::array;
  for (const auto& message : messages) {
    if (message != nullptr) names.push_back(std::string(message->GetTypeName()));
  }
  Json& places = text["databases"] = Json::value_t::array;
  for (const std::string& database : databases) places.push_back(database);
  return text.dump(-1, ' ', /*ensure_ascii=*/true, Json::error_handler_t::replace);
}

// An outcome without its texts, where it is too long for the caller's buffer or where there is no memory to write it:
// it takes none itself.
class ShortOutcome {
 public:
  explicit ShortOutcome(const Error& outcome)
      : size_(std::snprintf(text_, sizeof text_, R"({"code":%lld,"kind":%d})", static_cast<long long>(outcome.code),
                            static_cast<int>(outcome.kind))) {}

  std::string_view Text() const { return {text_, static_cast<std::size_t>(size_)}; }

 private:
  char text_[sizeof R"({"code":-9223372036854775808,"kind":-2147483648})"];
  int size_;
};

void CopyWithEnd(std::string_view text, char* to) {
  text.copy(to, text.size());
  to[text.size()] = '\0';
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
  std::string text;
  const ShortOutcome outcome(Run(params, text));
  if (result == nullptr) return;
  CopyWithEnd(text.empty() || text.size() >= kResultCapacity ? outcome.Text() : text, result);
}

void TelemetryCollectorBase::Execute(const char* params, char*& result,
                                     const zt::shared::plugin::PluginBufferAllocator& allocator) {
  std::string text;
  const ShortOutcome outcome(Run(params, text));
  const std::string_view told = text.empty() ? outcome.Text() : text;
  result = allocator.Allocate(told.size() + 1);
  if (result != nullptr) CopyWithEnd(told, result);
}

Error TelemetryCollectorBase::Run(const char* params, std::string& text) noexcept {
  Error outcome;
  std::vector<std::shared_ptr<google::protobuf::Message>> messages;
  std::vector<std::string> databases;
  // The one wall between a collector and its host: whatever a collector throws ends here as a report.
  try {
    outcome = Collect(params, messages, databases);
  } catch (...) {
    outcome = Error::FromCurrentException();
  }
  try {
    text = OutcomeText(outcome, messages, databases);
  } catch (...) {
    text.clear();
  }
  return outcome;
}

Error TelemetryCollectorBase::Collect(const char* params,
                                      std::vector<std::shared_ptr<google::protobuf::Message>>& messages,
                                      std::vector<std::string>& databases) {
  // A host's thread that waits in COM runs its timers meanwhile, and one of them may call again.
  const RunningCollection running(typeid(*this));
  if (!running.IsGranted()) return AlreadyRunning();
  Error outcome = ReadEventType(params, event_type_);
  if (outcome.Failed()) return outcome;
  GetDatabases(messages, databases);
  return Finalize(ReadSource());
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
