#include <gmock/gmock.h>

#include <filesystem>
#include <utility>
#include <vector>

#include "simulation/profile.h"
#include "zt/shared/smbios/smbios_info.h"
#include "zt/shared/telemetry_storage.h"
#include "zt/shared/wmi/wmi_client.h"

namespace zt::tests {
namespace {

using simulation::CurrentMachine;
using simulation::Machine;
using ::testing::IsEmpty;

// The machine that a profile states, and the same one built by hand.
std::vector<Machine> TheSameMachineTwice() {
  Machine built;
  built.smbios_serial_number = "5CG0000001";
  built.wmi.classes["Win32_PhysicalMemory"] = {{{"ConfiguredClockSpeed", 2400}}, {{"ConfiguredClockSpeed", 3200}}};
  Machine read = simulation::ParseProfile(R"({
    "smbios": {"serial_number": "5CG0000001"},
    "wmi": {"classes": {"Win32_PhysicalMemory": [{"ConfiguredClockSpeed": 2400}, {"ConfiguredClockSpeed": 3200}]}}
  })",
                                          "p.json");
  return {std::move(built), std::move(read)};
}

TEST(MachineTest, NothingExistsUntilAMachineIsSet) {
  EXPECT_FALSE(CurrentMachine().clock);
  EXPECT_THAT(CurrentMachine().wmi.classes, IsEmpty());
  EXPECT_EQ(shared::smbios::SMBiosInfo(nullptr).GetTypeSysInfo().serial_number, std::nullopt);
  shared::wmi::WMIClient client(L"");
  EXPECT_EQ(client.ExecQuery(L"SELECT ConfiguredClockSpeed FROM Win32_PhysicalMemory"), 0);
  EXPECT_FALSE(client.Next());
}

TEST(MachineTest, AMachineBuiltInCodeAnswersAsOneReadFromAProfile) {
  for (Machine& machine : TheSameMachineTwice()) {
    simulation::UseMachine(std::move(machine));
    EXPECT_EQ(shared::smbios::SMBiosInfo(nullptr).GetTypeSysInfo().serial_number, "5CG0000001");
    shared::wmi::WMIClient client(L"");
    ASSERT_EQ(client.ExecQuery(L"SELECT ConfiguredClockSpeed FROM Win32_PhysicalMemory"), 0);
    for (const std::uint32_t expected : {2400U, 3200U}) {
      std::uint32_t clock = 0;
      ASSERT_TRUE(client.Next());
      EXPECT_EQ(client.GetValue(L"ConfiguredClockSpeed", clock), 0);
      EXPECT_EQ(clock, expected);
    }
    EXPECT_FALSE(client.Next());
  }
}

TEST(MachineTest, AnotherMachineTakesThePlaceOfTheOneBefore) {
  simulation::UseMachine(simulation::ReadShippedProfile("convertible-laptop"));
  EXPECT_EQ(CurrentMachine().smbios_serial_number, "5CG0000001");
  simulation::UseMachine({});
  EXPECT_EQ(CurrentMachine().smbios_serial_number, std::nullopt);
  EXPECT_FALSE(CurrentMachine().nvml);
}

// Rows that a client holds are its own, as the rows of a real query are.
TEST(MachineTest, RowsOutliveTheMachineTheyCameFrom) {
  simulation::UseMachine(TheSameMachineTwice().front());
  shared::wmi::WMIClient client(L"");
  ASSERT_EQ(client.ExecQuery(L"SELECT ConfiguredClockSpeed FROM Win32_PhysicalMemory"), 0);
  simulation::UseMachine({});
  ASSERT_TRUE(client.Next());
  std::uint32_t clock = 0;
  EXPECT_EQ(client.GetValue(L"ConfiguredClockSpeed", clock), 0);
  EXPECT_EQ(clock, 2400U);
}

TEST(MachineTest, ItsDatabasesLieBelowTheFolderForTemporaryFiles) {
  const std::string folder = shared::TelemetryStorage::GetDefaultDBPath();
  const std::u8string temporary = std::filesystem::temp_directory_path().u8string();
  EXPECT_TRUE(folder.starts_with(std::string(temporary.begin(), temporary.end()))) << folder;
  EXPECT_THAT(folder, ::testing::HasSubstr("telemetry"));
}

}  // namespace
}  // namespace zt::tests
