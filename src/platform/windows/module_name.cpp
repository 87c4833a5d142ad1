#include "platform/module_name.h"

#include <windows.h>

#include <array>
#include <string_view>

namespace zt::telemetry::collector::performancesamples::platform {
namespace {

constexpr DWORD kPathCapacity = 260;
constexpr DWORD kByAddressUncounted =
    GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;

}  // namespace

std::wstring ModuleFileName(const void* address) {
  HMODULE module = nullptr;
  if (::GetModuleHandleExW(kByAddressUncounted, static_cast<const wchar_t*>(address), &module) == FALSE) return {};
  std::array<wchar_t, kPathCapacity> buffer{};
  const DWORD length = ::GetModuleFileNameW(module, buffer.data(), kPathCapacity);
  // A path that does not fit is cut to the buffer, and its file name may be missing.
  if (length == 0 || length >= kPathCapacity) return {};
  const std::wstring_view path(buffer.data(), length);
  const std::size_t backslash = path.rfind(L'\\');
  return backslash == std::wstring_view::npos ? std::wstring() : std::wstring(path.substr(backslash + 1));
}

}  // namespace zt::telemetry::collector::performancesamples::platform
