#pragma once

#include <string>
#include <vector>

#include "host/outbox/kept_record.h"
#include "host/views/hand_over_view.h"

namespace zt::telemetry::host {

/// Gathers what is handed over, for an outbox to keep all of it at once.
class KeepingView : public HandOverView {
 public:
  void ShowStored(const google::protobuf::Message& record) override { hand_overs_.push_back(Kept(kStoreKind, record)); }
  void ShowSent(const google::protobuf::Message& record) override { hand_overs_.push_back(Kept(kSendKind, record)); }
  void ShowSentText(const std::string& text) override { hand_overs_.push_back(KeptText(text)); }

  const std::vector<HandOver>& HandOvers() const { return hand_overs_; }

 private:
  std::vector<HandOver> hand_overs_;
};

}  // namespace zt::telemetry::host
