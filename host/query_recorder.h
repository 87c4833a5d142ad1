#pragma once

#include <filesystem>
#include <fstream>

#include "host/consent/consent.h"

namespace zt::telemetry::host {

/// As long as it lives, the text of every WQL query of the process goes to a file, one a line, in the order in which
/// the queries run.
class QueryRecorder {
 public:
  /// Makes `file` anew; fails with wrong usage when it cannot be written. What `consent`, which must outlive it, holds
  /// back is left out.
  QueryRecorder(const std::filesystem::path& file, const Consent& consent);
  ~QueryRecorder();
  QueryRecorder(const QueryRecorder&) = delete;
  QueryRecorder& operator=(const QueryRecorder&) = delete;

  /// Fails when a query could not be written.
  void RequireWritten();

 private:
  std::filesystem::path file_;
  std::ofstream stream_;
};

}  // namespace zt::telemetry::host
