#pragma once

#include <cstdint>
#include <optional>

/// Counters of the system's IP Helper. They have 32 bits and start again at 0. An answer that is absent is a call that
/// failed.
namespace zt::telemetry::collector::performancesamples::platform {

/// Bytes through an interface (`GetIfEntry`).
struct InterfaceCounters {
  std::uint32_t bytes_in = 0;
  std::uint32_t bytes_out = 0;
};

/// Of the interface with this index.
std::optional<InterfaceCounters> CountersOfInterface(std::uint32_t index);

/// Part of `MIB_TCPSTATS`.
struct TcpCounters {
  std::uint32_t established = 0;      // connections in the state ESTABLISHED or CLOSE-WAIT
  std::uint32_t failed_attempts = 0;  // to connect
  std::uint32_t errors_in = 0;        // segments received
};

/// Of TCP over IPv4 (`GetTcpStatistics`).
std::optional<TcpCounters> TcpV4Counters();

/// Of TCP over IPv6 (`GetTcpStatisticsEx`).
std::optional<TcpCounters> TcpV6Counters();

}  // namespace zt::telemetry::collector::performancesamples::platform
