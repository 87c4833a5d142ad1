#include <gmock/gmock.h>
#include <google/protobuf/timestamp.pb.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "scripted_collector.h"
#include "zt/telemetry/common/telemetry_sink.h"

namespace zt::tests {
namespace {

using google::protobuf::Timestamp;
using telemetry::common::Error;
using telemetry::common::RegisteredTelemetrySink;
using telemetry::common::RegisterTelemetrySink;
using telemetry::common::TelemetrySink;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// A receiver that notes what comes, and then does what a test says.
class ScriptedSink : public TelemetrySink {
 public:
  Error Store(const google::protobuf::Message& record) override {
    received.push_back("store " + record.ShortDebugString());
    return answer();
  }
  Error Send(const google::protobuf::Message& record) override {
    received.push_back("send " + record.ShortDebugString());
    return answer();
  }
  Error Send(const std::string& text) override {
    received.push_back("text " + text);
    return answer();
  }

  std::function<Error()> answer = [] { return Error(); };
  std::vector<std::string> received;
};

class HandOverTest : public ::testing::Test {
 protected:
  HandOverTest() { record_.set_seconds(7); }
  ~HandOverTest() override { RegisterTelemetrySink(nullptr); }

  std::shared_ptr<ScriptedSink> RegisterSink() {
    auto sink = std::make_shared<ScriptedSink>();
    RegisterTelemetrySink(sink);
    return sink;
  }

  // The outcomes of all three ways.
  std::vector<Error> HandOverEachWay() {
    return {collector_.AddStore(record_), collector_.AddSend(record_), collector_.AddSend(std::string("example"))};
  }

  ScriptedCollector collector_;
  Timestamp record_;
};

TEST_F(HandOverTest, EachWayReachesItsOperationOfTheSink) {
  const auto sink = RegisterSink();
  EXPECT_THAT(HandOverEachWay(), ElementsAre(Error(), Error(), Error()));
  EXPECT_THAT(sink->received, ElementsAre("store seconds: 7", "send seconds: 7", "text example"));
}

TEST_F(HandOverTest, ATextIsHandedOverWhole) {
  const auto sink = RegisterSink();
  collector_.AddSend(std::string("a\0b", 3));
  EXPECT_THAT(sink->received, ElementsAre(std::string("text a\0b", 8)));
}

TEST_F(HandOverTest, WithoutASinkEachWayFails) {
  for (const Error& outcome : HandOverEachWay()) {
    EXPECT_EQ(outcome.kind, 5);
    EXPECT_EQ(outcome.code, -1);
    EXPECT_EQ(outcome.description, "No telemetry sink is registered");
  }
}

TEST_F(HandOverTest, TheFailureOfTheSinkIsTheOutcome) {
  const Error full(5, 112, "disk full", "typed", "told");
  RegisterSink()->answer = [&] { return full; };
  EXPECT_THAT(HandOverEachWay(), ElementsAre(full, full, full));
}

TEST_F(HandOverTest, AnErrorThrownByTheSinkIsTheOutcome) {
  const Error full(5, 112, "disk full", "typed", "told");
  RegisterSink()->answer = [&]() -> Error { throw full; };
  EXPECT_THAT(HandOverEachWay(), ElementsAre(full, full, full));
}

TEST_F(HandOverTest, AnExceptionOfTheSinkIsAFailedOutcome) {
  RegisterSink()->answer = []() -> Error { throw std::runtime_error("disk full"); };
  const Error unknown(1, 0, "Unknown exception type.", "Unknown", "");
  EXPECT_THAT(HandOverEachWay(), ElementsAre(unknown, unknown, unknown));
}

TEST_F(HandOverTest, ASinkThatThrewIsCalledAgain) {
  const auto sink = RegisterSink();
  sink->answer = []() -> Error { throw std::runtime_error("once"); };
  collector_.AddStore(record_);
  sink->answer = [] { return Error(); };
  EXPECT_EQ(collector_.AddStore(record_), Error());
  EXPECT_EQ(sink->received.size(), 2U);
}

TEST_F(HandOverTest, TheLastSinkReceives) {
  const auto first = RegisterSink();
  const auto second = RegisterSink();
  collector_.AddStore(record_);
  EXPECT_THAT(first->received, IsEmpty());
  EXPECT_THAT(second->received, ElementsAre("store seconds: 7"));
}

TEST_F(HandOverTest, ASinkThatIsTakenAwayReceivesNothing) {
  const auto sink = RegisterSink();
  RegisterTelemetrySink(nullptr);
  EXPECT_EQ(RegisteredTelemetrySink(), nullptr);
  EXPECT_TRUE(collector_.AddStore(record_).Failed());
  EXPECT_THAT(sink->received, IsEmpty());
}

TEST_F(HandOverTest, ASinkMayTakeItselfAwayWhileItReceives) {
  RegisterSink()->answer = [] {
    RegisterTelemetrySink(nullptr);
    return Error();
  };
  EXPECT_EQ(collector_.AddStore(record_), Error());
  EXPECT_TRUE(collector_.AddStore(record_).Failed());
}

TEST_F(HandOverTest, AllCollectorsShareTheSink) {
  const auto sink = RegisterSink();
  ScriptedCollector other;
  other.AddSend(std::string("other"));
  collector_.AddSend(std::string("first"));
  EXPECT_THAT(sink->received, ElementsAre("text other", "text first"));
}

}  // namespace
}  // namespace zt::tests
