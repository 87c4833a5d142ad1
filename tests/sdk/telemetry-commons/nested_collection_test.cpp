#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

#include "scripted_collector.h"

// A host's timer that runs while a collection waits calls the module again, from inside that collection.
namespace zt::tests {
namespace {

using telemetry::common::Error;
using telemetry::common::EventType;
using telemetry::common::TelemetryCollectorBase;
using ::testing::ElementsAre;

constexpr char kParamsOfANestedCall[] = R"({"eventType": 50})";
constexpr char kOtherParams[] = R"({"eventType": 51})";

class OtherCollector : public ScriptedCollector {};

class NestedCollectionTest : public ::testing::Test {
 protected:
  // Runs a collection of `collector_` in which `nested` is called; returns what that one reports.
  nlohmann::json OutcomeInside(shared::plugin::IDynamicPluginModule& nested) {
    nlohmann::json inside;
    collector_.read_source = [&] {
      if (inside.is_null()) inside = OutcomeOf(nested, kOtherParams);
      return Error();
    };
    outside_ = OutcomeOf(collector_, kParamsOfANestedCall);
    collector_.read_source = [] { return Error(); };
    return inside;
  }

  static nlohmann::json Refusal() {
    return {{"kind", 5},
            {"code", -1},
            {"description", "A collection is already running"},
            {"typeName", typeid(TelemetryCollectorBase).name()},
            {"message", ""},
            {"messages", nlohmann::json::array()},
            {"databases", nlohmann::json::array()}};
  }

  ScriptedCollector collector_;
  nlohmann::json outside_;
};

TEST_F(NestedCollectionTest, ACallFromInsideACollectionIsRefused) {
  EXPECT_EQ(OutcomeInside(collector_), Refusal());
}

TEST_F(NestedCollectionTest, TheCollectionThatRunsGoesOnUntouched) {
  EventType event_type = EventType::kNone;
  collector_.finalize = [&](const Error& outcome) {
    event_type = collector_.ParamsGetEventType();
    return outcome;
  };
  OutcomeInside(collector_);
  EXPECT_EQ(outside_["kind"], 0);
  EXPECT_EQ(event_type, EventType::kRequestedCollection);
  EXPECT_THAT(collector_.calls, ElementsAre("GetDatabases", "ReadSource", "Finalize"));
}

TEST_F(NestedCollectionTest, TheFormWithTheCallersBufferIsRefusedToo) {
  std::string inside(shared::plugin::IPluginModule::kResultCapacity, '\0');
  collector_.read_source = [&] {
    collector_.Execute(kOtherParams, inside.data());
    return Error();
  };
  OutcomeOf(collector_, kParamsOfANestedCall);
  EXPECT_EQ(nlohmann::json::parse(inside.c_str()), Refusal());
}

TEST_F(NestedCollectionTest, ACallWithoutABufferIsRefusedToo) {
  collector_.read_source = [&] {
    collector_.Execute(kOtherParams, nullptr);
    return Error();
  };
  OutcomeOf(collector_, kParamsOfANestedCall);
  EXPECT_THAT(collector_.calls, ElementsAre("GetDatabases", "ReadSource", "Finalize"));
}

TEST_F(NestedCollectionTest, AnotherCollectorOfTheClassIsRefusedSinceTheyShareTheirState) {
  ScriptedCollector other;
  EXPECT_EQ(OutcomeInside(other), Refusal());
  EXPECT_THAT(other.calls, ElementsAre());
}

TEST_F(NestedCollectionTest, ACollectorOfAnotherClassMayCollectMeanwhile) {
  OtherCollector other;
  EXPECT_EQ(OutcomeInside(other)["kind"], 0);
  EXPECT_THAT(other.calls, ElementsAre("GetDatabases", "ReadSource", "Finalize"));
}

TEST_F(NestedCollectionTest, ACallOnAnotherThreadIsRefusedMeanwhile) {
  nlohmann::json inside;
  collector_.read_source = [&] {
    std::thread([&] { inside = OutcomeOf(collector_, kOtherParams); }).join();
    return Error();
  };
  OutcomeOf(collector_, kParamsOfANestedCall);
  EXPECT_EQ(inside, Refusal());
}

TEST_F(NestedCollectionTest, ACallAfterwardsIsServed) {
  OutcomeInside(collector_);
  EXPECT_EQ(OutcomeOf(collector_, kParamsOfANestedCall)["kind"], 0);
}

TEST_F(NestedCollectionTest, ACallAfterACollectionThatThrewIsServed) {
  collector_.read_source = []() -> Error { throw std::string("once"); };
  OutcomeOf(collector_, kParamsOfANestedCall);
  collector_.read_source = [] { return Error(); };
  EXPECT_EQ(OutcomeOf(collector_, kParamsOfANestedCall)["kind"], 0);
}

}  // namespace
}  // namespace zt::tests
