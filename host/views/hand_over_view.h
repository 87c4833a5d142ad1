#pragma once

#include <google/protobuf/message.h>

#include <string>

namespace zt::telemetry::host {

/// A way to show what a collector hands over. An operation that cannot write all of its hand-over throws a
/// `std::exception` that says why.
class HandOverView {
 public:
  virtual ~HandOverView() = default;

  virtual void ShowStored(const google::protobuf::Message& record) = 0;
  virtual void ShowSent(const google::protobuf::Message& record) = 0;
  virtual void ShowSentText(const std::string& text) = 0;
};

}  // namespace zt::telemetry::host
