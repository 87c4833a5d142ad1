#pragma once

#include <cstdint>
#include <map>
#include <string>

namespace zt::tests {

/// What the process holds, counted: by what it is.
using LiveThings = std::map<std::string, std::int64_t>;

/// What the system says that the process holds: its open files, or its handles.
void CountSystemThings(LiveThings& things);

/// Whether blocks of memory that are allocated from here on count as the collector's; only where the program's own
/// operator new serves the collector too.
void CountAllocations(bool count);

/// The collector's blocks that were not given back.
std::int64_t LiveAllocations();

}  // namespace zt::tests
