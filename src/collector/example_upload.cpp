#include "collector/example_upload.h"

namespace zt::telemetry::collector::performancesamples {

const std::string example_upload_;

}  // namespace zt::telemetry::collector::performancesamples
