#include "zt/shared/wmi/wmi_client.h"

#include <windows.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <regex>
#include <string>
#include <vector>

#include "sdk/wmi-client/windows/wmi_rows.h"
#include "support/status_codes.h"
#include "support/wmi_namespace.h"
#include "variant_values.h"

// Queries to the WMI of this very system.
namespace zt::tests {
namespace {

using shared::wmi::kPropertyNotFound;
using shared::wmi::kTypeMismatch;
using shared::wmi::ObserveQueries;
using shared::wmi::WMIClient;
using shared::wmi::WmiRows;
using shared::wmi::WmiValue;
using ::testing::ElementsAre;

MEMORYSTATUSEX SystemMemory() {
  MEMORYSTATUSEX memory{};
  memory.dwLength = sizeof(memory);
  ::GlobalMemoryStatusEx(&memory);
  return memory;
}

class WmiClientTest : public ::testing::Test {
 protected:
  // Runs a query with at least one row, and goes to the first.
  void GoToRow(const std::wstring& wql) {
    ASSERT_EQ(client_.ExecQuery(wql), 0);
    ASSERT_TRUE(client_.Next());
    wql_ = wql;
  }

  template <typename T>
  T Read(const std::wstring& property) {
    T value{};
    EXPECT_EQ(client_.GetValue(property, value), 0);
    return value;
  }

  /// The property of that row as it arrives, before it is converted.
  WmiValue Property(const std::wstring& property) {
    EXPECT_EQ(rows_.Query(wql_), 0);
    EXPECT_TRUE(rows_.Next());
    com::Variant value;
    EXPECT_EQ(rows_.Read(property, value), 0);
    return shared::wmi::ValueOf(value.Get());
  }

  int CountRows() {
    int rows = 0;
    while (client_.Next()) ++rows;
    return rows;
  }

