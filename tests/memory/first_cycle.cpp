// The first cycle of a process: what is made once, and the entry points.
//   first_cycle FOLDER look
//   first_cycle FOLDER one|on REQUEST
//   first_cycle FOLDER descriptors
// "look" leaves in FOLDER, which is told with its separator, the requests for memory that a first cycle has beyond
// those of a later one ("numbers"), and what a later one gives ("second"). The others refuse one of the requests, or
// all from there on; what is wrong then, also with what the later cycle gives, is said, and the exit code is 1.
// "descriptors" does so where the collector has asked protobuf for its descriptors of the records.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "cycle_host.h"
#include "plugin/logger_export.h"
#include "plugin/plugin_export.h"

namespace zt::tests {
namespace {

using Extent = MemoryShortage::Extent;
using telemetry::collector::performancesamples::LoadPlugin;
using Plugin = std::unique_ptr<shared::plugin::IDynamicPluginModule>;

constexpr std::string_view kFirst = "sample_points_actual: 1\n";

class FirstCycle {
 public:
  // A host whose store fails, so that what is said of that is made for the first time too.
  explicit FirstCycle(std::string folder) : folder_(std::move(folder)) { host_.FailToStore(); }

  void Look() {
    host_.Prepare();
    std::vector<std::uint64_t> first;
    const DistinctRequests distinct;
    {
      const MemoryShortage counted;
      RunFirst();
    }
    for (std::int64_t number = 1; number <= MemoryShortage::Requests(); ++number) {
      first.push_back(DistinctRequests::IsFirst(number) ? DistinctRequests::CallsOf(number) : kCalledByStandIn);
    }
    std::ofstream(Path("second"), std::ios::binary) << RunSecond();
    std::set<std::uint64_t> later = {kCalledByStandIn};
    for (std::int64_t number = 1; number <= MemoryShortage::Requests(); ++number) {
      later.insert(DistinctRequests::CallsOf(number));
    }
    std::ofstream numbers(Path("numbers"));
    for (std::size_t i = 0; i < first.size(); ++i) {
      if (!later.contains(first[i])) numbers << i + 1 << ' ';
    }
  }

  void LookForDescriptors() {
    host_.Prepare();
    RunFirst();
    EXPECT_EQ(host_.HandOversWithDescriptors(), 0);
  }

  void RunShort(std::int64_t number, Extent extent) {
    host_.Prepare();
    {
      const MemoryShortage shortage(number, extent);
      RunFirst();
      EXPECT_GT(MemoryShortage::Refused(), 0);
    }
    std::ifstream second(Path("second"), std::ios::binary);
    EXPECT_EQ(RunSecond(), std::string(std::istreambuf_iterator<char>(second), std::istreambuf_iterator<char>()));
  }

 private:
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

  std::filesystem::path Path(const char* name) const { return std::filesystem::path(folder_) / name; }

  std::string folder_;
  CycleHost host_;
  bool connected_ = false;
};

}  // namespace
}  // namespace zt::tests

int main(int count, char** arguments) {
  using namespace zt::tests;
  if (count < 3) return 2;
  WatchMemoryOfSqlite();
  FirstCycle cycle(arguments[1]);
  const std::string what = arguments[2];
  if (what == "descriptors") {
    cycle.LookForDescriptors();
    return testing::UnitTest::GetInstance()->Failed() ? 1 : 0;
  }
  // The host's library names records in the outcome of a call, and asks protobuf for their descriptors. When memory
  // runs out while these are made, the process ends, or waits for itself: here the host has asked already.
  AmdPmfSamples::descriptor();
  PcLogPerformanceSamplesAsCDM::descriptor();
  if (what == "look") {
    cycle.Look();
  } else {
    cycle.RunShort(std::stoll(arguments[3]), what == "one" ? Extent::kOneRequest : Extent::kFromThereOn);
  }
  return testing::UnitTest::GetInstance()->Failed() ? 1 : 0;
}
