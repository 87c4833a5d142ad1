// The registry's text of where a graphics card is.
#include <string>

#include "card_machine.h"
#include "harness.h"
#include "samplers/gpu/pci_bus_number.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zt::telemetry::collector::performancesamples;
  const std::string_view location = zt::fuzz::TextOf(data, size);
  zt::fuzz::UseMachineWithCard("VEN_1002&DEV_744C&SUBSYS_00000001&REV_C8", location);
  const std::uint32_t bus = PciBusNumber("0x1002", "744c");
  zt::fuzz::Require(bus == 0 || location.find(std::to_string(bus) + ",") != std::string_view::npos,
                    "the bus stands in the text, a comma behind it");
  zt::fuzz::Require(bus <= 0x7FFFFFFF, "a bus has a number of 31 bits");
  return 0;
}
