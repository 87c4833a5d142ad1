#include "host/collect/hand_over_sink.h"

#include <exception>
#include <typeinfo>

namespace zt::telemetry::host {

using common::Error;

template <typename Show>
Error HandOverSink::Receive(const Show& show) {
  ++count_;
  try {
    show();
    return {};
  } catch (const std::exception& failure) {
    const Error error{Error::kCallFailed, -1, failure.what(), typeid(HandOverSink).name(), ""};
    if (!first_failure_.Failed()) first_failure_ = error;
    return error;
  }
}

Error HandOverSink::Store(const google::protobuf::Message& record) {
  return Receive([&] { view_.ShowStored(record); });
}

Error HandOverSink::Send(const google::protobuf::Message& record) {
  return Receive([&] { view_.ShowSent(record); });
}

Error HandOverSink::Send(const std::string& text) {
  return Receive([&] { view_.ShowSentText(text); });
}

}  // namespace zt::telemetry::host
