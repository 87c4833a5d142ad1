#include "host/inspection/failure_text.h"

#include <array>
#include <cstdio>
#include <exception>

namespace zt::telemetry::host::inspection {
namespace {

using common::Error;

// Codes that tell no more than that something failed.
bool IsOwnCondition(std::int64_t code) {
  return code >= -1 && code <= 1;
}

// An exception of somebody else's may have none.
std::string WordsOf(const std::exception& thrown, const Error& error) {
  const char* const words = thrown.what();
  return words != nullptr ? words : error.description;
}

}  // namespace

std::string CurrentFailureText() {
  const Error error = Error::FromCurrentException();
  try {
    throw;
  } catch (const Error&) {
    return OutcomeText(error);
  } catch (const std::exception& thrown) {
    return WordsOf(thrown, error);
  } catch (const std::exception* thrown) {  // NOLINT(misc-throw-by-value-catch-by-reference): one sampler keeps them
    return WordsOf(*thrown, error);
  } catch (...) {
    return error.description;
  }
}

std::string OutcomeText(const Error& outcome) {
  if (outcome.kind != Error::kCallFailed || IsOwnCondition(outcome.code)) return outcome.description;
  return outcome.description + " (status " + StatusText(static_cast<std::uint32_t>(outcome.code)) + ")";
}

std::string StatusText(std::uint32_t status) {
  constexpr std::uint32_t kFirstInHexadecimal = 0x10000;
  if (status < kFirstInHexadecimal) return std::to_string(status);
  std::array<char, sizeof("0x12345678")> text{};
  std::snprintf(text.data(), text.size(), "0x%08X", status);
  return text.data();
}

}  // namespace zt::telemetry::host::inspection
