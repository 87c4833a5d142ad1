#include "platform/nvml_files.h"

namespace zt::telemetry::collector::performancesamples::platform {

std::vector<std::filesystem::path> NvmlFiles() {
  return {"libnvidia-ml.so.1"};
}

}  // namespace zt::telemetry::collector::performancesamples::platform
