#pragma once

#include <cstdint>

#include <nlohmann/json_fwd.hpp>

/// Numbers of a JSON document that others wrote. Integers and floating-point numbers are taken alike; out of range, an
/// integer keeps its low bits and a floating-point number is truncated as types/conversions.h tells. Anything else,
/// booleans too, throws the JSON library's type error 302 ("type must be number, but is ...").
namespace zt::telemetry::collector::performancesamples {

double ReadDouble(const nlohmann::json& value);
float ReadFloat(const nlohmann::json& value);
std::int32_t ReadInt32(const nlohmann::json& value);
std::uint64_t ReadUint64(const nlohmann::json& value);

}  // namespace zt::telemetry::collector::performancesamples
