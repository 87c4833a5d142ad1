#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <plog/Log.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "collector/performance_samples.h"
#include "messages/log_text.h"
#include "plugin/component_appender.h"
#include "plugin/logger_export.h"
#include "support/recording_log.h"
#include "support/recording_sink.h"
#include "support/temporary_folder.h"
#include "zt/shared/telemetry_storage.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

// A record that has no message, as a host's own record type may.
class RecordWithoutMessage : public plog::Record {
 public:
  RecordWithoutMessage() : plog::Record(plog::warning, "Where", 7, "file.cpp", nullptr, 3) {}
  const plog::util::nchar* getMessage() const override { return nullptr; }
};

class LoggerTest : public testing::Test {
 protected:
  tests::RecordingLog host_;
};

TEST_F(LoggerTest, ACycleBeforeTheFirstCallLogsNothingAndFailsNowhere) {
  tests::TemporaryFolder folder;
  shared::TelemetryStorage::SetDefaultDBPath(folder.Utf8());
  const auto sink = tests::RegisterRecordingSink();
  sink->store_outcome = {5, 1, "the store is full", "", ""};
  PerformanceSamples collector;
  collector.Execute(R"({"eventType": 50})", nullptr);
  EXPECT_THAT(sink->sent, SizeIs(1));

  ztSharedInitializeLogger(plog::verbose, &host_);
  EXPECT_THAT(host_.lines, IsEmpty()) << "what was logged before is not kept";
  collector.Execute(R"({"eventType": 50})", nullptr);
  EXPECT_THAT(host_.Messages(), testing::Contains("the store is full").Times(1));
}

TEST_F(LoggerTest, ForwardsToTheHostFromTheFirstCallOn) {
  ztSharedInitializeLogger(plog::info, &host_);
  PLOG_WARNING << "something to tell";
  EXPECT_THAT(host_.Messages(plog::warning), ElementsAre("something to tell"));
}

TEST_F(LoggerTest, HoldsBackLinesAboveItsSeverity) {
  ztSharedInitializeLogger(plog::warning, &host_);
  PLOG_INFO << "chatter";
  PLOG_ERROR << "trouble";
  EXPECT_THAT(host_.Messages(), ElementsAre("trouble"));
}

TEST_F(LoggerTest, KeepsTheFirstSeverityAndDoublesEachLineAfterASecondCall) {
  ztSharedInitializeLogger(plog::warning, &host_);
  ztSharedInitializeLogger(plog::verbose, &host_);
  PLOG_INFO << "chatter";
  PLOG_ERROR << "trouble";
  EXPECT_THAT(host_.Messages(), ElementsAre("trouble", "trouble"));
}

TEST_F(LoggerTest, KeepsTheFirstHostAppender) {
  tests::RecordingLog second;
  ztSharedInitializeLogger(plog::info, &host_);
  ztSharedInitializeLogger(plog::info, &second);
  PLOG_ERROR << "trouble";
  EXPECT_THAT(host_.lines, SizeIs(2));
  EXPECT_THAT(second.lines, IsEmpty());
}

TEST_F(LoggerTest, PutsTheFunctionIntoTheFileFieldToo) {
  ztSharedInitializeLogger(plog::info, &host_);
  PLOG_ERROR << "trouble";
  ASSERT_THAT(host_.lines, SizeIs(1));
  // As far as plog keeps it: some compilers write an unnamed namespace in brackets, where it cuts.
  EXPECT_THAT(host_.lines[0].function, testing::HasSubstr("performancesamples::"));
  EXPECT_EQ(host_.lines[0].file, host_.lines[0].function);
}

TEST_F(LoggerTest, TagsEachLineWithTheFileNameOfTheModule) {
  ztSharedInitializeLogger(plog::info, &host_);
  PLOG_ERROR << "trouble";
  ASSERT_THAT(host_.lines, SizeIs(1));
  EXPECT_THAT(host_.lines[0].object, testing::StartsWith(L"collector_tests"));
}

TEST_F(LoggerTest, AppenderKeepsSeverityLineAndInstance) {
  shared::common::logger::ComponentAppender appender(L"component.dll", &host_);
  plog::Record record(plog::debug, "Where", 42, "file.cpp", nullptr, 3);
  record << "text";
  appender.write(record);
  ASSERT_THAT(host_.lines, SizeIs(1));
  EXPECT_EQ(host_.lines[0].severity, plog::debug);
  EXPECT_EQ(host_.lines[0].line, 42U);
  EXPECT_EQ(host_.lines[0].instance, 3);
  EXPECT_EQ(host_.lines[0].object, L"component.dll");
  EXPECT_EQ(host_.lines[0].file, "Where");
  EXPECT_EQ(host_.lines[0].message, "text");
}

TEST_F(LoggerTest, ARecordWithoutMessageReadsNull) {
  shared::common::logger::ComponentAppender appender(L"component.dll", &host_);
  appender.write(RecordWithoutMessage());
  EXPECT_THAT(host_.Messages(), ElementsAre("(null)"));
}

TEST_F(LoggerTest, KeepsTextsOutsideAsciiAsTheyAre) {
  ztSharedInitializeLogger(plog::info, &host_);
  const std::string text =
      "L\xC3\xBC"
      "fter \xE2\x82\xAC";
  PLOG_ERROR << LogText(text);
  EXPECT_THAT(host_.Messages(), ElementsAre(text));
}

// Runs when the logger must be gone already: handlers run in the reverse of the order in which they were set up.
void TellOfPlogsInstance() {
  std::fputs(plog::get() == nullptr ? "no logger is left" : "a logger is left", stderr);
}

TEST(LoggerDeathTest, ALoggerThatIsDestroyedIsPlogsNoLonger) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        std::atexit(&TellOfPlogsInstance);
        tests::RecordingLog host;
        ztSharedInitializeLogger(plog::info, &host);
        std::exit(plog::get() != nullptr ? 0 : 1);
      },
      testing::ExitedWithCode(0), "no logger is left");
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
