#pragma once

#include "zt/telemetry/common/telemetry_sink.h"

namespace zt::bench {

/// A host that counts what is handed over and keeps nothing.
class CountingSink : public telemetry::common::TelemetrySink {
 public:
  telemetry::common::Error Store(const google::protobuf::Message&) override { return Count(); }
  telemetry::common::Error Send(const google::protobuf::Message&) override { return Count(); }
  telemetry::common::Error Send(const std::string&) override { return Count(); }

  int Records() const { return records_; }

 private:
  telemetry::common::Error Count() {
    ++records_;
    return {};
  }

  int records_ = 0;
};

}  // namespace zt::bench
