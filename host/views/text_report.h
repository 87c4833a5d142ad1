#pragma once

#include <ostream>
#include <string_view>

#include "host/views/hand_over_view.h"
#include "host/views/record_layout.h"

namespace zt::telemetry::host {

/// Hand-overs as tables for people: a heading with the record's name, identity and time, then each section that holds
/// something. A field without a place in the layout is shown by its name. A text that is an upload in JSON form is
/// shown as that upload.
class TextReport : public HandOverView {
 public:
  /// `stream` must outlive the view.
  explicit TextReport(std::ostream& stream) : stream_(stream) {}

  void ShowStored(const google::protobuf::Message& record) override;
  void ShowSent(const google::protobuf::Message& record) override;
  void ShowSentText(const std::string& text) override;

 private:
  void ShowRecord(std::string_view hand_over, const google::protobuf::Message& record);
  void Write(const std::string& text);

  std::ostream& stream_;
};

}  // namespace zt::telemetry::host
