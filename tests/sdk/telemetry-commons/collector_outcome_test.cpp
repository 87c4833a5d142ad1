#include <gmock/gmock.h>
#include <google/protobuf/duration.pb.h>
#include <google/protobuf/timestamp.pb.h>
#include <gtest/gtest.h>

#include <cstring>
#include <stdexcept>
#include <system_error>

#include "scripted_collector.h"
#include "support/status_codes.h"
#include "zt/telemetry/common/shared_ptr_tool.h"

namespace zt::tests {
namespace {

using shared::plugin::IPluginModule;
using telemetry::common::Error;
using telemetry::common::SharedPtrTool;
using ::testing::ElementsAre;

constexpr char kParams[] = R"({"eventType": 50})";
constexpr char kUntouched = '#';

// A host's buffer of the agreed capacity, with room behind it that nobody may write to.
struct CallersBuffer {
  static constexpr std::size_t kBehind = 64;
  std::string bytes = std::string(IPluginModule::kResultCapacity + kBehind, kUntouched);

  std::string Text() const { return bytes.c_str(); }
  bool WrittenBehind() const {
    return bytes.substr(IPluginModule::kResultCapacity) != std::string(kBehind, kUntouched);
  }
};

class CollectorOutcomeTest : public ::testing::Test {
 protected:
  // An outcome text of exactly `size` bytes, by the length of its description.
  void SetOutcomeSize(std::size_t size) {
    const std::size_t empty = OutcomeText(collector_, kParams).size();
    collector_.read_source = [=] { return Error(0, 0, std::string(size - empty, 'd'), "", ""); };
  }

