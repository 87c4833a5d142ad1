#pragma once

namespace zt::telemetry::collector::performancesamples {

/// The one query over the sample database: a "thermal" and a "network" row for each hour that has samples, the thermal
/// row's readings as averages, the network row's as one JSON text ("network_info"). 4,504 characters, LF line ends,
/// nothing after the semicolon: hosts and their tools compare the text.
extern const char kSummaryQuery[];

}  // namespace zt::telemetry::collector::performancesamples
