#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/failure.h"
#include "tests/host/program_run.h"

namespace zt::telemetry::host {
namespace {

TEST(EventLogTest, IsWrongUsageWhereTheSystemHasNone) {
  for (const std::vector<std::string>& arguments :
       std::vector<std::vector<std::string>>{{"collect", "--machine", "bare", "--log-to", "event-log"},
                                             {"event-source", "add"},
                                             {"event-source", "remove"}}) {
    const ProgramRun run = RunProgram(arguments);
    EXPECT_EQ(run.exit_code, kExitWrongUsage) << arguments.front();
    EXPECT_THAT(run.err, testing::HasSubstr("this system has no Event Log"));
    EXPECT_EQ(run.out, "");
  }
}

}  // namespace
}  // namespace zt::telemetry::host
