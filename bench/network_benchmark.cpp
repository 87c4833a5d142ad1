// The inventory of network interfaces. Two queries run for each interface, each over all of them, so the work grows
// with the square of their number at least.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>

#include "network/network_info_msg.h"
#include "simulation/machine.h"
#include "zt/shared/wmi/wmi_client.h"

namespace zt::bench {
namespace {

using telemetry::collector::performancesamples::NetworkInfoMsg;

simulation::Machine MachineWithInterfaces(std::int64_t count) {
  simulation::Machine machine;
  for (std::int64_t i = 0; i < count; ++i) {
    const std::string number = std::to_string(i);
    const std::string name = "Gigabit Network Adapter " + number;
    const std::string mac_address = "02:00:00:00:00:" + number;
    machine.wmi.classes["Win32_PerfRawData_Tcpip_NetworkInterface"].push_back({{"Name", name}});
    machine.wmi.classes["Win32_NetworkAdapter"].push_back({{"Name", name},
                                                           {"ProductName", name},
                                                           {"Description", name},
                                                           {"AdapterType", "Ethernet 802.3"},
                                                           {"MACAddress", mac_address},
                                                           {"Manufacturer", "Maker"},
                                                           {"PNPDeviceID", "PCI\\" + number},
                                                           {"PhysicalAdapter", true},
                                                           {"Speed", "1000000000"},
                                                           {"NetConnectionID", "Ethernet " + number},
                                                           {"NetConnectionStatus", 2},
                                                           {"GUID", "{" + number + "}"},
                                                           {"InterfaceIndex", static_cast<std::int32_t>(i)}});
    machine.wmi.classes["Win32_NetworkAdapterConfiguration"].push_back(
        {{"Description", name}, {"MACAddress", mac_address}, {"DHCPEnabled", true}});
  }
  return machine;
}

void Inventory(benchmark::State& state) {
  simulation::UseMachine(MachineWithInterfaces(state.range(0)));
  shared::wmi::WMIClient wmi(shared::wmi::kSystemNamespace);
  NetworkInfoMsg network(&wmi, nullptr);
  std::size_t found = 0;
  for (auto unused : state) found = network.PerformNetworkInterfaceQueries().size();
  if (found != static_cast<std::size_t>(state.range(0))) state.SkipWithError("interfaces are missing");
  state.counters["queries"] = static_cast<double>(1 + 2 * state.range(0));
}
BENCHMARK(Inventory)->ArgName("interfaces")->Arg(10)->Arg(100)->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zt::bench
