#include "sdk/wmi-client/query_limits.h"

#include <gtest/gtest.h>

#include <chrono>

namespace zt::tests {
namespace {

using shared::wmi::LimitsOf;
using std::chrono::seconds;

bool HasTimeToStart(std::wstring_view wql) {
  return LimitsOf(wql).object == seconds(45) && LimitsOf(wql).whole == seconds(60);
}

bool IsOrdinary(std::wstring_view wql) {
  return LimitsOf(wql).object == seconds(5) && LimitsOf(wql).whole == seconds(15);
}

TEST(QueryLimitsTest, ThePerformanceClassesGetTheTimeThatTheirProviderTakesToStart) {
  EXPECT_TRUE(HasTimeToStart(L"SELECT Name FROM Win32_PerfFormattedData_PerfProc_Process"));
  EXPECT_TRUE(HasTimeToStart(L"SELECT * FROM Win32_PerfRawData_Tcpip_NetworkInterface WHERE Name = \"a\""));
}

TEST(QueryLimitsTest, KeywordsAndClassesAreKnownInEitherCaseAndWithBlanks) {
  EXPECT_TRUE(HasTimeToStart(L"select Name from   WIN32_PERFFORMATTEDDATA_PERFPROC_PROCESS"));
}

TEST(QueryLimitsTest, OtherClassesGetTheOrdinaryTime) {
  EXPECT_TRUE(IsOrdinary(L"SELECT FreePhysicalMemory FROM Win32_OperatingSystem"));
  EXPECT_TRUE(IsOrdinary(L"SELECT Name FROM Win32_Per"));
  EXPECT_TRUE(IsOrdinary(L"ASSOCIATORS OF {Win32_DiskDrive.DeviceID='a'} WHERE ResultClass = Win32_DiskPartition"));
  EXPECT_TRUE(IsOrdinary(L""));
  EXPECT_TRUE(IsOrdinary(L"SELECT Name FROM "));
}

TEST(QueryLimitsTest, ATextInTheQueryIsNoClass) {
  EXPECT_TRUE(IsOrdinary(L"SELECT Name FROM Win32_Service WHERE Name = \"a FROM Win32_PerfX\""));
  EXPECT_TRUE(IsOrdinary(L"SELECT Win32_PerfX FROM Win32_Service"));
}

}  // namespace
}  // namespace zt::tests
