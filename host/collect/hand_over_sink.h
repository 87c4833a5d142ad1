#pragma once

#include <google/protobuf/message.h>

#include <cstddef>
#include <memory>
#include <string>
#include <utility>

#include "host/views/hand_over_view.h"
#include "zt/telemetry/common/error.h"
#include "zt/telemetry/common/telemetry_sink.h"

namespace zt::telemetry::host {

/// Receives what collectors hand over and shows each on a view. A collector need not look at what became of a
/// hand-over: the first one that could not be written is remembered here.
class HandOverSink : public common::TelemetrySink {
 public:
  explicit HandOverSink(HandOverView& view) : view_(view) {}

  common::Error Store(const google::protobuf::Message& record) override;
  common::Error Send(const google::protobuf::Message& record) override;
  common::Error Send(const std::string& text) override;

  /// Hand-overs received.
  std::size_t Count() const { return count_; }
  /// Success, or what the first hand-over that could not be written failed with.
  const common::Error& FirstFailure() const { return first_failure_; }

 private:
  template <typename Show>
  common::Error Receive(const Show& show);

  HandOverView& view_;
  std::size_t count_ = 0;
  common::Error first_failure_;
};

/// As long as it lives, `sink` receives the hand-overs of the process.
class SinkRegistration {
 public:
  explicit SinkRegistration(std::shared_ptr<common::TelemetrySink> sink) {
    common::RegisterTelemetrySink(std::move(sink));
  }
  ~SinkRegistration() { common::RegisterTelemetrySink(nullptr); }
  SinkRegistration(const SinkRegistration&) = delete;
  SinkRegistration& operator=(const SinkRegistration&) = delete;
};

}  // namespace zt::telemetry::host
