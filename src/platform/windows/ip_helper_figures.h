#pragma once

#include <windows.h>
#include <iphlpapi.h>

#include "platform/ip_helper.h"

/// What is taken of the rows of the system's IP Helper.
namespace zt::telemetry::collector::performancesamples::platform {

inline InterfaceCounters CountersOf(const MIB_IFROW& row) {
  return {.bytes_in = row.dwInOctets, .bytes_out = row.dwOutOctets};
}

inline TcpCounters CountersOf(const MIB_TCPSTATS& statistics) {
  return {.established = statistics.dwCurrEstab,
          .failed_attempts = statistics.dwAttemptFails,
          .errors_in = statistics.dwInErrs};
}

}  // namespace zt::telemetry::collector::performancesamples::platform
