#pragma once

#include <cstdint>
#include <random>
#include <string>

#include "simulation/machine.h"

namespace zt::endurance {

/// A machine whose figures are others each time it is looked at: loads, temperatures, capacities, postures, texts of
/// any length, processes that come and go, batteries and cards that are taken out. The same seed gives the same
/// machines.
class ChangingMachine {
 public:
  ChangingMachine(simulation::Machine base, std::uint64_t seed) : base_(std::move(base)), random_(seed) {}

  simulation::Machine Next();

 private:
  std::uint64_t Below(std::uint64_t end) { return random_() % end; }
  bool OnceIn(std::uint64_t times) { return Below(times) == 0; }
  std::string Text();

  void Change(simulation::WmiProperty& property);
  void ChangeWmi(simulation::Wmi& wmi);
  void ChangeBatteries(simulation::Machine& machine);
  void ChangePosture(simulation::Sensors& sensors);
  void ChangeNvidia(simulation::Nvml& nvml);
  void ChangeAmd(simulation::Adlx& adlx);
  void ChangeNpus(simulation::Machine& machine);
  void ChangeProcesses(simulation::Machine& machine);

  simulation::Machine base_;
  std::mt19937_64 random_;
  std::int64_t machines_ = 0;
};

}  // namespace zt::endurance
