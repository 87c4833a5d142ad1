#include "platform/registry.h"

#include <algorithm>
#include <string_view>

#include "platform/simulated/disturbed.h"
#include "simulation/calls.h"
#include "simulation/machine.h"
#include "simulation/text_comparison.h"

namespace zt::telemetry::collector::performancesamples::platform {
namespace {

using simulation::EqualIgnoringCase;
using simulation::RegistryKey;

constexpr std::string_view kRoot = "HKEY_LOCAL_MACHINE\\";

// The rest of `path` behind the name of a key; absent when `path` leads elsewhere.
std::optional<std::string_view> Behind(std::string_view name, std::string_view path) {
  if (path.size() < name.size() || !EqualIgnoringCase(path.substr(0, name.size()), name)) return std::nullopt;
  path.remove_prefix(name.size());
  if (!path.empty() && path.front() != '\\') return std::nullopt;
  return path.empty() ? path : path.substr(1);
}

const RegistryKey* Find(const std::vector<RegistryKey>& keys, std::string_view path) {
  for (const RegistryKey& key : keys) {
    const std::optional<std::string_view> rest = Behind(key.name, path);
    if (!rest) continue;
    const RegistryKey* const found = rest->empty() ? &key : Find(key.keys, *rest);
    if (found != nullptr) return found;
  }
  return nullptr;
}

const RegistryKey* Open(const std::string& path) {
  return Find(simulation::CurrentMachine().registry, std::string(kRoot) + path);
}

std::uint32_t FailureOf(const RegistryKey& key) {
  return key.failure ? static_cast<std::uint32_t>(key.failure->status) : 0;
}

}  // namespace

RegistryAnswer<std::vector<std::string>> RegistrySubkeys(const std::string& path) {
  RegistryAnswer<std::vector<std::string>> names;
  switch (simulation::Announce("RegEnumKeyExA", {Disturbance::kFails, Disturbance::kEmpty, Disturbance::kAbsurd})) {
    case Disturbance::kFails:
      return {{}, kRefusedBySystem};
    case Disturbance::kEmpty:
      return names;
    case Disturbance::kAbsurd:
      return {std::vector<std::string>(kAbsurdlyMany, "x"), 0};
    default:
      break;
  }
  const RegistryKey* const key = Open(path);
  if (key == nullptr) return names;
  if (key->failure) return {{}, FailureOf(*key)};
  for (const RegistryKey& subkey : key->keys) names.value.push_back(subkey.name);
  return names;
}

RegistryAnswer<std::optional<std::string>> RegistryText(const std::string& path, const std::string& value) {
  switch (simulation::Announce(
      "RegQueryValueExA", {Disturbance::kFails, Disturbance::kNull, Disturbance::kEmpty, Disturbance::kEndlessText})) {
    case Disturbance::kFails:
      return {std::nullopt, kRefusedBySystem};
    case Disturbance::kNull:
      return {};
    case Disturbance::kEmpty:
      return {std::string()};
    case Disturbance::kEndlessText:
      return {simulation::EndlessText()};
    default:
      break;
  }
  const RegistryKey* const key = Open(path);
  if (key == nullptr) return {};
  if (key->failure) return {std::nullopt, FailureOf(*key)};
  const auto found = std::find_if(key->values.begin(), key->values.end(),
                                  [&](const auto& entry) { return EqualIgnoringCase(entry.first, value); });
  if (found == key->values.end()) return {};
  return {found->second};
}

}  // namespace zt::telemetry::collector::performancesamples::platform
