#pragma once

#include <vector>

#include "store/hourly_record.h"
#include "store/sample_database.h"

namespace zt::telemetry::collector::performancesamples {

/// Sends one record for each hour of stored network samples: the interfaces with their Wi-Fi profiles, the TCP counters
/// and whether the machine was connected, from the JSON text of the row ("network_info").
///
/// An hour that holds nothing, or of which a value is missing or of another type, is not sent; the next one follows,
/// also behind a standard exception of `send`. `std::bad_alloc` alone ends it: the hours that were not sent are for
/// another time.
void SendNetworkHours(const std::vector<SummaryRow>& hours, const SendRecord& send);

}  // namespace zt::telemetry::collector::performancesamples
