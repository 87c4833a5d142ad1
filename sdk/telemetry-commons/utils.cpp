#include "zt/telemetry/common/utils.h"

#include <utf8.h>

#include <iterator>
#include <limits>

namespace zt::telemetry::common {
namespace {

constexpr char kEmptyText[] = "unknown";

// A continuation byte of a UTF-8 character: 10xxxxxx.
bool ContinuesCharacter(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

}  // namespace

std::string Utils::AdjustString(const std::string& text, unsigned long long limit) {
  if (text.empty()) return kEmptyText;
  std::string valid;
  utf8::replace_invalid(text.begin(), text.end(), std::back_inserter(valid));
  if (valid.size() <= limit) return valid;
  std::size_t end = static_cast<std::size_t>(limit);
  while (end > 0 && ContinuesCharacter(valid[end])) --end;
  valid.resize(end);
  return valid;
}

std::string Utils::AdjustString(const std::string& text) {
  return AdjustString(text, std::numeric_limits<unsigned long long>::max());
}

}  // namespace zt::telemetry::common
