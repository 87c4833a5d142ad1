#include "messages/collection_id.h"

#include "zt/telemetry/common/utils.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

constexpr unsigned long long kMaxLength = 30;
constexpr std::size_t kHourLength = sizeof "2024-05-01T10" - 1;

}  // namespace

std::string LiveCollectionId(const std::string& serial_number, const std::string& time) {
  return common::Utils::AdjustString(serial_number + "_" + time, kMaxLength);
}

std::string HourlyCollectionId(const std::string& hour_window, const std::string& serial_number,
                               const std::string& suffix) {
  return common::Utils::AdjustString(hour_window.substr(0, kHourLength) + "H_" + serial_number + suffix, kMaxLength);
}

}  // namespace zt::telemetry::collector::performancesamples
