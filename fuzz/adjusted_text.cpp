// A text of the machine on its way into a record. The first byte of an input is the longest that it may become.
#include <utf8.h>

#include <string>

#include "harness.h"
#include "messages/collection_id.h"
#include "zt/telemetry/common/utils.h"

namespace {

using zt::fuzz::Require;
using zt::telemetry::common::Utils;

void CheckText(const std::string& text, std::size_t longest) {
  Require(utf8::is_valid(text.begin(), text.end()), "an adjusted text is UTF-8");
  Require(text.size() <= longest, "an adjusted text is no longer than it may be");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zt::telemetry::collector::performancesamples;
  if (size == 0) return 0;
  const std::size_t longest = data[0];
  const std::string text(zt::fuzz::TextOf(data + 1, size - 1));
  const std::string adjusted = Utils::AdjustString(text, longest);
  if (!text.empty()) CheckText(adjusted, longest);
  const bool is_kept = !text.empty() && text.size() <= longest && utf8::is_valid(text.begin(), text.end());
  Require(!is_kept || adjusted == text, "a text that fits stays as it is");
  constexpr std::size_t kLongestId = 30;
  CheckText(LiveCollectionId(text, "2026-03-07T12:20:42.000Z"), kLongestId);
  CheckText(HourlyCollectionId(text, text, "-TH"), kLongestId);
  return 0;
}
