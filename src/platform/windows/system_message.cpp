#include "platform/system_message.h"

#include <windows.h>

#include <array>

namespace zt::telemetry::collector::performancesamples::platform {
namespace {

constexpr DWORD kCapacity = 2018;

}  // namespace

std::optional<std::string> SystemMessage(std::int32_t code) {
  std::array<char, kCapacity> buffer{};
  const DWORD length = ::FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                        static_cast<DWORD>(code), 0, buffer.data(), kCapacity, nullptr);
  if (length == 0) return std::nullopt;
  return std::string(buffer.data(), length);
}

}  // namespace zt::telemetry::collector::performancesamples::platform
