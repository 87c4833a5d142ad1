#include <iostream>

#include "fleet/forward/commands.h"
#include "host/program_environment.h"

int main(int count, char** values) {
  return zt::telemetry::fleet::Run(zt::telemetry::host::ProgramArguments(count, values), std::cout, std::cerr);
}
