#pragma once

#include <vector>

#include "types/graphic_card_info.h"
#include "zt/telemetry/common/error.h"
#include "zt/zt_collector_export.h"

namespace zt::telemetry::collector::performancesamples {

/// As many cards as a vendor's library is asked for one by one. No machine has as many: a library that counts more is
/// out of order, and asking it for billions of cards would hold the host for as long.
inline constexpr int kMostCardsOfVendor = 256;

/// One vendor's way to its graphics cards. The order of the operations is part of the interface.
class ZT_COLLECTOR_EXPORT AbstractGPUVendor {
 public:
  virtual ~AbstractGPUVendor() = default;

  /// Appends each card found to `cards`, which is never cleared. Returns success, or why the vendor has nothing to say;
  /// cards that were appended before a failure stay.
  virtual common::Error QueryValues(std::vector<types::GraphicCardInfo>* cards) = 0;
};

}  // namespace zt::telemetry::collector::performancesamples
