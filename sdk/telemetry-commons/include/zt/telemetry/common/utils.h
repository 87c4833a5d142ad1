#pragma once

#include <cstddef>
#include <string>

#include "zt/zt_commons_export.h"

namespace zt::telemetry::common {

/// Texts on their way into a record.
class ZT_COMMONS_EXPORT Utils {
 public:
  /// `text` as a record can hold it: valid UTF-8 of at most `limit` bytes, never cut inside a character; "unknown" for
  /// an empty text. A byte that is no part of a UTF-8 character becomes U+FFFD.
  static std::string AdjustString(const std::string& text, unsigned long long limit);

  /// The same without a limit.
  static std::string AdjustString(const std::string& text);
};

}  // namespace zt::telemetry::common
