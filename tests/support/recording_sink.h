#pragma once

#include <google/protobuf/message.h>

#include <memory>
#include <string>
#include <vector>

#include "device_performance_storage.pb.h"
#include "performance_samples_upload.pb.h"
#include "zt/telemetry/common/telemetry_sink.h"

namespace zt::tests {

using telemetry::contract::storage::device_performance::AmdPmfSamples;
using telemetry::contract::upload::log::PcLogPerformanceSamplesAsCDM;

/// A host's receiver that keeps copies of what is handed over, in order, and can be told to refuse it.
class RecordingSink : public telemetry::common::TelemetrySink {
 public:
  // Not CopyFrom, for which some builds of protobuf make their descriptors: tests look whether the collector does.
  telemetry::common::Error Store(const google::protobuf::Message& record) override {
    stored.emplace_back().MergeFrom(record);
    return store_outcome;
  }
  telemetry::common::Error Send(const google::protobuf::Message& record) override {
    sent.emplace_back().MergeFrom(record);
    return send_outcome;
  }
  telemetry::common::Error Send(const std::string& text) override {
    texts.push_back(text);
    return send_outcome;
  }

  std::vector<AmdPmfSamples> stored;
  std::vector<PcLogPerformanceSamplesAsCDM> sent;
  std::vector<std::string> texts;
  telemetry::common::Error store_outcome;
  telemetry::common::Error send_outcome;
};

/// A sink that is registered from here on.
inline std::shared_ptr<RecordingSink> RegisterRecordingSink() {
  auto sink = std::make_shared<RecordingSink>();
  telemetry::common::RegisterTelemetrySink(sink);
  return sink;
}

}  // namespace zt::tests
