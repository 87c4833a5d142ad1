#include <windows.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "support/wmi_namespace.h"
#include "zt/shared/smbios/smbios_info.h"
#include "zt/shared/telemetry_storage.h"
#include "zt/shared/wmi/wmi_client.h"

// The firmware table and the storage folder of this very system.
namespace zt::tests {
namespace {

using shared::TelemetryStorage;
using shared::smbios::SMBiosInfo;
using shared::wmi::WMIClient;

// What Wine's WMI tells where the table has no text, as in a container.
constexpr char kWinesSerialNumber[] = "0";
constexpr char kWinesMaker[] = "The Wine Project";

// A text of Win32_ComputerSystemProduct, which WMI takes from the same structure.
std::string ProductText(const std::wstring& property) {
  WMIClient client(tests::kWmiNamespace);
  EXPECT_EQ(client.ExecQuery(L"SELECT " + property + L" FROM Win32_ComputerSystemProduct"), 0);
  EXPECT_TRUE(client.Next());
  std::string text;
  EXPECT_EQ(client.GetValue(property, text), 0);
  return text;
}

TEST(MachineServicesTest, TheFirmwareTableHasTheSerialNumberThatWmiTells) {
  const SMBiosInfo info(nullptr);
  EXPECT_EQ(info.GetTypeSysInfo().serial_number.value_or(kWinesSerialNumber), ProductText(L"IdentifyingNumber"));
}

TEST(MachineServicesTest, TheFirmwareTableHasTheMakerThatWmiTells) {
  const SMBiosInfo info(nullptr);
  EXPECT_EQ(info.GetTypeSysInfo().manufacturer.value_or(kWinesMaker), ProductText(L"Vendor"));
}

TEST(MachineServicesTest, TheFirmwareTableCanBeRead) {
  EXPECT_EQ(SMBiosInfo(nullptr).GetReadError(), 0U);
}

TEST(MachineServicesTest, TheDefaultFolderIsBelowProgramData) {
  const char* program_data = std::getenv("ProgramData");
  ASSERT_NE(program_data, nullptr);
  EXPECT_EQ(std::string(TelemetryStorage::GetDefaultDBPath()), std::string(program_data) + R"(\zt\telemetry\)");
}

TEST(MachineServicesTest, TheHostsFolderGetsThisSystemsSeparator) {
  TelemetryStorage::SetDefaultDBPath(R"(C:\there)");
  EXPECT_STREQ(TelemetryStorage::GetDefaultDBPath(), R"(C:\there\)");
  TelemetryStorage::SetDefaultDBPath(R"(C:\there\)");
  EXPECT_STREQ(TelemetryStorage::GetDefaultDBPath(), R"(C:\there\)");
}

}  // namespace
}  // namespace zt::tests