  ScriptedCollector collector_;
};

TEST_F(CollectorOutcomeTest, ACollectionAnnouncesThenReadsThenFinalizes) {
  OutcomeOf(collector_, kParams);
  EXPECT_THAT(collector_.calls, ElementsAre("GetDatabases", "ReadSource", "Finalize"));
}

TEST_F(CollectorOutcomeTest, ASuccessIsAllZeroAndEmpty) {
  EXPECT_EQ(OutcomeOf(collector_, kParams), nlohmann::json::parse(R"({"kind": 0, "code": 0, "description": "",
      "typeName": "", "message": "", "messages": [], "databases": []})"));
}

TEST_F(CollectorOutcomeTest, TheErrorOfTheCollectionIsReported) {
  collector_.read_source = [] { return Error(5, tests::kWmiFailed, "described", "typed", "told"); };
  EXPECT_EQ(OutcomeOf(collector_, kParams), nlohmann::json::parse(R"({"kind": 5, "code": -2147217407,
      "description": "described", "typeName": "typed", "message": "told", "messages": [], "databases": []})"));
}

TEST_F(CollectorOutcomeTest, FinalizeGetsTheOutcomeOfTheCollection) {
  const Error expected(5, 7, "described", "typed", "told");
  Error received;
  collector_.read_source = [&] { return expected; };
  collector_.finalize = [&](const Error& outcome) {
    received = outcome;
    return outcome;
  };
  OutcomeOf(collector_, kParams);
  EXPECT_EQ(received, expected);
}

TEST_F(CollectorOutcomeTest, WhatFinalizeReturnsIsReported) {
  collector_.read_source = [] { return Error(5, 7, "before", "", ""); };
  collector_.finalize = [](const Error&) { return Error(2, 1, "after", "", ""); };
  const nlohmann::json outcome = OutcomeOf(collector_, kParams);
  EXPECT_EQ(outcome["kind"], 2);
  EXPECT_EQ(outcome["description"], "after");
}

TEST_F(CollectorOutcomeTest, AnnouncedMessagesAndDatabasesAreNamed) {
  collector_.get_databases = [](auto& messages, auto& databases) {
    messages.push_back(SharedPtrTool::Create(google::protobuf::Timestamp()));
    messages.push_back(SharedPtrTool::Create(google::protobuf::Duration()));
    databases.push_back("own.db");
  };
  const nlohmann::json outcome = OutcomeOf(collector_, kParams);
  EXPECT_EQ(outcome["messages"], nlohmann::json({"google.protobuf.Timestamp", "google.protobuf.Duration"}));
  EXPECT_EQ(outcome["databases"], nlohmann::json::array({"own.db"}));
}

TEST_F(CollectorOutcomeTest, AnAnnouncedMessageThatIsNoneHasNoName) {
  collector_.get_databases = [](auto& messages, auto&) {
    messages.push_back(nullptr);
    messages.push_back(SharedPtrTool::Create(google::protobuf::Timestamp()));
  };
  EXPECT_EQ(OutcomeOf(collector_, kParams)["messages"], nlohmann::json::array({"google.protobuf.Timestamp"}));
}

TEST_F(CollectorOutcomeTest, AnExceptionOfTheCollectionIsReported) {
  collector_.read_source = []() -> Error { throw std::system_error(2, std::generic_category(), "opening"); };
  const nlohmann::json outcome = OutcomeOf(collector_, kParams);
  EXPECT_EQ(outcome["kind"], 2);
  EXPECT_EQ(outcome["code"], 1);
  EXPECT_THAT(outcome["description"], ::testing::HasSubstr("opening"));
}

TEST_F(CollectorOutcomeTest, AnErrorThrownByTheCollectionIsReportedAsItIs) {
  collector_.read_source = []() -> Error { throw Error(5, 42, "thrown", "typed", "told"); };
  const nlohmann::json outcome = OutcomeOf(collector_, kParams);
  EXPECT_EQ(outcome["code"], 42);
  EXPECT_EQ(outcome["description"], "thrown");
}

TEST_F(CollectorOutcomeTest, WhateverTheCollectionThrowsStaysInside) {
  collector_.read_source = []() -> Error { throw 42; };
  EXPECT_EQ(OutcomeOf(collector_, kParams)["description"], "Unknown exception type.");
}

TEST_F(CollectorOutcomeTest, AnExceptionOfTheAnnouncementStopsTheCollection) {
  collector_.get_databases = [](auto&, auto&) { throw std::string("no prototype"); };
  EXPECT_EQ(OutcomeOf(collector_, kParams)["description"], "no prototype");
  EXPECT_THAT(collector_.calls, ElementsAre("GetDatabases"));
}

TEST_F(CollectorOutcomeTest, AnExceptionOfFinalizeIsReported) {
  collector_.finalize = [](const Error&) -> Error { throw std::string("not final"); };
  EXPECT_EQ(OutcomeOf(collector_, kParams)["description"], "not final");
}

TEST_F(CollectorOutcomeTest, ACollectorThatThrewCollectsAgain) {
  collector_.read_source = []() -> Error { throw std::runtime_error("once"); };
  EXPECT_EQ(OutcomeOf(collector_, kParams)["kind"], 1);
  collector_.read_source = [] { return Error(); };
  EXPECT_EQ(OutcomeOf(collector_, kParams)["kind"], 0);
}

TEST_F(CollectorOutcomeTest, TextsBeyondUtf8AreReportedAsValidJson) {
  collector_.read_source = [] {
    return Error(5, 1,
                 "Gr\xC3\xB6\xC3\x9F"
                 "e \xFF\x01",
                 "", "");
  };
  EXPECT_EQ(OutcomeOf(collector_, kParams)["description"],
            "Gr\xC3\xB6\xC3\x9F"
            "e \xEF\xBF\xBD\x01");
}

TEST_F(CollectorOutcomeTest, TheTextIsPlainAscii) {
  collector_.read_source = [] {
    return Error(5, 1,
                 "Gr\xC3\xB6\xC3\x9F"
                 "e",
                 "", "");
  };
  EXPECT_THAT(OutcomeText(collector_, kParams), ::testing::HasSubstr("Gr\\u00f6\\u00dfe"));
}

TEST_F(CollectorOutcomeTest, BothFormsReportTheSame) {
  collector_.read_source = [] { return Error(5, 3, "described", "typed", "told"); };
  CallersBuffer buffer;
  collector_.Execute(kParams, buffer.bytes.data());
  EXPECT_EQ(buffer.Text(), OutcomeText(collector_, kParams));
  EXPECT_FALSE(buffer.WrittenBehind());
}

TEST_F(CollectorOutcomeTest, BothFormsRefuseWrongParameters) {
  CallersBuffer buffer;
  collector_.Execute("{}", buffer.bytes.data());
  EXPECT_EQ(buffer.Text(), OutcomeText(collector_, "{}"));
  EXPECT_EQ(nlohmann::json::parse(buffer.Text())["kind"], 5);
}

TEST_F(CollectorOutcomeTest, TheLongestOutcomeFillsTheCallersBuffer) {
  SetOutcomeSize(IPluginModule::kResultCapacity - 1);
  CallersBuffer buffer;
  collector_.Execute(kParams, buffer.bytes.data());
  EXPECT_EQ(buffer.Text().size(), IPluginModule::kResultCapacity - 1);
  EXPECT_TRUE(nlohmann::json::parse(buffer.Text()).contains("description"));
  EXPECT_FALSE(buffer.WrittenBehind());
}

TEST_F(CollectorOutcomeTest, AnOutcomeTooLongForTheCallersBufferKeepsItsFigures) {
  SetOutcomeSize(IPluginModule::kResultCapacity);
  CallersBuffer buffer;
  collector_.Execute(kParams, buffer.bytes.data());
  EXPECT_EQ(nlohmann::json::parse(buffer.Text()), nlohmann::json::parse(R"({"kind": 0, "code": 0})"));
  EXPECT_FALSE(buffer.WrittenBehind());
}

TEST_F(CollectorOutcomeTest, AFailureTooLongForTheCallersBufferKeepsItsFigures) {
  collector_.read_source = [] { return Error(5, -7, std::string(100'000, 'd'), "", ""); };
  CallersBuffer buffer;
  collector_.Execute(kParams, buffer.bytes.data());
  EXPECT_EQ(nlohmann::json::parse(buffer.Text()), nlohmann::json::parse(R"({"kind": 5, "code": -7})"));
  EXPECT_FALSE(buffer.WrittenBehind());
}

TEST_F(CollectorOutcomeTest, AnAllocatedBufferHoldsAnyOutcome) {
  collector_.read_source = [] { return Error(5, -7, std::string(100'000, 'd'), "", ""); };
  EXPECT_EQ(OutcomeOf(collector_, kParams)["description"], std::string(100'000, 'd'));
}

TEST_F(CollectorOutcomeTest, TheAllocatorIsAskedOnceForTheTextAndItsEnd) {
  const HostAllocator allocator;
  char* result = nullptr;
  collector_.Execute(kParams, result, allocator);
  const std::unique_ptr<char, FreeDeleter> owner(result);
  ASSERT_NE(result, nullptr);
  EXPECT_THAT(allocator.sizes, ElementsAre(std::strlen(result) + 1));
}

TEST_F(CollectorOutcomeTest, WithoutMemoryTheResultIsNullAndTheCollectionRan) {
  HostAllocator allocator;
  allocator.without_memory = true;
  char previous = kUntouched;
  char* result = &previous;
  collector_.Execute(kParams, result, allocator);
  EXPECT_EQ(result, nullptr);
  EXPECT_EQ(previous, kUntouched);
  EXPECT_THAT(collector_.calls, ElementsAre("GetDatabases", "ReadSource", "Finalize"));
}

TEST_F(CollectorOutcomeTest, WithoutABufferTheCollectionRuns) {
  collector_.Execute(kParams, nullptr);
  EXPECT_THAT(collector_.calls, ElementsAre("GetDatabases", "ReadSource", "Finalize"));
}

}  // namespace
}  // namespace zt::tests
