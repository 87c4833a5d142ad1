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

UniqueKey Open(const std::string& path) {
  HKEY key = nullptr;
  const LSTATUS status = ::RegOpenKeyExA(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_READ, &key);
  return UniqueKey(status == ERROR_SUCCESS ? key : nullptr);
}

bool IsText(DWORD type) {
  return type == REG_SZ || type == REG_EXPAND_SZ;
}

}  // namespace

std::vector<std::string> RegistrySubkeys(const std::string& path) {
  std::vector<std::string> names;
  const UniqueKey key = Open(path);
  if (!key) return names;
  std::array<char, kNameCapacity> name{};
  DWORD length = kNameCapacity;
  while (::RegEnumKeyExA(key.get(), static_cast<DWORD>(names.size()), name.data(), &length, nullptr, nullptr, nullptr,
                         nullptr) == ERROR_SUCCESS) {
    names.emplace_back(name.data(), length);
    length = kNameCapacity;
  }
  return names;
}

std::optional<std::string> RegistryText(const std::string& path, const std::string& value) {
  const UniqueKey key = Open(path);
  if (!key) return std::nullopt;
  DWORD type = 0;
  DWORD size = 0;
  const auto query = [&](BYTE* data) {
    return ::RegQueryValueExA(key.get(), value.c_str(), nullptr, &type, data, &size);
  };
  if (query(nullptr) != ERROR_SUCCESS || !IsText(type)) return std::nullopt;
  std::vector<BYTE> data(size);
  if (query(data.data()) != ERROR_SUCCESS || !IsText(type)) return std::nullopt;
  std::string text(data.begin(), data.begin() + static_cast<std::ptrdiff_t>(size));
  // The end that the writer stored with the text, if any.
  const std::size_t end = text.find('\0');
  return end == std::string::npos ? text : text.substr(0, end);
}

}  // namespace zt::telemetry::collector::performancesamples::platform
