#include "sdk/private-bios-wmi/windows/firmware_interface.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/windows/counted_connection.h"

namespace zt::tests {
namespace {

using shared::ztbios::FirmwareInterface;
using shared::ztbios::FirmwareReply;
using testing::ElementsAre;
using testing::SizeIs;

constexpr HRESULT kServerUnavailable = static_cast<HRESULT>(0x800706BA);

HRESULT RunOne(FirmwareInterface& firmware) {
  FirmwareReply reply;
  return firmware.Run({1, 40, {}, 128}, reply);
}

TEST(FirmwareInterfaceTest, ACommandConnectsToTheFirmwaresNamespace) {
  CountedConnection wmi;
  FirmwareInterface firmware(wmi.AsConnect());
  RunOne(firmware);
  EXPECT_THAT(wmi.attempts, ElementsAre(LR"(\\.\root\wmi)"));
  EXPECT_EQ(wmi.services->asked_instances, L"ZTBiosInterface");
}

// Each graphics card without a temperature asks the firmware.
TEST(FirmwareInterfaceTest, AWmiThatIsOutOfOrderCostsOneAttemptForAllCommands) {
  CountedConnection wmi;
  wmi.status = kServerUnavailable;
  FirmwareInterface firmware(wmi.AsConnect());
  for (int card = 0; card < 4; ++card) EXPECT_EQ(RunOne(firmware), kServerUnavailable);
  EXPECT_THAT(wmi.attempts, SizeIs(1));
}

TEST(FirmwareInterfaceTest, ACommandThatFailsDoesNotCostTheConnection) {
  CountedConnection wmi;
  wmi.services->enumeration_status = static_cast<HRESULT>(0x80041003);
  FirmwareInterface firmware(wmi.AsConnect());
  for (int card = 0; card < 4; ++card) EXPECT_EQ(RunOne(firmware), static_cast<HRESULT>(0x80041003));
  EXPECT_THAT(wmi.attempts, SizeIs(1));
}

}  // namespace
}  // namespace zt::tests
