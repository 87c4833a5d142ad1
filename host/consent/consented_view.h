#pragma once

#include <cstddef>
#include <string>

#include "host/consent/consent.h"
#include "host/views/hand_over_view.h"

namespace zt::telemetry::host {

/// Stands before another view, which is shown what the consent includes and nothing else. Where a part is held back, so
/// is each text: nobody knows what is in it.
class ConsentedView : public HandOverView {
 public:
  /// Both must outlive the view.
  ConsentedView(const Consent& consent, HandOverView& view) : consent_(consent), view_(view) {}

  void ShowStored(const google::protobuf::Message& record) override;
  void ShowSent(const google::protobuf::Message& record) override;
  void ShowSentText(const std::string& text) override;

  /// Hand-overs of which nothing was shown.
  std::size_t HeldBack() const { return held_back_; }

 private:
  void Show(const google::protobuf::Message& record, void (HandOverView::*show)(const google::protobuf::Message&));

  const Consent& consent_;
  HandOverView& view_;
  std::size_t held_back_ = 0;
};

}  // namespace zt::telemetry::host
