#include "sdk/private-bios-wmi/windows/firmware_interface.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/status_codes.h"
#include "support/windows/counted_connection.h"

namespace zt::tests {
namespace {

using shared::ztbios::FirmwareInterface;
using shared::ztbios::FirmwareReply;
using testing::ElementsAre;
using testing::SizeIs;

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
  wmi.status = tests::kServerUnavailable;
  FirmwareInterface firmware(wmi.AsConnect());
  for (int card = 0; card < 4; ++card) EXPECT_EQ(RunOne(firmware), tests::kServerUnavailable);
  EXPECT_THAT(wmi.attempts, SizeIs(1));
}

TEST(FirmwareInterfaceTest, ACommandThatFailsDoesNotCostTheConnection) {
  CountedConnection wmi;
  wmi.services->enumeration_status = tests::kAccessDenied;
  FirmwareInterface firmware(wmi.AsConnect());
  for (int card = 0; card < 4; ++card) EXPECT_EQ(RunOne(firmware), tests::kAccessDenied);
  EXPECT_THAT(wmi.attempts, SizeIs(1));
}

}  // namespace
}  // namespace zt::tests
