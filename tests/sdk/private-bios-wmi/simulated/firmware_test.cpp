#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <utility>

#include "simulation/machine.h"
#include "support/status_codes.h"
#include "zt/shared/smbios/smbios_info.h"
#include "zt/shared/ztbios/private_bios_wmi.h"

// What the machine's firmware says: its system information table and its private commands.
namespace zt::tests {
namespace {

using shared::smbios::SMBiosInfo;
using shared::ztbios::PrivateBiosWmi;
using simulation::BiosReply;
using simulation::Machine;
using ::testing::Each;
using ::testing::ElementsAre;

std::optional<std::string> SerialNumberOf(std::optional<std::string> stated) {
  Machine machine;
  machine.smbios_serial_number = std::move(stated);
  simulation::UseMachine(std::move(machine));
  return SMBiosInfo(nullptr).GetTypeSysInfo().serial_number;
}

TEST(SimulatedFirmwareTest, TheSerialNumberIsThatOfTheMachine) {
  EXPECT_EQ(SerialNumberOf("5CG0000001"), "5CG0000001");
  EXPECT_EQ(SerialNumberOf(" caf\xC3\xA9 "), " caf\xC3\xA9 ");
  EXPECT_EQ(SerialNumberOf(std::string(300, 'x')), std::string(300, 'x'));
}

TEST(SimulatedFirmwareTest, AMachineWithoutSerialNumberHasNone) {
  EXPECT_EQ(SerialNumberOf(std::nullopt), std::nullopt);
}

TEST(SimulatedFirmwareTest, AnEmptySerialNumberIsThereAndEmpty) {
  EXPECT_EQ(SerialNumberOf(""), "");
}

TEST(SimulatedFirmwareTest, ATableThatCannotBeReadIsAnErrorAndOneWithoutANumberIsNot) {
  Machine machine;
  machine.smbios_failure = simulation::Failure{tests::kCallDenied};
  simulation::UseMachine(machine);
  EXPECT_EQ(SMBiosInfo(nullptr).GetReadError(), 5U);
  EXPECT_EQ(SMBiosInfo(nullptr).GetTypeSysInfo().serial_number, std::nullopt);
  simulation::UseMachine({});
  EXPECT_EQ(SMBiosInfo(nullptr).GetReadError(), 0U);
}

TEST(SimulatedFirmwareTest, NothingElseIsKnownOfTheSystem) {
  SerialNumberOf("5CG0000001");
  const SMBiosInfo info(nullptr);
  EXPECT_EQ(info.GetTypeSysInfo().manufacturer, std::nullopt);
  EXPECT_EQ(info.GetTypeSysInfo().product_name, std::nullopt);
  EXPECT_EQ(info.GetTypeSysInfo().version, std::nullopt);
}

// The outcome of a command with buffers that start filled.
struct Outcome {
  std::int32_t result = 0;
  std::uint32_t return_code = 77;
  std::array<std::uint8_t, 8> output = {9, 9, 9, 9, 9, 9, 9, 9};
};

Outcome RunCommand(std::uint32_t command, std::uint32_t command_type, const std::vector<std::uint8_t>& input) {
  Outcome outcome;
  outcome.result = PrivateBiosWmi().ExecuteCommand(command, command_type, static_cast<std::uint32_t>(input.size()),
                                                   input.data(), static_cast<std::uint32_t>(outcome.output.size()),
                                                   outcome.output.data(), &outcome.return_code);
  return outcome;
}

void UseReplies(std::vector<BiosReply> replies) {
  Machine machine;
  machine.private_bios = std::move(replies);
  simulation::UseMachine(std::move(machine));
}

TEST(SimulatedFirmwareTest, ACommandIsAnsweredByTheFirstReplyThatFitsAllOfIt) {
  UseReplies({{2, 40, {1, 0, 0, 0}, 0, 0, {20}},
              {1, 41, {1, 0, 0, 0}, 0, 0, {21}},
              {1, 40, {1, 0, 0}, 0, 0, {22}},
              {1, 40, {1, 0, 0, 0}, 0, 5, {2, 55}},
              {1, 40, {1, 0, 0, 0}, 0, 6, {23}}});
  const Outcome outcome = RunCommand(1, 40, {1, 0, 0, 0});
  EXPECT_EQ(outcome.result, 0);
  EXPECT_EQ(outcome.return_code, 5U);
  EXPECT_THAT(outcome.output, ElementsAre(2, 55, 0, 0, 0, 0, 0, 0));
}

TEST(SimulatedFirmwareTest, ALongReplyIsCutToTheBuffer) {
  UseReplies({{1, 40, {}, 0, 0, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10}}});
  EXPECT_THAT(RunCommand(1, 40, {}).output, ElementsAre(1, 2, 3, 4, 5, 6, 7, 8));
}

TEST(SimulatedFirmwareTest, ACommandThatNoReplyFitsFailsAndLeavesTheBuffers) {
  UseReplies({{1, 40, {1}, 0, 0, {2}}});
  const Outcome outcome = RunCommand(1, 40, {2});
  EXPECT_EQ(outcome.result, 1);
  EXPECT_EQ(outcome.return_code, 77U);
  EXPECT_THAT(outcome.output, Each(9));
}

TEST(SimulatedFirmwareTest, AReplyThatFailsLeavesTheBuffers) {
  UseReplies({{1, 40, {1}, -7, 3, {2}}});
  const Outcome outcome = RunCommand(1, 40, {1});
  EXPECT_EQ(outcome.result, -7);
  EXPECT_EQ(outcome.return_code, 77U);
  EXPECT_THAT(outcome.output, Each(9));
}

}  // namespace
}  // namespace zt::tests
