// A time with its offset, as records are stamped with it.
#include "messages/local_time.h"

#include <string>

#include "harness.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zt::telemetry::collector::performancesamples;
  const std::string text(zt::fuzz::TextOf(data, size));
  const std::string stamp = RecordForm(text);
  if (stamp.empty()) return 0;
  constexpr std::size_t kForm = sizeof "2026-03-07T12:20:42.000Z" - 1;
  zt::fuzz::Require(stamp.size() >= kForm && stamp.ends_with(".000Z"), "a stamp has its form");
  // What its month lacks counts on, also into the year 10000, which no stamp is read from.
  if (stamp.size() > kForm) return 0;
  const std::string again = RecordForm(stamp.substr(0, stamp.find('.')) + "+00:00");
  zt::fuzz::Require(again == stamp, "a stamp says a time that there is");
  return 0;
}
