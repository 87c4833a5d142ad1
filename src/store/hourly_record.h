#pragma once

#include <cstdint>
#include <functional>

#include "messages/perf_messages.h"
#include "store/sample_database.h"

namespace zt::telemetry::collector::performancesamples {

/// Hands one finished record over. The record is the caller's: it is filled anew afterwards.
using SendRecord = std::function<void(const PcLogPerformanceSamplesAsCDM& record)>;

/// Stamps a record of stored samples by two clocks. They lie apart by the machine's zone and by the age of the samples,
/// so that a record may name an hour which its own time has not reached yet.
///
/// - `collection_id` carries the samples' hour, "hour_window" of `hour`, which is what their writers stored, read as
///   UTC. It names the samples and not the upload: an hour that is sent twice, because its rows could not be deleted,
///   has the same id, also from a machine that has changed its zone meanwhile.
/// - `local_time` is the moment of sending on the machine's wall clock, as in every live record: it tells in which
///   cycle the hour came. It is read for each hour, since a backlog takes its time.
///
/// `suffix` ends the id. Throws when the row has no hour.
void StampHour(const SummaryRow& hour, const char* suffix, std::uint32_t samples, PcLogPerformanceSamplesAsCDM& record);

/// Takes the stamps off again, for the next hour.
void ClearStamps(PcLogPerformanceSamplesAsCDM& record);

}  // namespace zt::telemetry::collector::performancesamples
