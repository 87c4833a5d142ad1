#include <iostream>

#include "host/program.h"
#include "host/program_environment.h"

int main(int count, char** values) {
  const zt::telemetry::host::Utf8Streams streams;
  return zt::telemetry::host::Run(zt::telemetry::host::ProgramArguments(count, values), std::cout, std::cerr,
                                  zt::telemetry::host::ErrorsGoToTerminal() ? &std::cerr : nullptr);
}
