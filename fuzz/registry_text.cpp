// The registry's name of a graphics card, and the identifiers that a vendor's library gives of it. An input is a line
// for each identifier, vendor and device, and the name.
#include <string>
#include <utility>

#include "harness.h"
#include "samplers/gpu/pci_bus_number.h"
#include "simulation/machine.h"

namespace {

constexpr char kAdapters[] = R"(HKEY_LOCAL_MACHINE\SYSTEM\CurrentControlSet\Enum\PCI)";
constexpr std::uint32_t kBus = 3;

void UseMachineWithCard(std::string_view hardware_id) {
  zt::simulation::RegistryKey instance{"4&1&0&0008", {{"LocationInformation", "PCI bus; (3,0,0)"}}, {}};
  zt::simulation::RegistryKey card{std::string(hardware_id), {}, {std::move(instance)}};
  zt::simulation::Machine machine;
  machine.registry.push_back({kAdapters, {}, {std::move(card)}});
  zt::simulation::UseMachine(std::move(machine));
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zt::telemetry::collector::performancesamples;
  std::string_view text = zt::fuzz::TextOf(data, size);
  const std::string vendor_id(zt::fuzz::TakeLine(text));
  const std::string device_id(zt::fuzz::TakeLine(text));
  UseMachineWithCard(text);
  const std::uint32_t bus = PciBusNumber(vendor_id, device_id);
  zt::fuzz::Require(bus == kBus || bus == 0, "a card is where the registry says, or nowhere");
  zt::fuzz::Require(PciBusNumber(vendor_id + " ", device_id) == 0, "an identifier with a blank names no card");
  return 0;
}