  WMIClient client_{tests::kWmiNamespace};
  WmiRows rows_{tests::kWmiNamespace};
  std::wstring wql_;
};

TEST_F(WmiClientTest, TotalMemoryArrivesAsTextAndReadsAsANumber) {
  GoToRow(L"SELECT TotalPhysicalMemory FROM Win32_ComputerSystem");
  const WmiValue value = Property(L"TotalPhysicalMemory");
  ASSERT_TRUE(std::holds_alternative<std::wstring>(value));
  EXPECT_EQ(std::stoull(std::get<std::wstring>(value)), SystemMemory().ullTotalPhys);
  EXPECT_EQ(Read<std::uint64_t>(L"TotalPhysicalMemory"), SystemMemory().ullTotalPhys);
}

TEST_F(WmiClientTest, TotalMemoryReadsAs32BitsOnlyWhereItFits) {
  GoToRow(L"SELECT TotalPhysicalMemory FROM Win32_ComputerSystem");
  constexpr std::uint32_t kBefore = 7;
  std::uint32_t value = kBefore;
  const std::int32_t status = client_.GetValue(L"TotalPhysicalMemory", value);
  const bool fits = SystemMemory().ullTotalPhys <= 0xFFFFFFFF;
  EXPECT_EQ(status, fits ? 0 : shared::wmi::kOverflow);
  EXPECT_EQ(value, fits ? SystemMemory().ullTotalPhys : kBefore);
}

TEST_F(WmiClientTest, EachMemoryModuleIsARow) {
  ASSERT_EQ(client_.ExecQuery(L"SELECT Capacity, ConfiguredClockSpeed FROM Win32_PhysicalMemory"), 0);
  int modules = 0;
  for (; client_.Next(); ++modules) EXPECT_GT(Read<std::uint64_t>(L"Capacity"), 0U);
  EXPECT_GE(modules, 1);
}

TEST_F(WmiClientTest, TheOperatingSystemIsOneRowWithItsMemory) {
  GoToRow(L"SELECT FreePhysicalMemory, TotalVirtualMemorySize, FreeVirtualMemory FROM Win32_OperatingSystem");
  EXPECT_GT(Read<std::uint64_t>(L"FreePhysicalMemory"), 0U);
  EXPECT_LE(Read<std::uint64_t>(L"FreePhysicalMemory"), SystemMemory().ullTotalPhys / 1024);
  EXPECT_GT(Read<std::uint64_t>(L"TotalVirtualMemorySize"), 0U);
  EXPECT_GT(Read<std::uint64_t>(L"FreeVirtualMemory"), 0U);
  EXPECT_FALSE(client_.Next());
}

TEST_F(WmiClientTest, A32BitNumberArrivesSigned) {
  GoToRow(L"SELECT NumberOfProcessors FROM Win32_ComputerSystem");
  EXPECT_TRUE(std::holds_alternative<std::int32_t>(Property(L"NumberOfProcessors")));
  EXPECT_GE(Read<std::uint32_t>(L"NumberOfProcessors"), 1U);
}

TEST_F(WmiClientTest, A16BitNumberArrivesWidened) {
  GoToRow(L"SELECT DomainRole FROM Win32_ComputerSystem");
  EXPECT_TRUE(std::holds_alternative<std::int32_t>(Property(L"DomainRole")));
}

TEST_F(WmiClientTest, ABooleanArrivesAsOne) {
  GoToRow(L"SELECT Primary FROM Win32_OperatingSystem");
  EXPECT_EQ(Property(L"Primary"), WmiValue(true));
  EXPECT_TRUE(Read<bool>(L"Primary"));
}

TEST_F(WmiClientTest, AMomentArrivesAsText) {
  GoToRow(L"SELECT LastBootUpTime FROM Win32_OperatingSystem");
  const std::string moment = Read<std::string>(L"LastBootUpTime");
  EXPECT_TRUE(std::regex_match(moment, std::regex(R"(\d{14}\.\d{6}[+-]\d{3})"))) << moment;
}

TEST_F(WmiClientTest, AnArrayCannotBeHeld) {
  constexpr wchar_t kQuery[] = L"SELECT IPAddress FROM Win32_NetworkAdapterConfiguration";
  ASSERT_EQ(client_.ExecQuery(kQuery), 0);
  ASSERT_EQ(rows_.Query(kQuery), 0);
  int arrays = 0;
  while (rows_.Next()) {
    com::Variant value;
    const HRESULT status = rows_.Read(L"IPAddress", value);
    ASSERT_TRUE(client_.Next());
    if (status == 0) {
      EXPECT_EQ(value.Type(), VT_NULL);
      continue;
    }
    EXPECT_EQ(status, kTypeMismatch);
    std::string untouched = "text";
    EXPECT_EQ(client_.GetValue(L"IPAddress", untouched), kTypeMismatch);
    EXPECT_EQ(untouched, "text");
    ++arrays;
  }
  EXPECT_GE(arrays, 1);
}

TEST_F(WmiClientTest, ATextThatIsNoNumberLeavesTheValue) {
  GoToRow(L"SELECT Caption FROM Win32_OperatingSystem");
  std::uint64_t untouched = 7;
  EXPECT_EQ(client_.GetValue(L"Caption", untouched), kTypeMismatch);
  EXPECT_EQ(untouched, 7U);
  EXPECT_NE(Read<std::string>(L"Caption"), "");
}

TEST_F(WmiClientTest, BadSyntaxIsAnInvalidQuery) {
  EXPECT_EQ(client_.ExecQuery(L"SELEKT Name FRUM Win32_OperatingSystem"), tests::kInvalidQuery);
  EXPECT_FALSE(client_.Next());
}

TEST_F(WmiClientTest, AnEmptyQueryFails) {
  EXPECT_LT(client_.ExecQuery(L""), 0);
  EXPECT_FALSE(client_.Next());
}

TEST_F(WmiClientTest, AnUnknownPropertyIsNotFoundAndLeavesTheValue) {
  GoToRow(L"SELECT Caption FROM Win32_OperatingSystem");
  std::uint32_t value = 7;
  EXPECT_EQ(client_.GetValue(L"NoSuchProperty", value), kPropertyNotFound);
  EXPECT_EQ(value, 7U);
}

// Windows tells that it does not know the class, Wine does not.
TEST_F(WmiClientTest, AnUnknownClassHasNoRows) {
  EXPECT_THAT(client_.ExecQuery(L"SELECT Name FROM Win32_NoSuchClass"), ::testing::AnyOf(0, tests::kInvalidClass));
  EXPECT_FALSE(client_.Next());
}

TEST_F(WmiClientTest, BeforeTheFirstAndAfterTheLastRowThereIsNoProperty) {
  ASSERT_EQ(client_.ExecQuery(L"SELECT Caption FROM Win32_OperatingSystem"), 0);
  std::uint32_t value = 7;
  EXPECT_EQ(client_.GetValue(L"Caption", value), kPropertyNotFound);
  EXPECT_TRUE(client_.Next());
  EXPECT_FALSE(client_.Next());
  EXPECT_EQ(client_.GetValue(L"Caption", value), kPropertyNotFound);
  EXPECT_FALSE(client_.Next());
  EXPECT_EQ(value, 7U);
}

TEST_F(WmiClientTest, WithoutAQueryThereIsNoRow) {
  EXPECT_FALSE(client_.Next());
  std::string untouched = "text";
  EXPECT_EQ(client_.GetValue(L"Caption", untouched), kPropertyNotFound);
  EXPECT_EQ(untouched, "text");
}

TEST_F(WmiClientTest, ANewQueryDropsTheRowsBefore) {
  GoToRow(L"SELECT Caption FROM Win32_OperatingSystem");
  EXPECT_NE(client_.ExecQuery(L"SELEKT"), 0);
  std::string value;
  EXPECT_EQ(client_.GetValue(L"Caption", value), kPropertyNotFound);
  EXPECT_FALSE(client_.Next());
}

TEST_F(WmiClientTest, AFailedQueryDoesNotHarmTheNext) {
  EXPECT_NE(client_.ExecQuery(L"SELEKT"), 0);
  GoToRow(L"SELECT Caption FROM Win32_OperatingSystem");
  EXPECT_NE(Read<std::string>(L"Caption"), "");
}

TEST_F(WmiClientTest, AProcessIsFoundByItsNumber) {
  const std::wstring id = std::to_wstring(::GetCurrentProcessId());
  GoToRow(L"SELECT ProcessId, Name FROM Win32_Process WHERE ProcessId = " + id);
  EXPECT_EQ(Read<std::uint32_t>(L"ProcessId"), ::GetCurrentProcessId());
  EXPECT_EQ(Read<std::string>(L"Name"), "sdk_real_tests.exe");
  EXPECT_FALSE(client_.Next());
}

TEST_F(WmiClientTest, EveryServiceIsARow) {
  ASSERT_EQ(client_.ExecQuery(L"SELECT Name FROM Win32_Service"), 0);
  const int services = CountRows();
  EXPECT_GT(services, 1);
  ASSERT_EQ(client_.ExecQuery(L"SELECT Name FROM Win32_Service"), 0);
  EXPECT_EQ(CountRows(), services);
}

TEST_F(WmiClientTest, EveryQueryIsAnnouncedAsItIs) {
  std::vector<std::wstring> announced;
  ObserveQueries([&](const std::wstring& wql) { announced.push_back(wql); });
  client_.ExecQuery(L"SELECT Caption FROM Win32_OperatingSystem");
  client_.ExecQuery(L"SELEKT");
  WMIClient(tests::kNoWmiNamespace).ExecQuery(L"SELECT Name FROM Win32_Service");
  ObserveQueries(nullptr);
  client_.ExecQuery(L"SELECT Name FROM Win32_Service");
  EXPECT_THAT(announced,
              ElementsAre(L"SELECT Caption FROM Win32_OperatingSystem", L"SELEKT", L"SELECT Name FROM Win32_Service"));
}

TEST(WmiClientWithoutNamespaceTest, EveryQueryHasTheStatusOfTheConnection) {
  WMIClient client(tests::kNoWmiNamespace);
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(client.ExecQuery(L"SELECT Caption FROM Win32_OperatingSystem"), tests::kInvalidNamespace);
    EXPECT_FALSE(client.Next());
  }
}

}  // namespace
}  // namespace zt::tests
