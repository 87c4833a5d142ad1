// Texts of WMI where a number is wanted, as the simulated machine converts them.
#include <cmath>
#include <cstdint>
#include <string>

#include "harness.h"
#include "simulated/change_type.h"
#include "zt/shared/wmi/wmi_status.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zt::shared::wmi;
  const WmiValue value = std::wstring(data, data + size);
  std::uint32_t small = 0;
  std::uint64_t large = 0;
  float real = 0;
  bool truth = false;
  const bool is_small = ChangeType(value, small) == kSuccess;
  const bool is_large = ChangeType(value, large) == kSuccess;
  const bool is_real = ChangeType(value, real) == kSuccess;
  ChangeType(value, truth);
  zt::fuzz::Require(!(is_small && is_large) || small == large, "a number has one value in every size");
  zt::fuzz::Require(!is_real || std::isfinite(real), "a text is no infinite number");
  std::wstring text;
  zt::fuzz::Require(!is_real || ChangeType(WmiValue(real), text) == kSuccess, "a number has a text");
  return 0;
}
