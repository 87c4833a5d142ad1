#include "host/event_log.h"

#include <windows.h>
#include <gmock/gmock.h>

#include <filesystem>

#include "host/failure.h"
#include "support/temporary_folder.h"
#include "tests/host/program_run.h"

namespace zt::telemetry::host {
namespace {

using testing::HasSubstr;

constexpr wchar_t kSourceKey[] = L"SYSTEM\\CurrentControlSet\\Services\\EventLog\\Application\\zt-telemetry-host";

std::wstring MessageFile() {
  constexpr DWORD kLongest = 1024;
  wchar_t text[kLongest] = {};
  DWORD size = sizeof(text);
  const LSTATUS status = ::RegGetValueW(HKEY_LOCAL_MACHINE, kSourceKey, L"EventMessageFile",
                                        RRF_RT_REG_EXPAND_SZ | RRF_NOEXPAND, nullptr, text, &size);
  return status == ERROR_SUCCESS ? text : L"";
}

ProgramRun Collect(const zt::tests::TemporaryFolder& folder) {
  return RunProgram({"collect", "--machine", "bare", "--database-dir", folder.Utf8(), "--log-to", "event-log",
                     "--log-file", folder.File("log.txt")});
}

// One test, since there is one registry: the way of an administrator from nothing to a log and back. Wine takes reports
// and keeps none, so that nobody can read them there.
TEST(EventLogTest, TakesReportsOnceTheProgramIsKnownToIt) {
  const zt::tests::TemporaryFolder folder;
  RunProgram({"event-source", "remove"});
  const ProgramRun unknown = Collect(folder);
  EXPECT_EQ(unknown.exit_code, kExitWrongUsage);
  EXPECT_THAT(unknown.err, HasSubstr("run \"zt-telemetry-host event-source add\" once as an administrator"));
  EXPECT_EQ(unknown.out, "");

  ASSERT_EQ(RunProgram({"event-source", "add"}).exit_code, kExitDone);
  EXPECT_THAT(MessageFile(), testing::HasSubstr(L"EventLogMessages.dll"));
  EXPECT_EQ(RunProgram({"event-source", "add"}).exit_code, kExitDone) << "again";
  const ProgramRun known = Collect(folder);
  EXPECT_EQ(known.exit_code, kExitDone) << known.err;
  EXPECT_THAT(known.out, HasSubstr("SENT PcLogPerformanceSamplesAsCDM"));
  EXPECT_FALSE(std::filesystem::exists(folder.Path() / "log.txt")) << "the log goes to one place";

  EXPECT_EQ(RunProgram({"event-source", "remove"}).exit_code, kExitDone);
  EXPECT_EQ(MessageFile(), L"");
  const ProgramRun again = RunProgram({"event-source", "remove"});
  EXPECT_EQ(again.exit_code, kExitFailed);
  EXPECT_THAT(again.err, HasSubstr("the Event Log does not know this program"));
  HKEY log = nullptr;
  EXPECT_EQ(::RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"SYSTEM\\CurrentControlSet\\Services\\EventLog\\Application", 0,
                            KEY_QUERY_VALUE, &log),
            ERROR_SUCCESS)
      << "the log itself stays";
  if (log != nullptr) ::RegCloseKey(log);
}

}  // namespace
}  // namespace zt::telemetry::host
