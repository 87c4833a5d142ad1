#include "host/inspection/check.h"

#include "messages/source_failure.h"

namespace zt::telemetry::host::inspection {

Answer FailedWith(const std::string& what, std::uint32_t status) {
  return {SourceState::kFailed, what + " (status " + samples::StatusText(status) + ")"};
}

}  // namespace zt::telemetry::host::inspection
