#pragma once

#include <google/protobuf/message.h>

#include <memory>
#include <string>

#include "checked_record.h"
#include "zt/telemetry/common/telemetry_sink.h"

namespace zt::fuzz {

/// A host that looks at every record and keeps none.
class CheckingSink : public telemetry::common::TelemetrySink {
 public:
  telemetry::common::Error Store(const google::protobuf::Message& record) override {
    CheckRecord(record);
    return {};
  }
  telemetry::common::Error Send(const google::protobuf::Message& record) override {
    CheckRecord(record);
    return {};
  }
  telemetry::common::Error Send(const std::string& text) override {
    Require(!text.empty(), "a text that is sent says something");
    return {};
  }
};

}  // namespace zt::fuzz
