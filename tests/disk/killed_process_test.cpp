#include <algorithm>
#include <set>
#include <sstream>

#include "agreed_calls.h"
#include "disk_fixture.h"
#include "support/child_run.h"

// A process that is ended at each change that its cycle makes to a file: a real process, a real file.
namespace zt::telemetry::collector::performancesamples {
namespace {

using tests::SampleStore;

class KilledProcessTest : public DiskTest, public testing::WithParamInterface<Keeping> {
 protected:
  KilledProcessTest() { MakeDatabase(GetParam()); }

  // Runs a cycle that is ended at its change `number`; false when it has not so many.
  bool IsEndedAt(int number, bool half) {
    PutBack();
    std::vector<std::string> arguments = {folder_.Utf8(), folder_.File("handed-over"), std::to_string(number)};
    if (half) arguments.emplace_back("half");
    const bool ended = !tests::RunToItsEnd(ZT_KILLED_CYCLE, arguments);
    handed_over_.clear();
    std::istringstream lines(Bytes(folder_.File("handed-over")));
    for (std::string line; std::getline(lines, line);) {
      if (line.starts_with(kEndedAt)) {
        if (ended) ++ended_at_[line.substr(kEndedAt.size())];
      } else {
        handed_over_.insert(line);
      }
    }
    return ended;
  }

  void ExpectRowsAccountedFor() {
    SampleStore store(File());
    EXPECT_EQ(store.Value("PRAGMA integrity_check"), "ok");
    const int thermal = store.Count("ThermalData");
    const int network = store.Count("NetworkData");
    EXPECT_TRUE(thermal == kThermalRows || (thermal == 0 && HandedOver("-TH 3") && HandedOver("-TH 2"))) << thermal;
    EXPECT_TRUE(network == kNetworkRows || (network == 0 && HandedOver("-NE 4") && HandedOver("-NE 3"))) << network;
    store.Close();
    Cycle();
    EXPECT_EQ(SamplesOf(Thermal()), static_cast<std::uint64_t>(thermal));
    EXPECT_EQ(SamplesOf(Network()), static_cast<std::uint64_t>(network));
    EXPECT_EQ(SampleStore(File()).Count("ThermalData") + SampleStore(File()).Count("NetworkData"), 0);
  }

  // A record of an hour, by the end of its name and its samples.
  bool HandedOver(const std::string& end) const {
    return std::any_of(handed_over_.begin(), handed_over_.end(),
                       [&](const std::string& line) { return line.ends_with(end); });
  }

  void EndAtEveryChange(bool half) {
    int number = 1;
    for (; IsEndedAt(number, half); ++number) {
      SCOPED_TRACE("ended at change " + std::to_string(number));
      ExpectRowsAccountedFor();
    }
    EXPECT_GT(number, 8) << "the cycle has made no changes";
    tests::ExpectAgreed(std::string("ended at, ") + GetParam().name, ended_at_);
  }

  static constexpr std::string_view kEndedAt = "ended at: ";

  std::set<std::string> handed_over_;
  tests::CountsByKind ended_at_;
};

TEST_P(KilledProcessTest, EndedBeforeAnyChangeLosesNoRowThatWasNotHandedOver) {
  EndAtEveryChange(false);
}

TEST_P(KilledProcessTest, EndedInTheMiddleOfAnyChangeLosesNoRowThatWasNotHandedOver) {
  EndAtEveryChange(true);
}

INSTANTIATE_TEST_SUITE_P(Kept, KilledProcessTest, testing::Values(kKeepings[0], kKeepings[1], kKeepings[2]), NameOf);

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
