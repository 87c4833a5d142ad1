#pragma once

#include "performance_samples_upload.pb.h"
#include "types/graphic_card_info.h"

namespace zt::telemetry::collector::performancesamples {

/// Fills a new entry of the record with the figures of `card`. Texts are cut to 64 bytes, and "unknown" where there is
/// none; a memory share that is no number stays unset.
void FillEntry(const types::GraphicCardInfo& card,
               contract::upload::log::PcLogPerformanceSamplesAsCDM_HwInfo_GraphicsCardInfo& entry);

}  // namespace zt::telemetry::collector::performancesamples
