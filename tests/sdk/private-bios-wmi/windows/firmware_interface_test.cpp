#include "sdk/private-bios-wmi/windows/firmware_interface.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "base/time_limit.h"
#include "support/status_codes.h"
#include "support/windows/counted_connection.h"

namespace zt::tests {
namespace {

using shared::ztbios::FirmwareInterface;
using shared::ztbios::FirmwareReply;
using std::chrono::milliseconds;
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

// So it is with a firmware that answers each card late.
TEST(FirmwareInterfaceTest, AllCommandsHaveTheirTimeTogether) {
  CountedConnection wmi;
  wmi.services->instances->answers = {{WBEM_S_FALSE, {}, [] { std::this_thread::sleep_for(milliseconds(60)); }}};
  FirmwareInterface firmware(wmi.AsConnect(), milliseconds(50));
  EXPECT_NE(RunOne(firmware), base::kTimedOut);
  for (int card = 0; card < 4; ++card) EXPECT_EQ(RunOne(firmware), base::kTimedOut);
  EXPECT_THAT(wmi.services->instances->calls, SizeIs(1));
}

TEST(FirmwareInterfaceTest, ACommandMayNotTakeMoreThanIsLeftForAll) {
  CountedConnection wmi;
  FirmwareInterface firmware(wmi.AsConnect(), milliseconds(700));
  RunOne(firmware);
  ASSERT_THAT(wmi.services->instances->calls, SizeIs(1));
  EXPECT_LE(wmi.services->instances->calls.front().timeout_ms, 700);
}

}  // namespace
}  // namespace zt::tests
