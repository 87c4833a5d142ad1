#pragma once

#include <string>

namespace zt::telemetry::collector::performancesamples {

/// A complete upload of made-up sample data as JSON text, 6311 characters: what event type 51 sends.
extern const std::string example_upload_;

}  // namespace zt::telemetry::collector::performancesamples
