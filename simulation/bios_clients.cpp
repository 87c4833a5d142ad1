#include "simulation/bios_clients.h"

namespace zt::simulation {

BiosClients& CurrentBiosClients() {
  static BiosClients clients;
  return clients;
}

}  // namespace zt::simulation
