#include "samplers/json_numbers.h"

#include <nlohmann/json.hpp>

#include "types/conversions.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

// The library's conversion to double refuses what is no number; its other conversions take booleans.
void RequireNumber(const nlohmann::json& value) {
  ReadDouble(value);
}

}  // namespace

double ReadDouble(const nlohmann::json& value) {
  return value.get<double>();
}

float ReadFloat(const nlohmann::json& value) {
  RequireNumber(value);
  return value.get<float>();
}

std::int32_t ReadInt32(const nlohmann::json& value) {
  RequireNumber(value);
  return value.is_number_float() ? TruncateToInt32(value.get<double>()) : value.get<std::int32_t>();
}

std::uint64_t ReadUint64(const nlohmann::json& value) {
  RequireNumber(value);
  return value.is_number_float() ? TruncateToUint64(value.get<double>()) : value.get<std::uint64_t>();
}

}  // namespace zt::telemetry::collector::performancesamples
