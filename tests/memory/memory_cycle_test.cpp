#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <vector>

#include <nlohmann/json.hpp>

#include "cycle_host.h"
#include "plugin/logger_export.h"
#include "simulation/calls.h"

namespace zt::tests {
namespace {

using telemetry::collector::performancesamples::PerformanceSamples;
using Extent = MemoryShortage::Extent;
using testing::IsSubsetOf;

// What the environment variable ZT_REQUEST says is tried: the request of this number, or "every" one that is not a
// vendor's stand-in's. Else of those that are reached by the same calls the first is.
std::string Wanted() {
  const char* const wanted = std::getenv("ZT_REQUEST");
  return wanted != nullptr ? wanted : "";
}

bool IsTried(std::int64_t number) {
  const std::string wanted = Wanted();
  if (wanted == "every") return DistinctRequests::CallsOf(number) != kCalledByStandIn;
  return wanted.empty() ? DistinctRequests::IsFirst(number) : wanted == std::to_string(number);
}

// The number of no request.
constexpr std::int64_t kNone = 0;

class MemoryCycleTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { WatchMemoryOfSqlite(); }

  MemoryCycleTest() {
    ztSharedInitializeLogger(plog::info, &host_.Log());
    // What is made once for the process is made here; for one that fails too: the process sampler keeps what it throws.
    RunWithoutWmi();
    RunUndisturbed();
    RunUndisturbed();
    undisturbed_ = RunUndisturbed();
    SCOPED_TRACE("before the sweep");
    RunShort(1, Extent::kOneRequest);
    RunShort(1, Extent::kFromThereOn);
    const std::int64_t live = LiveBlocks();
    RunShort(kNone, Extent::kOneRequest);
    EXPECT_EQ(LiveBlocks(), live) << "an undisturbed cycle leaves blocks behind: what is counted here means nothing";
  }

  void RunWithoutWmi() {
    simulation::WatchCalls([](const simulation::Call& call) {
      return call.name == "WMIClient" ? simulation::Disturbance::kThrows : simulation::Disturbance::kNone;
    });
    RunUndisturbed();
    simulation::WatchCalls({});
  }

  CycleResult RunUndisturbed() {
    host_.Prepare();
    return host_.Execute(collector_);
  }

  std::vector<std::int64_t> RequestsToTry() {
    host_.Prepare();
    const DistinctRequests distinct;
    const MemoryShortage counted;
    host_.Execute(collector_);
    const MemoryOfTheHost host;
    std::vector<std::int64_t> numbers;
    for (std::int64_t number = 1; number <= MemoryShortage::Requests(); ++number) {
      if (IsTried(number)) numbers.push_back(number);
    }
    RecordProperty("requests", std::to_string(MemoryShortage::Requests()));
    RecordProperty("tried", std::to_string(numbers.size()));
    return numbers;
  }

  void RunShort(std::int64_t number, Extent extent) {
    host_.Prepare();
    CycleResult result;
    {
      const MemoryShortage shortage(number, extent);
      try {
        result = host_.Execute(collector_);
      } catch (...) {
        ADD_FAILURE() << "an exception has left the call";
      }
    }
    EXPECT_EQ(MemoryShortage::Refused() > 0, number != kNone);
    ExpectAnOutcome(result);
    EXPECT_THAT(result.hours, IsSubsetOf(undisturbed_.hours));
    ExpectRowsAccountedFor(result);
    EXPECT_EQ(host_.Remains(), "");
    result = {};
    const CycleResult next = RunUndisturbed();
    EXPECT_EQ(next.outcome, undisturbed_.outcome);
    EXPECT_EQ(next.stored, undisturbed_.stored);
    EXPECT_EQ(next.hours, undisturbed_.hours);
    EXPECT_EQ(next.live, undisturbed_.live);
    EXPECT_EQ(next.log, undisturbed_.log);
  }

  void ExpectAnOutcome(const CycleResult& result) const {
    const auto outcome = nlohmann::json::parse(result.outcome, nullptr, false);
    ASSERT_TRUE(outcome.is_object()) << result.outcome;
    if (outcome["kind"] == 0) return;
    EXPECT_EQ(outcome["kind"], 1) << result.outcome;
    EXPECT_EQ(outcome["code"], 0) << result.outcome;
    EXPECT_EQ(outcome.value("description", "Unknown exception type."), "Unknown exception type.");
  }

