#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <plog/Log.h>

#include "plugin/component_appender.h"
#include "plugin/logger_export.h"
#include "support/recording_log.h"

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

class Logger : public testing::Test {
 protected:
  tests::RecordingLog host_;
};

TEST_F(Logger, DropsEveryLineBeforeTheFirstCall) {
  PLOG_FATAL << "nobody listens";
  EXPECT_EQ(plog::get(), nullptr);
  EXPECT_THAT(host_.lines, IsEmpty());
}

TEST_F(Logger, ForwardsToTheHostFromTheFirstCallOn) {
  ztSharedInitializeLogger(plog::info, &host_);
  PLOG_WARNING << "something to tell";
  EXPECT_THAT(host_.Messages(plog::warning), ElementsAre("something to tell"));
}

TEST_F(Logger, HoldsBackLinesAboveItsSeverity) {
  ztSharedInitializeLogger(plog::warning, &host_);
  PLOG_INFO << "chatter";
  PLOG_ERROR << "trouble";
  EXPECT_THAT(host_.Messages(), ElementsAre("trouble"));
}

TEST_F(Logger, KeepsTheFirstSeverityAndDoublesEachLineAfterASecondCall) {
  ztSharedInitializeLogger(plog::warning, &host_);
  ztSharedInitializeLogger(plog::verbose, &host_);
  PLOG_INFO << "chatter";
  PLOG_ERROR << "trouble";
  EXPECT_THAT(host_.Messages(), ElementsAre("trouble", "trouble"));
}

TEST_F(Logger, KeepsTheFirstHostAppender) {
  tests::RecordingLog second;
  ztSharedInitializeLogger(plog::info, &host_);
  ztSharedInitializeLogger(plog::info, &second);
  PLOG_ERROR << "trouble";
  EXPECT_THAT(host_.lines, SizeIs(2));
  EXPECT_THAT(second.lines, IsEmpty());
}

TEST_F(Logger, PutsTheFunctionIntoTheFileFieldToo) {
  ztSharedInitializeLogger(plog::info, &host_);
  PLOG_ERROR << "trouble";
  ASSERT_THAT(host_.lines, SizeIs(1));
  EXPECT_THAT(host_.lines[0].function, testing::HasSubstr("TestBody"));
  EXPECT_EQ(host_.lines[0].file, host_.lines[0].function);
}

TEST_F(Logger, TagsEachLineWithTheFileNameOfTheModule) {
  ztSharedInitializeLogger(plog::info, &host_);
  PLOG_ERROR << "trouble";
  ASSERT_THAT(host_.lines, SizeIs(1));
  EXPECT_THAT(host_.lines[0].object, testing::StartsWith(L"collector_tests"));
}

TEST_F(Logger, AppenderKeepsSeverityLineAndInstance) {
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

TEST_F(Logger, ARecordWithoutMessageReadsNull) {
  shared::common::logger::ComponentAppender appender(L"component.dll", &host_);
  appender.write(RecordWithoutMessage());
  EXPECT_THAT(host_.Messages(), ElementsAre("(null)"));
}

TEST_F(Logger, KeepsTextsOutsideAsciiAsTheyAre) {
  ztSharedInitializeLogger(plog::info, &host_);
  PLOG_ERROR << "L\xC3\xBC"
                "fter \xE2\x82\xAC";
  EXPECT_THAT(host_.Messages(), ElementsAre("L\xC3\xBC"
                                            "fter \xE2\x82\xAC"));
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
