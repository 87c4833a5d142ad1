#include <windows.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <string>

#include "samplers/operating_system/process_details.h"
#include "samplers/operating_system/process_operations.h"
#include "samplers/operating_system_info_msg.h"
#include "support/windows/child_process.h"
#include "support/wmi_namespace.h"

// The process sampler over this very system.
namespace zt::telemetry::collector::performancesamples {
namespace {

using shared::wmi::WMIClient;
using tests::ChildProcess;

std::shared_ptr<WMIProcessInfo> Listed(DWORD id) {
  auto process = std::make_shared<WMIProcessInfo>();
  process->process_id = std::to_string(id);
  return process;
}

// The wall clock of this system, `minutes` ago, to the second.
std::string LocalTimeText(int minutes) {
  FILETIME utc{};
  ::GetSystemTimeAsFileTime(&utc);
  const ULONGLONG moment =
      (ULONGLONG{utc.dwHighDateTime} << 32U) + utc.dwLowDateTime - static_cast<ULONGLONG>(minutes) * 600'000'000;
  const FILETIME past{static_cast<DWORD>(moment), static_cast<DWORD>(moment >> 32U)};
  FILETIME local{};
  ::FileTimeToLocalFileTime(&past, &local);
  SYSTEMTIME time{};
  ::FileTimeToSystemTime(&local, &time);
  char text[32];
  std::snprintf(text, sizeof text, "%04u-%02u-%02uT%02u:%02u:%02u", time.wYear, time.wMonth, time.wDay, time.wHour,
                time.wMinute, time.wSecond);
  return text;
}

class SystemProcessSamplerTest : public testing::Test {
 protected:
  const auto& Sample() {
    PerfMessages::Init(this, 50);
    OperatingSystemInfoMsg(&wmi_).PopulateStorageAndUploadProtos();
    return PerfMessages::static_cdm_->operating_system_info();
  }

  int CountRows(const std::wstring& wql) {
    EXPECT_EQ(wmi_.ExecQuery(wql), 0);
    int count = 0;
    while (wmi_.Next()) ++count;
    return count;
  }

  WMIClient wmi_{tests::kWmiNamespace};
};

TEST_F(SystemProcessSamplerTest, TellsTheSession) {
  const auto& session = Sample().operating_session_info();
  EXPECT_EQ(session.max_user_input_delay_ms(), static_cast<std::uint32_t>(::GetSystemMetrics(95)));
  EXPECT_GE(session.time_since_last_boot_minutes(), 0.0F);
  EXPECT_LE(session.time_since_last_boot_minutes(), static_cast<float>(::GetTickCount64() / 60'000));
  EXPECT_TRUE(session.has_time_since_last_logon_minutes());
}

TEST_F(SystemProcessSamplerTest, ReportsNoProcessWhereThePerformanceTableHasNoRows) {
  const int rows = CountRows(L"SELECT Name FROM Win32_PerfFormattedData_PerfProc_Process");
  if (rows != 0) GTEST_SKIP() << "this system's table has " << rows << " rows; Wine's has none";
  const auto& section = Sample();
  EXPECT_TRUE(section.operating_session_info().has_time_since_last_logon_minutes()) << "the pass came to its end";
  EXPECT_EQ(section.resource_intensive_processes_info_size(), 0);
}

TEST_F(SystemProcessSamplerTest, AsksForTheOperationsOfExactlyTheseProcesses) {
  const ChildProcess child(L"cmd.exe");
  const ProcessList processes = {Listed(::GetCurrentProcessId()), Listed(child.Id())};
  ProcessTable table;
  for (const auto& process : processes) table[process->process_id] = process;
  ASSERT_EQ(wmi_.ExecQuery(OperationsQuery(processes)), 0);
  ProcessList told;
  while (wmi_.Next()) told.push_back(FindProcessOfRow(wmi_, table));
  EXPECT_THAT(told, testing::UnorderedElementsAreArray(processes));
}

TEST_F(SystemProcessSamplerTest, TellsTheDetailsOfThisProcess) {
  const auto process = Listed(::GetCurrentProcessId());
  FillDetails(*process);
  // The rights that details are asked with do not allow the wait that would tell "running".
  EXPECT_EQ(process->status, "unknown");
  EXPECT_THAT(process->start_time, testing::MatchesRegex("20..-..-..T..:..:.....:.."));
  EXPECT_GT(process->start_time, LocalTimeText(10));
  EXPECT_LE(process->start_time.substr(0, LocalTimeText(0).size()), LocalTimeText(0));
  EXPECT_FALSE(process->has_window_title);
}

TEST_F(SystemProcessSamplerTest, TellsAProcessThatHasEnded) {
  ChildProcess child(L"cmd.exe");
  const auto process = Listed(child.Id());
  child.End(3);
  FillDetails(*process);
  EXPECT_EQ(process->status, "terminated");
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
