#pragma once

#include <utility>

#include "simulation/machine.h"

namespace zt::fuzz {

/// A machine for millions of inputs: what the simulation records of it is forgotten now and then.
class ForgetfulMachine {
 public:
  explicit ForgetfulMachine(simulation::Machine machine) : machine_(std::move(machine)) {
    simulation::UseMachine(machine_);
  }

  /// To be called for each input.
  void Use() {
    constexpr unsigned kInputs = 1024;
    if (++inputs_ % kInputs == 0) simulation::UseMachine(machine_);
  }

 private:
  simulation::Machine machine_;
  unsigned inputs_ = 0;
};

}  // namespace zt::fuzz
