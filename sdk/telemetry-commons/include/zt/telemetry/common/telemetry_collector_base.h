#pragma once

#include <google/protobuf/message.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "zt/shared/plugin/plugin_module.h"
#include "zt/telemetry/common/error.h"
#include "zt/zt_commons_export.h"

/// Common base of all collector modules of the host.
class ZT_COMMONS_EXPORT TelemetryCollectorBaseClass : public zt::shared::plugin::IDynamicPluginModule {
 public:
  ~TelemetryCollectorBaseClass() override;
};

namespace zt::telemetry::common {

/// The host's event types that a performance-samples collector knows; other numbers are valid and mean nothing to it.
enum class EventType : std::int32_t {
  kNone = 0,
  /// The host's schedule is due.
  kScheduledCollection = 20,
  /// A collection is wanted now.
  kRequestedCollection = 50,
  /// Send the fixed example upload instead.
  kExampleUpload = 51,
};

/// Base of the host's collectors: reads the parameters of a call, runs the collector's source, reports the outcome, and
/// delivers what the collector hands over to the host's `TelemetrySink`.
class ZT_COMMONS_EXPORT TelemetryCollectorBase : public TelemetryCollectorBaseClass {
 public:
  TelemetryCollectorBase();
  ~TelemetryCollectorBase() override;

  /// One collection. `params`: a JSON object with the integer "eventType". The outcome is a JSON object with "kind",
  /// "code", "description", "typeName" and "message" (an `Error`; all 0 and empty on success) and "messages" and
  /// "databases", the names that the collector announced by `GetDatabases`. Malformed parameters are reported and run
  /// nothing; a call while a collector of the same class collects is refused so too. No exception leaves either form.
  /// An outcome that is too long for the buffer, or that there is no memory to write, is "kind" and "code" alone.
  void Execute(const char* params, char* result) override;
  void Execute(const char* params, char*& result, const zt::shared::plugin::PluginBufferAllocator& allocator) override;

 protected:
  /// Ends a collection; `outcome` is what `ReadSource` returned. Returns what is reported to the host.
  virtual Error Finalize(const Error& outcome);

  /// Adds a prototype of each record type that the collector stores, and the names of databases of its own.
  virtual void GetDatabases(std::vector<std::shared_ptr<google::protobuf::Message>>& messages,
                            std::vector<std::string>& databases) = 0;

  /// The collection itself.
  virtual Error ReadSource() = 0;

  /// The event type of the running call.
  EventType ParamsGetEventType() const { return event_type_; }

  /// Hands a record to the host's store, or to its upload queue. Fails (kind 5) when the host registered no sink or the
  /// sink fails.
  Error AddStore(const google::protobuf::Message& record);
  Error AddSend(const google::protobuf::Message& record);
  Error AddSend(std::string text);

 private:
  Error Run(const char* params, std::string& text) noexcept;
  Error Collect(const char* params, std::vector<std::shared_ptr<google::protobuf::Message>>& messages,
                std::vector<std::string>& databases);

  EventType event_type_ = EventType::kNone;
};

}  // namespace zt::telemetry::common
