#include "platform/system_message.h"

#include <zt/text/wide_text.h>

#include <array>
#include <string_view>

#include "platform/windows/system_message_in.h"

namespace zt::telemetry::collector::performancesamples::platform {
namespace {

constexpr DWORD kCapacity = 2018;

}  // namespace

// The wide text, since the system's code page need not have the letters of the system's language.
std::optional<std::string> SystemMessageIn(LANGID language, std::int32_t code) {
  std::array<wchar_t, kCapacity> buffer{};
  const DWORD length = ::FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                        static_cast<DWORD>(code), language, buffer.data(), kCapacity, nullptr);
  if (length == 0) return std::nullopt;
  return text::ToUtf8(std::wstring_view(buffer.data(), length));
}

std::optional<std::string> SystemMessage(std::int32_t code) {
  return SystemMessageIn(0, code);
}

}  // namespace zt::telemetry::collector::performancesamples::platform
