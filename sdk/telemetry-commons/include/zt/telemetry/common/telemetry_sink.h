#pragma once

#include <google/protobuf/message.h>

#include <memory>
#include <string>

#include "zt/telemetry/common/error.h"
#include "zt/zt_commons_export.h"

namespace zt::telemetry::common {

/// Where the records of all collectors of the process go: implemented by the host. Called on the collector's thread.
/// An exception that leaves an operation counts as its failure.
class TelemetrySink {
 public:
  virtual ~TelemetrySink() = default;

  /// Keeps `record` in the host's local database. The message is the caller's; copy what is kept.
  virtual Error Store(const google::protobuf::Message& record) = 0;
  /// Queues `record` for upload. The message is the caller's; copy what is kept.
  virtual Error Send(const google::protobuf::Message& record) = 0;
  /// Queues an upload that is text already.
  virtual Error Send(const std::string& text) = 0;
};

/// Makes `sink` the receiver of every record from now on; null takes the receiver away. Process-wide.
ZT_COMMONS_EXPORT void RegisterTelemetrySink(std::shared_ptr<TelemetrySink> sink);

/// The receiver, null when the host registered none.
ZT_COMMONS_EXPORT std::shared_ptr<TelemetrySink> RegisteredTelemetrySink();

}  // namespace zt::telemetry::common
