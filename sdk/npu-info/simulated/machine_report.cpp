#include "machine_report.h"

#include "simulation/machine.h"

namespace zt::shared::npu {

MachineReport ReadMachineReport() {
  const simulation::Machine& machine = simulation::CurrentMachine();
  return {machine.npu_report, machine.npu_failure ? machine.npu_failure->status : 0};
}

}  // namespace zt::shared::npu
