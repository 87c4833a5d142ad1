#include "failure_text.h"

#include <array>
#include <cstdio>
#include <exception>

namespace zt::telemetry::inspection {
namespace {

// Codes that tell no more than that something failed.
bool IsOwnCondition(std::int64_t code) {
  return code >= -1 && code <= 1;
}

}  // namespace

std::string StatusText(std::uint32_t status) {
  constexpr std::uint32_t kFirstInHexadecimal = 0x10000;
  if (status < kFirstInHexadecimal) return std::to_string(status);
  std::array<char, sizeof("0x12345678")> text{};
  std::snprintf(text.data(), text.size(), "0x%08X", status);
  return text.data();
}

std::string ErrorText(const common::Error& error) {
  if (error.kind != common::Error::kCallFailed || IsOwnCondition(error.code)) return error.description;
  return error.description + " (status " + StatusText(static_cast<std::uint32_t>(error.code)) + ")";
}

std::string CurrentFailureText() {
  try {
    throw;
  } catch (const common::Error& error) {
    return ErrorText(error);
  } catch (const std::exception& error) {
    return error.what();
  } catch (const std::exception* error) {  // NOLINT(misc-throw-by-value-catch-by-reference): one sampler keeps them
    return error->what();
  } catch (...) {
    return common::Error::FromCurrentException().description;
  }
}

}  // namespace zt::telemetry::inspection
