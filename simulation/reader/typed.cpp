#include "simulation/reader/typed.h"

#include <cmath>

namespace zt::simulation::reader {

void Read(const Value& value, bool& target) {
  if (!value.ToJson().is_boolean()) value.FailExpecting("true or false");
  target = value.ToJson().get<bool>();
}

void Read(const Value& value, std::string& target) {
  if (!value.ToJson().is_string()) value.FailExpecting("a text");
  target = value.ToJson().get<std::string>();
}

void Read(const Value& value, float& target) {
  constexpr double kLargest = std::numeric_limits<float>::max();
  if (!value.ToJson().is_number() || std::fabs(value.ToJson().get<double>()) > kLargest) {
    value.FailExpecting("a number of at most 3.4e38 in size");
  }
  target = value.ToJson().get<float>();
}

void Read(const Value& value, double& target) {
  if (!value.ToJson().is_number()) value.FailExpecting("a number");
  target = value.ToJson().get<double>();
}

void Read(const Value& value, Failure& target) {
  if (!value.IsObjectWith("fails")) value.FailExpecting(R"({"fails": status})");
  ReadObject(value, {{"fails", ToStatus(target.status)}});
}

void ReadStatus(const Value& value, std::uint32_t& target) {
  std::int64_t status = 0;
  ReadInteger<std::int64_t>(value, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::uint32_t>::max(),
                            status);
  target = static_cast<std::uint32_t>(status);
}

void ReadStatus(const Value& value, std::int32_t& target) {
  std::uint32_t pattern = 0;
  ReadStatus(value, pattern);
  target = static_cast<std::int32_t>(pattern);
}

}  // namespace zt::simulation::reader
