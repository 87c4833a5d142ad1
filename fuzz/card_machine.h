#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "simulation/machine.h"

namespace zt::fuzz {

/// Uses a machine whose registry has one graphics card, under the name `hardware_id` and at the place `location`.
inline void UseMachineWithCard(std::string_view hardware_id, std::string_view location) {
  constexpr char kAdapters[] = R"(HKEY_LOCAL_MACHINE\SYSTEM\CurrentControlSet\Enum\PCI)";
  simulation::RegistryKey instance{"4&1&0&0008", {{"LocationInformation", std::string(location)}}, {}};
  simulation::RegistryKey card{std::string(hardware_id), {}, {std::move(instance)}};
  simulation::Machine machine;
  machine.registry.push_back({kAdapters, {}, {std::move(card)}});
  simulation::UseMachine(std::move(machine));
}

}  // namespace zt::fuzz
