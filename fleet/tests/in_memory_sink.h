#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "fleet/forward/record_sink.h"

namespace zt::telemetry::fleet {

/// A sink whose deliveries a test reports.
class InMemorySink : public RecordSink {
 public:
  struct Sent {
    Record record;
    Delivery* delivery;
  };
  struct Dead {
    BadRecord bad;
    std::string source;
    Delivery* delivery;
  };

  bool Send(const Record& record, Delivery& delivery) override {
    if (stops) return false;
    ++delivery.pending;
    sent.push_back({record, &delivery});
    return true;
  }
  bool SendDead(const BadRecord& bad, const std::string& source, Delivery& delivery) override {
    if (stops) return false;
    ++delivery.pending;
    dead.push_back({bad, source, &delivery});
    return true;
  }
  void Tick(int /*milliseconds*/) override {
    ++ticks;
    if (on_tick) on_tick();
  }
  bool Stops() const override { return stops; }

  /// Answers for everything that waits: delivered, or not.
  void Answer(bool is_delivered) {
    for (; answered < sent.size(); ++answered) AnswerOne(*sent[answered].delivery, is_delivered);
    for (; answered_dead < dead.size(); ++answered_dead) AnswerOne(*dead[answered_dead].delivery, is_delivered);
  }

  std::vector<Sent> sent;
  std::vector<Dead> dead;
  std::function<void()> on_tick;
  int ticks = 0;
  bool stops = false;

 private:
  static void AnswerOne(Delivery& delivery, bool is_delivered) {
    --delivery.pending;
    if (!is_delivered) ++delivery.failed;
  }

  std::size_t answered = 0;
  std::size_t answered_dead = 0;
};

}  // namespace zt::telemetry::fleet
