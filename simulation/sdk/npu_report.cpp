#include "machine_report.h"
#include "simulation/machine.h"

namespace zt::shared::npu {

std::string ReadMachineReport() {
  return simulation::CurrentMachine().npu_report;
}

}  // namespace zt::shared::npu
