// The registry's name of a graphics card, and the identifiers that a vendor's library gives of it. An input is a line
// for each identifier, vendor and device, and the name.
#include <string>

#include "card_machine.h"
#include "harness.h"
#include "samplers/gpu/pci_bus_number.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zt::telemetry::collector::performancesamples;
  std::string_view text = zt::fuzz::TextOf(data, size);
  const std::string vendor_id(zt::fuzz::TakeLine(text));
  const std::string device_id(zt::fuzz::TakeLine(text));
  zt::fuzz::UseMachineWithCard(text, "PCI bus; (3,0,0)");
  constexpr std::uint32_t kBus = 3;
  const std::uint32_t bus = PciBusNumber(vendor_id, device_id);
  zt::fuzz::Require(bus == kBus || bus == 0, "a card is where the registry says, or nowhere");
  zt::fuzz::Require(PciBusNumber(vendor_id + " ", device_id) == 0, "an identifier with a blank names no card");
  return 0;
}
