#include "host/consent/consented_view.h"

#include <memory>

#include "host/consent/record_filter.h"

namespace zt::telemetry::host {

using google::protobuf::Message;

void ConsentedView::ShowStored(const Message& record) {
  Show(record, &HandOverView::ShowStored);
}

void ConsentedView::ShowSent(const Message& record) {
  Show(record, &HandOverView::ShowSent);
}

void ConsentedView::ShowSentText(const std::string& text) {
  if (consent_.IsWhole()) return view_.ShowSentText(text);
  ++held_back_;
}

void ConsentedView::Show(const Message& record, void (HandOverView::*show)(const Message&)) {
  if (consent_.IsWhole()) return (view_.*show)(record);
  // The record is the collector's.
  const std::unique_ptr<Message> copy(record.New());
  copy->CopyFrom(record);
  if (ApplyConsent(consent_, *copy)) return (view_.*show)(*copy);
  ++held_back_;
}

}  // namespace zt::telemetry::host
