#pragma once

#include <string>
#include <vector>

namespace zt::telemetry::host::inspection {

/// As long as it lives, each table of WMI that could not be queried becomes a line of `failures`: the collector counts
/// several such queries as ones without rows. One at a time.
class FailedQueries {
 public:
  explicit FailedQueries(std::vector<std::string>& failures);
  ~FailedQueries();
  FailedQueries(const FailedQueries&) = delete;
  FailedQueries& operator=(const FailedQueries&) = delete;
};

}  // namespace zt::telemetry::host::inspection
