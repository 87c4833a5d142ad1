// The bus of an adapter, from the registry.
#include "samplers/gpu/pci_bus_number.h"

#include "gpu_fixture.h"
#include "support/status_codes.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using simulation::RegistryKey;
using tests::AddAdapter;
using tests::Machine;

constexpr char kHardwareId[] = "VEN_1002&DEV_744C&SUBSYS_00000001&REV_C8";

std::uint32_t BusAt(const std::string& location) {
  Machine machine;
  AddAdapter(machine, kHardwareId, location);
  simulation::UseMachine(machine);
  return PciBusNumber("1002", "744C");
}

// Of the only adapter, whose bus is 3, or 0 when it is not the one asked for.
std::uint32_t BusOf(const std::string& hardware_id, const std::string& vendor, const std::string& device) {
  Machine machine;
  AddAdapter(machine, hardware_id, "(3,0,0)");
  simulation::UseMachine(machine);
  return PciBusNumber(vendor, device);
}

TEST(PciBusNumberTest, IsTheFirstOfThreeNumbersOfTheLocation) {
  EXPECT_EQ(BusAt("PCI bus 3, device 0, function 0;(3,0,0)"), 3U);
  EXPECT_EQ(BusAt("@System32\\drivers\\pci.sys,#65536;PCI bus %1, device %2, function %3;(197,0,1)"), 197U);
  EXPECT_EQ(BusAt("1,2,3"), 1U);
  EXPECT_EQ(BusAt("0010,2,3"), 10U);
  EXPECT_EQ(BusAt("7,8;9,10,11"), 9U);
  EXPECT_EQ(BusAt("7 8,9,10,11"), 8U);
  EXPECT_EQ(BusAt("1,2,3,4,5"), 1U);
}

TEST(PciBusNumberTest, IsZeroForALocationWithoutThreeNumbers) {
  EXPECT_EQ(BusAt(""), 0U);
  EXPECT_EQ(BusAt("PCI bus 3, device 0, function 0"), 0U);
  EXPECT_EQ(BusAt("3,0"), 0U);
  EXPECT_EQ(BusAt("3,0,"), 0U);
  EXPECT_EQ(BusAt("3,,0"), 0U);
  EXPECT_EQ(BusAt(",3,0"), 0U);
  EXPECT_EQ(BusAt("3, 0, 0"), 0U);
}

TEST(PciBusNumberTest, IsZeroForANumberOutOfRange) {
  EXPECT_EQ(BusAt("2147483647,0,0"), 2147483647U);
  EXPECT_EQ(BusAt("2147483648,0,0"), 0U);
}

TEST(PciBusNumberTest, OfAVeryLongLocationIsFoundToo) {
  EXPECT_EQ(BusAt(std::string(500'000, '7') + ";(3,0,0)"), 3U);
}

TEST(PciBusNumberTest, ComparesIdentifiersAsNumbers) {
  EXPECT_EQ(BusOf(kHardwareId, "1002", "744C"), 3U);
  EXPECT_EQ(BusOf(kHardwareId, "1002", "744c"), 3U);
  EXPECT_EQ(BusOf(kHardwareId, "0x1002", "0x744C"), 3U);
  EXPECT_EQ(BusOf(kHardwareId, "0X00001002", "0000744c"), 3U);
  EXPECT_EQ(BusOf("ven_1002&dev_744c", "1002", "744C"), 3U);
  EXPECT_EQ(BusOf("VEN_1002&DEV_0049", "1002", "49"), 3U);
  EXPECT_EQ(BusOf("SUBSYS_1&DEV_744C&VEN_1002", "1002", "744C"), 3U);
}

TEST(PciBusNumberTest, NeedsBothIdentifiers) {
  EXPECT_EQ(BusOf(kHardwareId, "10DE", "744C"), 0U);
  EXPECT_EQ(BusOf(kHardwareId, "1002", "744D"), 0U);
  EXPECT_EQ(BusOf(kHardwareId, "1002", "744"), 0U) << "a part of the digits is another number";
  EXPECT_EQ(BusOf("VEN_1002", "1002", "744C"), 0U);
  EXPECT_EQ(BusOf("DEV_744C", "1002", "744C"), 0U);
  EXPECT_EQ(BusOf("VEN_1002&DEV_744CX", "1002", "744C"), 0U);
}

TEST(PciBusNumberTest, IsZeroForATextThatIsNoHexadecimalNumber) {
  for (const std::string text : {"", "0x", "G", "744C ", " 744C", "-744C", "744C&", "1F00000000"}) {
    EXPECT_EQ(BusOf(kHardwareId, "1002", text), 0U) << text;
    EXPECT_EQ(BusOf(kHardwareId, text, "744C"), 0U) << text;
  }
}

TEST(PciBusNumberTest, NoTextMatchesAnAdapterWithoutANumber) {
  EXPECT_EQ(BusOf("VEN_&DEV_", "", ""), 0U);
  EXPECT_EQ(BusOf("VEN_XXXX&DEV_YYYY", "XXXX", "YYYY"), 0U);
}

TEST(PciBusNumberTest, IsThatOfTheFirstMatch) {
  Machine machine;
  AddAdapter(machine, "VEN_10DE&DEV_26B1", "(1,0,0)");
  AddAdapter(machine, "VEN_1002&DEV_744C&SUBSYS_1", "(2,0,0)");
  AddAdapter(machine, "VEN_1002&DEV_744C&SUBSYS_2", "(3,0,0)");
  simulation::UseMachine(machine);
  EXPECT_EQ(PciBusNumber("1002", "744C"), 2U);
}

TEST(PciBusNumberTest, IsThatOfTheFirstInstanceThatTellsWhereItIs) {
  Machine machine;
  AddAdapter(machine, "VEN_1002&DEV_744C&SUBSYS_1", "nowhere");
  AddAdapter(machine, "VEN_1002&DEV_744C&SUBSYS_2", "nowhere");
  std::vector<RegistryKey>& instances = machine.registry[0].keys[1].keys;
  instances.push_back({"silent", {}, {}});
  instances.push_back({"second", {{"LocationInformation", "(4,0,0)"}}, {}});
  instances.push_back({"third", {{"LocationInformation", "(5,0,0)"}}, {}});
  simulation::UseMachine(machine);
  EXPECT_EQ(PciBusNumber("1002", "744C"), 4U);
}

TEST(PciBusNumberTest, IsZeroOnAMachineWithoutTheKey) {
  simulation::UseMachine({});
  EXPECT_EQ(PciBusNumber("1002", "744C"), 0U);
}

TEST(PciBusNumberTest, WhyTheKeyCouldNotBeReadIsToldApart) {
  Machine machine;
  AddAdapter(machine, kHardwareId, "(3,0,0)");
  simulation::UseMachine(machine);
  EXPECT_EQ(PciAdaptersFailure(), 0U);
  machine.registry[0].failure = simulation::Failure{tests::kCallDenied};
  simulation::UseMachine(machine);
  EXPECT_EQ(PciAdaptersFailure(), static_cast<std::uint32_t>(tests::kCallDenied));
  EXPECT_EQ(PciBusNumber("1002", "744C"), 0U);
}

TEST(PciBusNumberTest, IsZeroForAnAdapterWithoutInstances) {
  Machine machine;
  AddAdapter(machine, kHardwareId, "(3,0,0)");
  machine.registry[0].keys[0].keys.clear();
  simulation::UseMachine(machine);
  EXPECT_EQ(PciBusNumber("1002", "744C"), 0U);
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
