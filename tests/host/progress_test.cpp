#include "host/progress.h"

#include <gmock/gmock.h>

#include <memory>
#include <sstream>

namespace zt::telemetry::host {
namespace {

using std::chrono::milliseconds;
using testing::HasSubstr;

// A terminal, and a clock that stands still until it is moved.
class ProgressTest : public testing::Test {
 protected:
  std::unique_ptr<Progress> Begin(std::ostream* terminal) {
    return std::make_unique<Progress>(terminal, "seed", [this] { return now_; });
  }

  void Wait(milliseconds time) { now_ += time; }

  std::ostringstream terminal_;

 private:
  std::chrono::steady_clock::time_point now_{std::chrono::hours(1)};
};

TEST_F(ProgressTest, WorkOfLessThanASecondShowsNothing) {
  const auto progress = Begin(&terminal_);
  Wait(milliseconds(999));
  progress->Show(9, 10, "minutes");
  EXPECT_EQ(terminal_.str(), "");
}

TEST_F(ProgressTest, FromASecondOnItShowsHowFarItIs) {
  const auto progress = Begin(&terminal_);
  Wait(milliseconds(1000));
  progress->Show(12'345, 27'000, "minutes");
  EXPECT_EQ(terminal_.str(), "\rseed: 45 %, 12,345 of 27,000 minutes");
}

TEST_F(ProgressTest, ItIsWrittenTenTimesASecondAtMost) {
  const auto progress = Begin(&terminal_);
  Wait(milliseconds(1000));
  progress->Show(1, 10, "minutes");
  Wait(milliseconds(99));
  progress->Show(2, 10, "minutes");
  EXPECT_EQ(terminal_.str(), "\rseed: 10 %, 1 of 10 minutes");
  Wait(milliseconds(1));
  progress->Show(3, 10, "minutes");
  EXPECT_THAT(terminal_.str(), HasSubstr("\rseed: 30 %, 3 of 10 minutes"));
}

TEST_F(ProgressTest, AShorterLineCoversALongerOne) {
  const auto progress = Begin(&terminal_);
  Wait(milliseconds(1000));
  progress->Show(std::int64_t{1000}, "hand-overs deleted");
  Wait(milliseconds(1000));
  progress->Show(std::int64_t{1}, "deleted");
  EXPECT_EQ(terminal_.str(), "\rseed: 1,000 hand-overs deleted, 1 s\rseed: 1 deleted, 2 s               ");
}

TEST_F(ProgressTest, TheLineIsGoneInTheEnd) {
  auto progress = Begin(&terminal_);
  Wait(milliseconds(1000));
  progress->Show(0, 0, "minutes");
  progress.reset();
  EXPECT_EQ(terminal_.str(), "\rseed: 100 %, 0 of 0 minutes\r                           \r");
}

TEST_F(ProgressTest, WithoutATerminalNothingIsShown) {
  const auto progress = Begin(nullptr);
  Wait(milliseconds(5000));
  progress->Show(1, 10, "minutes");
  progress->Show(std::int64_t{1}, "deleted");
}

}  // namespace
}  // namespace zt::telemetry::host
