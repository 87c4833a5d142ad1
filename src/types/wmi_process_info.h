#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace zt::telemetry::collector::performancesamples {

/// A process as one pass of the process sampler sees it. Some figures change their unit on the way: they are listed as
/// the system gives them, and converted once the process is among the busiest.
struct WMIProcessInfo {
  std::string name;        // UTF-8
  std::string process_id;  // decimal
  std::string status = "unknown";
  std::string start_time;  // local, with an offset text; empty when it is not known
  std::uint32_t priority = 0;
  float cpu_percent = 0;               // of one processor
  float working_set = 0;               // bytes when listed, then MiB with two decimals
  std::uint32_t peak_working_set = 0;  // low 32 bits of the bytes when listed, then whole MiB
  std::uint32_t cpu_time = 0;          // kernel and user, whole seconds
  std::uint32_t io_writes = 0;         // operations
  std::uint32_t io_writes_kb = 0;      // operations divided by 1024
  std::uint32_t io_reads = 0;          // operations
  std::uint32_t io_reads_kb = 0;       // operations divided by 1024
  bool is_elevated = false;
  bool has_window_title = false;
};

/// Processes by the text of their id.
using ProcessTable = std::map<std::string, std::shared_ptr<WMIProcessInfo>>;
using ProcessList = std::vector<std::shared_ptr<WMIProcessInfo>>;

}  // namespace zt::telemetry::collector::performancesamples
