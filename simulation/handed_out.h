#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "zt/zt_simulation_export.h"

namespace zt::simulation {

/// How many of the things that the simulated definitions handed out (open handles, connections, clients, loaded
/// libraries) are not given back yet, by their kind. No machine's: they outlive `UseMachine`.
ZT_SIMULATION_EXPORT std::map<std::string, std::int64_t>& HandedOut();

/// Counts one thing of a kind for as long as it lives; a copy is one more. For the simulated definitions, as a member.
class HandedOutThing {
 public:
  explicit HandedOutThing(const char* kind) : count_(&HandedOut()[kind]) { ++*count_; }
  HandedOutThing(const HandedOutThing& other) : count_(other.count_) { ++*count_; }
  HandedOutThing& operator=(const HandedOutThing&) = delete;
  ~HandedOutThing() { --*count_; }

 private:
  std::int64_t* count_;  // a map's elements stay where they are
};

}  // namespace zt::simulation
