#include "host/inspection/check.h"

#include "host/inspection/failure_text.h"

namespace zt::telemetry::host::inspection {

Answer FailedWith(const std::string& what, std::uint32_t status) {
  return {SourceState::kFailed, what + " (status " + StatusText(status) + ")"};
}

}  // namespace zt::telemetry::host::inspection