  void ExpectRowsAccountedFor(const CycleResult& result) {
    const auto sent = [&](const char* suffix, const CycleResult& of) {
      std::size_t hours = 0;
      for (const std::string& record : of.hours) hours += record.find(suffix) != std::string::npos ? 1 : 0;
      return hours;
    };
    const int thermal = host_.RowsLeft("ThermalData");
    const int network = host_.RowsLeft("NetworkData");
    EXPECT_TRUE(thermal == CycleHost::kThermalRows ||
                (thermal == 0 && sent("-TH\"", result) == sent("-TH\"", undisturbed_)))
        << thermal << " thermal rows left, " << sent("-TH\"", result) << " hours sent";
    EXPECT_TRUE(network == CycleHost::kNetworkRows ||
                (network == 0 && sent("-NE\"", result) == sent("-NE\"", undisturbed_)))
        << network << " network rows left, " << sent("-NE\"", result) << " hours sent";
  }

  // All requests of a call that collects nothing.
  template <typename Call>
  void SweepCall(const Call& call) {
    host_.PrepareWithoutDatabase();
    const CycleResult undisturbed = call();
    std::int64_t requests = 1;
    for (std::int64_t number = 1; number <= requests; ++number) {
      for (const Extent extent : {Extent::kOneRequest, Extent::kFromThereOn}) {
        SCOPED_TRACE("request " + std::to_string(number));
        host_.PrepareWithoutDatabase();
        CycleResult result;
        {
          const MemoryShortage shortage(number, extent);
          result = call();
          requests = std::max(requests, MemoryShortage::Requests());
        }
        EXPECT_TRUE(nlohmann::json::parse(result.outcome, nullptr, false).is_object()) << result.outcome;
      }
      host_.PrepareWithoutDatabase();
      EXPECT_EQ(call(), undisturbed);
    }
    EXPECT_GT(requests, 5);
  }

  void SweepPart(Extent extent, std::size_t part, std::size_t parts) {
    const std::vector<std::int64_t> numbers = RequestsToTry();
    for (std::size_t i = part; i < numbers.size(); i += parts) {
      const std::int64_t before = LiveBlocks();
      if (std::getenv("ZT_TELL") != nullptr) std::fprintf(stderr, "%lld\n", static_cast<long long>(numbers[i]));
      {
        SCOPED_TRACE("request " + std::to_string(numbers[i]));
        RunShort(numbers[i], extent);
      }
      EXPECT_LE(LiveBlocks(), before) << "request " << numbers[i];
    }
  }

  CycleHost host_;
  PerformanceSamples collector_;
  CycleResult undisturbed_;
};

constexpr std::size_t kParts = 16;

class MemoryCyclePartTest : public MemoryCycleTest, public testing::WithParamInterface<std::size_t> {};

TEST_P(MemoryCyclePartTest, ACycleSurvivesOneRefusedRequest) {
  SweepPart(Extent::kOneRequest, GetParam(), kParts);
}

TEST_P(MemoryCyclePartTest, ACycleSurvivesTheEndOfAllMemory) {
  SweepPart(Extent::kFromThereOn, GetParam(), kParts);
}

TEST_F(MemoryCycleTest, ACallThatCollectsNothingSurvivesEveryRefusedRequest) {
  for (const char* params :
       {R"({"eventType": 7})", R"({"eventType": 51})", R"({"eventType": [1, {"a": "b"}]})", "{", "[]"}) {
    SCOPED_TRACE(params);
    SweepCall([&] { return host_.Execute(collector_, params); });
  }
}

TEST_F(MemoryCycleTest, SoDoesOneThatAnswersInABufferOfTheHosts) {
  SweepCall([&] { return host_.ExecuteWithAllocator(collector_, R"({"eventType": [1]})"); });
}

INSTANTIATE_TEST_SUITE_P(Parts, MemoryCyclePartTest, testing::Range(std::size_t{0}, kParts));

}  // namespace
}  // namespace zt::tests
