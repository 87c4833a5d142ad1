#pragma once

#include <ostream>
#include <string_view>

#include "host/views/hand_over_view.h"

namespace zt::telemetry::host {

/// One line of JSON for each hand-over, for programs: {"handover":"store"|"send","type":"…","record":{…}}, the record
/// in protobuf's default mapping; {"handover":"send","type":"text","text":"…"} for a text. Each line is flushed.
class JsonLines : public HandOverView {
 public:
  /// `stream` must outlive the view.
  explicit JsonLines(std::ostream& stream) : stream_(stream) {}

  void ShowStored(const google::protobuf::Message& record) override;
  void ShowSent(const google::protobuf::Message& record) override;
  void ShowSentText(const std::string& text) override;

 private:
  void WriteRecord(std::string_view hand_over, const google::protobuf::Message& record);
  void WriteLine(const std::string& line);

  std::ostream& stream_;
};

}  // namespace zt::telemetry::host
