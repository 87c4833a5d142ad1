#include "messages/source_failure.h"

#include <array>
#include <cstdio>
#include <exception>

namespace zt::telemetry::collector::performancesamples {
namespace {

using common::Error;

// Codes that tell no more than that something failed.
bool IsOwnCondition(std::int64_t code) {
  return code >= -1 && code <= 1;
}

}  // namespace

SourceFailure CurrentSourceFailure() {
  const Error error = Error::FromCurrentException();
  try {
    throw;
  } catch (const Error&) {
    return {error, OutcomeText(error)};
  } catch (const std::exception& thrown) {
    return {error, thrown.what()};
  } catch (const std::exception* thrown) {  // NOLINT(misc-throw-by-value-catch-by-reference): one sampler keeps them
    return {error, thrown->what()};
  } catch (...) {
    return {error, error.description};
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

}  // namespace zt::telemetry::collector::performancesamples
