// A profile of the simulated machine.
#include "harness.h"
#include "json_mutation.h"
#include "simulation/profile.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    zt::simulation::ParseProfile(zt::fuzz::TextOf(data, size), "input");
  } catch (const zt::simulation::ProfileError& error) {
    zt::fuzz::Require(std::string_view(error.what()).starts_with("input: "), "an error tells the file");
  }
  return 0;
}
