#include "platform/registry.h"

#include <windows.h>

#include <array>
#include <memory>
#include <type_traits>

namespace zt::telemetry::collector::performancesamples::platform {
namespace {

// The longest name that a key can have, and its end.
constexpr DWORD kNameCapacity = 256;
static_assert(KEY_READ == 0x20019);

struct KeyCloser {
  void operator()(HKEY key) const { ::RegCloseKey(key); }
};
using UniqueKey = std::unique_ptr<std::remove_pointer_t<HKEY>, KeyCloser>;

LSTATUS Open(const std::string& path, UniqueKey& key) {
  HKEY opened = nullptr;
  const LSTATUS status = ::RegOpenKeyExA(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_READ, &opened);
  key.reset(status == ERROR_SUCCESS ? opened : nullptr);
  return status;
}

// 0 for what is no failure.
std::uint32_t FailureOf(LSTATUS status) {
  const bool is_absent = status == ERROR_FILE_NOT_FOUND || status == ERROR_PATH_NOT_FOUND;
  return is_absent || status == ERROR_NO_MORE_ITEMS ? ERROR_SUCCESS : static_cast<std::uint32_t>(status);
}

bool IsText(DWORD type) {
  return type == REG_SZ || type == REG_EXPAND_SZ;
}

}  // namespace

RegistryAnswer<std::vector<std::string>> RegistrySubkeys(const std::string& path) {
  RegistryAnswer<std::vector<std::string>> names;
  UniqueKey key;
  LSTATUS status = Open(path, key);
  while (status == ERROR_SUCCESS) {
    std::array<char, kNameCapacity> name{};
    DWORD length = kNameCapacity;
    status = ::RegEnumKeyExA(key.get(), static_cast<DWORD>(names.value.size()), name.data(), &length, nullptr, nullptr,
                             nullptr, nullptr);
    if (status == ERROR_SUCCESS) names.value.emplace_back(name.data(), length);
  }
  names.failure = FailureOf(status);
  return names;
}

RegistryAnswer<std::optional<std::string>> RegistryText(const std::string& path, const std::string& value) {
  UniqueKey key;
  LSTATUS status = Open(path, key);
  if (status != ERROR_SUCCESS) return {std::nullopt, FailureOf(status)};
  DWORD type = 0;
  DWORD size = 0;
  const auto query = [&](BYTE* data) {
    return ::RegQueryValueExA(key.get(), value.c_str(), nullptr, &type, data, &size);
  };
  status = query(nullptr);
  if (status != ERROR_SUCCESS || !IsText(type)) return {std::nullopt, FailureOf(status)};
  std::vector<BYTE> data(size);
  status = query(data.data());
  if (status != ERROR_SUCCESS || !IsText(type)) return {std::nullopt, FailureOf(status)};
  std::string text(data.begin(), data.begin() + static_cast<std::ptrdiff_t>(size));
  // The end that the writer stored with the text, if any.
  const std::size_t end = text.find('\0');
  return {end == std::string::npos ? text : text.substr(0, end)};
}

}  // namespace zt::telemetry::collector::performancesamples::platform
