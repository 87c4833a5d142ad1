#pragma once

#include <cstdint>

/// The machine's TCP counters since it started.
namespace zt::telemetry::collector::performancesamples::types {

struct Ipv4Stats {
  std::uint32_t current_connections = 0;  // now in the state ESTABLISHED or CLOSE-WAIT
  std::uint32_t failed_connections = 0;   // attempts
  std::uint32_t errors_received = 0;      // segments
};

struct Ipv6Stats {
  std::uint32_t failed_connections = 0;  // attempts
};

}  // namespace zt::telemetry::collector::performancesamples::types
