#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "fleet/forward/counters.h"
#include "fleet/forward/record_maker.h"
#include "fleet/forward/record_sink.h"
#include "fleet/forward/record_splitter.h"

namespace zt::telemetry::fleet {

/// One input on its way to the sink: what is read from standard input, or a file.
class InputForwarder {
 public:
  /// `name` is the input's, for those who look for what was wrong in it.
  InputForwarder(std::string name, InputForm form, RecordMaker& maker, RecordSink& sink, Counters& counters)
      : name_(std::move(name)), splitter_(form), maker_(maker), sink_(sink), counters_(counters) {}

  /// Forwards what the chunk completes. False when the program shall end meanwhile: the rest was not forwarded.
  bool Add(std::string_view chunk);
  /// Forwards what is left; no more is coming.
  bool End();

  const Delivery& Deliveries() const { return delivery_; }
  /// Some of the input is in no record and, for its size, in no dead letter: whoever has it had better keep it.
  bool HasLostItsPlace() const { return lost_; }

 private:
  bool ForwardWhole();
  bool Forward(const Piece& piece);
  std::string Place() const;

  std::string name_;
  RecordSplitter splitter_;
  RecordMaker& maker_;
  RecordSink& sink_;
  Counters& counters_;
  Delivery delivery_;
  std::int64_t pieces_ = 0;
  bool lost_ = false;
};

}  // namespace zt::telemetry::fleet
