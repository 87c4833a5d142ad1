#include "fleet/forward/input_forwarder.h"

#include <gtest/gtest.h>

#include <string>

#include "fleet/tests/in_memory_sink.h"

namespace zt::telemetry::fleet {
namespace {

constexpr char kLine[] =
    R"({"handover":"send","type":"zt.telemetry.contract.upload.log.PcLogPerformanceSamplesAsCDM","record":)"
    R"({"collectionId":"5CG1_2026-03-07T12:00:00","localTime":"2026-03-07T12:00:00.000Z"}})";

class InputForwarderTest : public testing::Test {
 protected:
  RecordMaker maker_{"1.0"};
  InMemorySink sink_;
  Counters counters_;
  InputForwarder input_{"file a", InputForm::kUnknown, maker_, sink_, counters_};
};

TEST_F(InputForwarderTest, SendsEachRecordAndCountsIt) {
  EXPECT_TRUE(input_.Add(std::string(kLine) + "\n" + kLine));
  EXPECT_TRUE(input_.End());
  EXPECT_EQ(sink_.sent.size(), 2U);
  EXPECT_EQ(counters_.records_read, 2);
  EXPECT_EQ(counters_.bytes_read, static_cast<std::int64_t>(sink_.sent[0].record.bytes.size() * 2));
  EXPECT_EQ(input_.Deliveries().pending, 2);
}

TEST_F(InputForwarderTest, BuriesTheRestBehindALengthThatIsNone) {
  const std::string record(
      "\x0A\x03"
      "abc",
      5);
  EXPECT_TRUE(input_.Add("\x05" + record + "\xFF\xFF\xFF\xFF\xFF\xFF"));
  EXPECT_TRUE(input_.Add("\x05" + record));
  EXPECT_TRUE(input_.End());
  EXPECT_EQ(sink_.sent.size(), 1U);
  ASSERT_EQ(sink_.dead.size(), 1U);
  EXPECT_EQ(sink_.dead[0].source, "file a, record 2");
  EXPECT_TRUE(input_.HasLostItsPlace());
}

TEST_F(InputForwarderTest, BuriesALineThatIsNoRecordAndSendsTheNext) {
  EXPECT_TRUE(input_.Add("{\"type\":1}\n" + std::string(kLine) + "\n"));
  ASSERT_EQ(sink_.dead.size(), 1U);
  EXPECT_EQ(sink_.dead[0].bad.bytes, "{\"type\":1}");
  EXPECT_EQ(sink_.dead[0].source, "file a, line 1");
  EXPECT_EQ(sink_.sent.size(), 1U);
  EXPECT_FALSE(input_.HasLostItsPlace());
}

TEST_F(InputForwarderTest, CountsTextsAndSendsThemNowhere) {
  EXPECT_TRUE(input_.Add("{\"handover\":\"send\",\"type\":\"text\",\"text\":\"x\"}\n"));
  EXPECT_EQ(counters_.texts_read, 1);
  EXPECT_TRUE(sink_.sent.empty() && sink_.dead.empty());
}

TEST_F(InputForwarderTest, StopsWhereTheSinkDoes) {
  sink_.stops = true;
  EXPECT_FALSE(input_.Add(std::string(kLine) + "\n"));
}

}  // namespace
}  // namespace zt::telemetry::fleet
