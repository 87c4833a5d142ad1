// The first cycle of a process, in a process of its own for each request: what is made once, and the entry points.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <set>
#include <string>
#include <string_view>

#include "plugin/logger_export.h"
#include "plugin/plugin_export.h"
#include "tests/memory/cycle_host.h"

namespace zt::tests {
namespace {

using Extent = MemoryShortage::Extent;
using telemetry::collector::performancesamples::LoadPlugin;
using Plugin = std::unique_ptr<shared::plugin::IDynamicPluginModule>;

constexpr std::string_view kFirst = "sample_points_actual: 1\n";

class FirstCycleTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    WatchMemoryOfSqlite();
    // protobuf works its descriptions of the records out when they are first asked for, and cannot do so again when
    // memory runs out meanwhile: here the host has asked already.
    AmdPmfSamples::descriptor();
    PcLogPerformanceSamplesAsCDM::descriptor();
  }

  // Runs `body` in a copy of this process; its failures are this one's.
  static void InACopy(const std::function<void()>& body) {
    std::fflush(nullptr);
    const pid_t copy = ::fork();
    ASSERT_GE(copy, 0);
    if (copy == 0) {
      body();
      std::fflush(nullptr);
      ::_exit(HasFailure() ? 1 : 0);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(copy, &status, 0), copy);
    ASSERT_TRUE(WIFEXITED(status)) << "the process was ended by signal " << WTERMSIG(status);
    EXPECT_EQ(WEXITSTATUS(status), 0);
  }

  // What a host does first: it loads, connects its log, and calls. Each may fail for want of memory.
  void RunFirst() {
    Plugin plugin;
    try {
      plugin.reset(LoadPlugin());
    } catch (const std::bad_alloc&) {
      // That one is told as it is.
    }
    Connect();
    if (plugin) host_.Execute(*plugin);
  }

  void Connect() {
    if (connected_) return;
    const std::int64_t refused = MemoryShortage::Refused();
    ztSharedInitializeLogger(plog::info, &host_.Log());
    connected_ = MemoryShortage::Refused() == refused;
  }

  // The cycle of a process that has run before. The first record that is sent says that it is one sample.
  std::string RunSecond() {
    const MemoryShortage counted;
    host_.Prepare();
    Connect();
    const Plugin plugin(LoadPlugin());
    const CycleResult result = host_.Execute(*plugin);
    std::string all = result.outcome;
    for (const auto* list : {&result.stored, &result.hours, &result.live, &result.log}) {
      for (const std::string& text : *list) {
        const std::size_t place = list == &result.live ? text.find(kFirst) : std::string::npos;
        all += place == std::string::npos ? text : std::string(text).erase(place, kFirst.size());
      }
    }
    return all;
  }

  // Leaves in files the requests that a first cycle has beyond those of a later one, and what the later one gives.
  void LookAtBoth() {
    host_.Prepare();
    std::vector<std::uint64_t> first;
    {
      const DistinctRequests distinct;
      {
        const MemoryShortage counted;
        RunFirst();
      }
      for (std::int64_t number = 1; number <= MemoryShortage::Requests(); ++number) {
        first.push_back(DistinctRequests::IsFirst(number) ? DistinctRequests::CallsOf(number) : kCalledByStandIn);
      }
      std::ofstream(Path("second")) << RunSecond();
    }
    std::set<std::uint64_t> later = {kCalledByStandIn};
    for (std::int64_t number = 1; number <= MemoryShortage::Requests(); ++number) {
      later.insert(DistinctRequests::CallsOf(number));
    }
    std::ofstream numbers(Path("numbers"));
    for (std::size_t i = 0; i < first.size(); ++i) {
      if (!later.contains(first[i])) numbers << i + 1 << ' ';
    }
  }

  std::filesystem::path Path(const char* name) const { return folder_.Path() / name; }

  void Sweep(Extent extent) {
    InACopy([&] { LookAtBoth(); });
    std::ifstream stream(Path("second"));
    const std::string second{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    std::ifstream numbers(Path("numbers"));
    int tried = 0;
    for (std::int64_t number = 0; numbers >> number; ++tried) {
      SCOPED_TRACE("request " + std::to_string(number));
      InACopy([&] {
        host_.Prepare();
        {
          const MemoryShortage shortage(number, extent);
          RunFirst();
          EXPECT_GT(MemoryShortage::Refused(), 0);
        }
        EXPECT_EQ(RunSecond(), second);
      });
    }
    EXPECT_GT(tried, 20);
    RecordProperty("tried", tried);
  }

  TemporaryFolder folder_;
  CycleHost host_;
  bool connected_ = false;
};

TEST_F(FirstCycleTest, AFirstCycleSurvivesOneRefusedRequest) {
  Sweep(Extent::kOneRequest);
}

TEST_F(FirstCycleTest, AFirstCycleSurvivesTheEndOfAllMemory) {
  Sweep(Extent::kFromThereOn);
}

}  // namespace
}  // namespace zt::tests
