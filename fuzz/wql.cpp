// A WQL text, on the simulated laptop.
#include "simulation/wql.h"

#include <string>

#include "forgetful_machine.h"
#include "harness.h"
#include "simulation/profile.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zt::simulation;
  static zt::fuzz::ForgetfulMachine machine(ReadShippedProfile("convertible-laptop"));
  machine.Use();
  const WqlResult result = RunQuery(std::string(zt::fuzz::TextOf(data, size)));
  zt::fuzz::Require(result.status == 0 || result.rows.empty(), "a query that fails has no rows");
  for (const WmiRow& row : result.rows) {
    zt::fuzz::Require(FindProperty(row, "__CLASS") != nullptr, "a row tells its class");
  }
  return 0;
}
