#include "host/machine_choice.h"

#include <gmock/gmock.h>

#include <regex>

#include "host/failure.h"
#include "program_run.h"
#include "simulation/machine.h"
#include "support/temporary_folder.h"

namespace zt::telemetry::host {
namespace {

using testing::HasSubstr;

const std::vector<std::string> kShipped = {"bare", "convertible-laptop", "everything", "failing", "workstation"};

TEST(MachineChoiceTest, MachinesListsTheShippedProfilesWithTheirDescriptions) {
  const ProgramRun run = RunProgram({"machines"});
  EXPECT_EQ(run.exit_code, kExitDone);
  const std::vector<std::string> lines = Lines(run.out);
  ASSERT_EQ(lines.size(), kShipped.size());
  for (std::size_t i = 0; i < lines.size(); ++i) {
    EXPECT_TRUE(std::regex_match(lines[i], std::regex(kShipped[i] + "  +[^ ].*"))) << lines[i];
  }
}

TEST(MachineChoiceTest, EveryShippedMachineCanBeChosen) {
  for (const std::string& name : kShipped) {
    ChooseMachine(name);
    EXPECT_FALSE(simulation::CurrentMachine().description.empty()) << name;
  }
}

TEST(MachineChoiceTest, AProfileFileCanBeChosenWhateverItsName) {
  const zt::tests::TemporaryFolder folder;
  WriteFile(folder.Path() / std::filesystem::path(u8"Gerät 日本.json"), R"({"smbios": {"serial_number": "SN42"}})");
  ChooseMachine(folder.File("Gerät 日本.json"));
  EXPECT_EQ(simulation::CurrentMachine().smbios_serial_number, "SN42");
}

TEST(MachineChoiceTest, WithoutAMachineTheMessageTellsWhatThereIs) {
  const ProgramRun run = RunProgram({"collect"});
  EXPECT_EQ(run.exit_code, kExitWrongUsage);
  EXPECT_THAT(run.err,
              HasSubstr("--machine is missing: this build samples simulated machines; expected bare, "
                        "convertible-laptop, everything, failing, workstation, or the file of a machine profile"));
}

TEST(MachineChoiceTest, AMachineThatDoesNotExistIsNamed) {
  const ProgramRun run = RunProgram({"collect", "--machine", "toaster"});
  EXPECT_EQ(run.exit_code, kExitWrongUsage);
  EXPECT_THAT(run.err,
              HasSubstr("--machine toaster: there is neither a machine nor a file of this name; expected bare"));
}

TEST(MachineChoiceTest, AProfileWithAnErrorNamesTheFileAndTheKeyBeforeAnythingIsHandedOver) {
  const zt::tests::TemporaryFolder folder;
  WriteFile(folder.Path() / "broken.json", R"({"smbios": {"serial_number": 5}})");
  const ProgramRun run = RunProgram({"collect", "--machine", folder.File("broken.json"), "--format", "json"});
  EXPECT_EQ(run.exit_code, kExitWrongUsage);
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(run.err, AllOf(HasSubstr("broken.json"), HasSubstr("serial_number")));
}

TEST(MachineChoiceTest, AFolderIsNoProfile) {
  const zt::tests::TemporaryFolder folder;
  const ProgramRun run = RunProgram({"collect", "--machine", ToText(folder.Path())});
  EXPECT_EQ(run.exit_code, kExitWrongUsage);
  EXPECT_THAT(run.err, HasSubstr("this is a folder, not the file of a machine profile"));
}

}  // namespace
}  // namespace zt::telemetry::host
