#pragma once

#include <vector>

#include "store/hourly_record.h"
#include "store/sample_database.h"
#include "zt/shared/wmi/wmi_client.h"

namespace zt::telemetry::collector::performancesamples {

/// Sends one record for each hour of stored thermal samples: averages of temperatures (whole degrees Celsius) and of
/// the fans' figures (as stored), beside the processor's identity and load (percent) of this moment, which `wmi` tells.
///
/// A reading that is missing or no number leaves out its block of the hour (processor, board, fans); a row without a
/// number of samples is not sent. What `send` throws is dropped, and the next hour follows. `std::bad_alloc` alone ends
/// it: the hours that were not sent are for another time.
void SendThermalHours(const std::vector<SummaryRow>& hours, shared::wmi::WMIClient& wmi, const SendRecord& send);

}  // namespace zt::telemetry::collector::performancesamples
