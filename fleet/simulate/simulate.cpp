#include "fleet/simulate/simulate.h"
namespace zt::telemetry::fleet {
int Simulate(const SimulateCommand&, std::ostream&, std::ostream&) {
  return 0;
}
}  // namespace zt::telemetry::fleet
