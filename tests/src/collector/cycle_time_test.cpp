#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <fstream>
#include <map>
#include <random>
#include <regex>
#include <string>
#include <vector>

#include "base/device_asking.h"
#include "base/wmi_waiting.h"
#include "platform/posture_sensors.h"
#include "sdk/battery-info/battery_limits.h"
#include "sdk/private-bios-wmi/firmware_limits.h"
#include "sdk/storage-info/disk_limits.h"
#include "sdk/wmi-client/query_limits.h"
#include "simulation/profile.h"
#include "simulation/waiting.h"
#include "store/sample_database.h"
#include "support/collector_fixture.h"
#include "support/sample_store_fixture.h"
#include "support/watched_files.h"

// What a cycle may wait for, as the table of ARCHITECTURE.md has it, beside the constants of the code and beside cycles
// of a machine that takes all the time that it is given.
namespace zt::telemetry::collector::performancesamples {
namespace {

using std::chrono::milliseconds;
using testing::DoubleNear;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::Le;
using Seconds = std::chrono::duration<double>;

constexpr double kMillisecond = 0.001;
constexpr char kWholeCycle[] = "A whole cycle";

struct Row {
  std::vector<double> bounds;  // seconds, in the order of the text
  double at_most = 0;
};

std::vector<std::string> Cells(const std::string& line) {
  std::vector<std::string> cells;
  std::size_t start = line.find('|');
  for (std::size_t end = line.find('|', start + 1); end != std::string::npos; end = line.find('|', start + 1)) {
    const std::string cell = line.substr(start + 1, end - start - 1);
    const std::size_t first = cell.find_first_not_of(' ');
    cells.push_back(first == std::string::npos ? "" : cell.substr(first, cell.find_last_not_of(' ') - first + 1));
    start = end;
  }
  return cells;
}

// Numbers of seconds, "15 s".
std::vector<double> SecondsIn(const std::string& text) {
  static const std::regex kSeconds(R"(([0-9]+(\.[0-9]+)?) s\b)");
  std::vector<double> seconds;
  for (std::sregex_iterator found(text.begin(), text.end(), kSeconds); found != std::sregex_iterator(); ++found) {
    seconds.push_back(std::stod((*found)[1]));
  }
  return seconds;
}

// The table's rows by what waits.
std::map<std::string, Row> Table() {
  std::ifstream page(ZT_ARCHITECTURE);
  std::map<std::string, Row> rows;
  bool in_table = false;
  for (std::string line; std::getline(page, line);) {
    const std::vector<std::string> cells = Cells(line);
    const bool is_head = cells.size() == 3 && cells[2] == "at most in a cycle";
    if (in_table && cells.size() != 3) break;
    if (in_table && !cells[0].starts_with("---")) {
      const std::vector<double> at_most = SecondsIn(cells[2]);
      if (at_most.size() != 1) ADD_FAILURE() << line;
      rows[cells[0]] = {SecondsIn(cells[1]), at_most.empty() ? 0 : at_most.front()};
    }
    in_table = in_table || is_head;
  }
  EXPECT_FALSE(rows.empty());
  return rows;
}

double InSeconds(Seconds time) {
  return time.count();
}

// What the code has in the place of each row: its bounds, and what comes of them in a cycle.
std::map<std::string, Row> Code() {
  using namespace shared;
  const double connection = InSeconds(base::kConnectionLimit);
  const double commands = InSeconds(ztbios::kAllCommandsLimit);
  const double queries = InSeconds(wmi::kAllQueriesLimit);
  const double sensor = InSeconds(platform::kSensorWaitLimit);
  const double batteries = InSeconds(battery::kAllBatteriesLimit);
  const double disks = InSeconds(storage::kAllDisksLimit);
  const double cancelling = InSeconds(base::kCancelLimit);
  const double locks = InSeconds(kSummaryPatience);
  const double summary = InSeconds(kSummaryWorkLimit);
  const double table = InSeconds(kTableWorkLimit);
  return {{"Connecting to WMI", {{connection}, 2 * connection}},
          {"Rows of queries",
           {{InSeconds(wmi::kOrdinaryLimits.object), InSeconds(wmi::kOrdinaryLimits.whole),
             InSeconds(wmi::kPerformanceLimits.object), InSeconds(wmi::kPerformanceLimits.whole), queries},
            queries}},
          {"Commands to the firmware",
           {{InSeconds(ztbios::kInstanceLimits.whole), InSeconds(ztbios::kCallLimit), commands}, commands}},
          {"Hinge sensor", {{sensor, sensor}, 2 * sensor}},
          {"Batteries", {{InSeconds(battery::kAnswerLimit), batteries, cancelling}, batteries + cancelling}},
          {"Disks", {{InSeconds(storage::kAnswerLimit), disks, cancelling}, disks + cancelling}},
          {"Locks of the database", {{locks}, locks}},
          {"Work on the database", {{summary, table, table}, summary + 4 * table}}};
}

TEST(WaitingTableTest, ItsFiguresAreThoseOfTheCode) {
  std::map<std::string, Row> table = Table();
  table.erase(kWholeCycle);
  const std::map<std::string, Row> code = Code();
  for (const auto& [what, row] : code) {
    ASSERT_TRUE(table.contains(what)) << what;
    EXPECT_THAT(table[what].bounds, ElementsAreArray(row.bounds)) << what;
    EXPECT_DOUBLE_EQ(table[what].at_most, row.at_most) << what;
  }
  EXPECT_EQ(table.size(), code.size());
}

TEST(WaitingTableTest, ACycleMayTakeTheSumOfItsRows) {
  double sum = 0;
  const std::map<std::string, Row> table = Table();
  for (const auto& [what, row] : table) sum += what == kWholeCycle ? 0 : row.at_most;
  EXPECT_NEAR(table.at(kWholeCycle).at_most, sum, kMillisecond);
}

// Cycles of the machine with everything, whose graphics cards tell neither serial number nor temperature, so that other
// sources are asked for each of them, and with more batteries and disks than most have.
class CycleTimeTest : public CollectorTest {
 protected:
  CycleTimeTest() {
    simulation::Machine machine = simulation::ReadShippedProfile("everything");
    for (simulation::NvmlDevice& device : machine.nvml->devices) {
      device.serial.reset();
      device.temperature_celsius.reset();
    }
    machine.wmi.classes["Win32_VideoController"].front().erase("PNPDeviceID");
    machine.private_bios.clear();
    machine.sensors.hinge->angle_degrees = -1;  // the keyboards are asked
    machine.batteries.resize(5, machine.batteries.front());
    machine.storage_library.resize(5, machine.storage_library.front());
    simulation::UseMachine(std::move(machine));
    store_.AddThermal("2026-03-07T12:00:30.000Z");
    store_.AddNetwork("2026-03-07T12:00:30.000Z");
  }
  ~CycleTimeTest() override { simulation::BeSlow({}); }

  // A cycle of a machine that takes `time_for(what, limit)` for what may take `limit`, beside a writer that gives the
  // database free late.
  template <typename TimeFor>
  void Cycle(const TimeFor& time_for) {
    simulation::BeSlow([&](const std::string& what, milliseconds limit) {
      const milliseconds time = time_for(what, limit);
      waited_[what] += std::min(time, limit);
      return time;
    });
    tests::WatchedFiles files;
    bool is_locked = true;
    store_.Execute("BEGIN EXCLUSIVE");
    files.on_wait = [&] {
      if (!is_locked || files.WaitedMs() < kSummaryPatience.count() / 2) return;
      store_.Execute("COMMIT");
      is_locked = false;
    };
    const auto start = simulation::WaitClock::now();
    EXPECT_THAT(Execute(50), HasSubstr(R"("code":0)"));
    if (is_locked) store_.Execute("COMMIT");
    waited_["Locks of the database"] = milliseconds(files.WaitedMs());
    elapsed_ = simulation::WaitClock::now() - start + waited_["Locks of the database"];
  }

  // Each row, and the whole, keep to the table.
  void ExpectWithinTable() {
    std::map<std::string, Row> table = Table();
    for (const auto& [what, time] : waited_) {
      ASSERT_TRUE(table.contains(what)) << what;
      EXPECT_THAT(InSeconds(time), Le(table[what].at_most)) << what;
    }
    EXPECT_THAT(InSeconds(elapsed_), Le(table[kWholeCycle].at_most));
  }

  tests::SampleStore store_ = tests::SampleStore::WithTables(folder_.File("ssm.db"));
  std::map<std::string, milliseconds> waited_;
  milliseconds elapsed_{0};
};

TEST_F(CycleTimeTest, AMachineThatAnswersAtTheLastMomentKeepsToTheTable) {
  Cycle([](const std::string&, milliseconds limit) { return limit; });
  ExpectWithinTable();
  EXPECT_GT(waited_["Locks of the database"], milliseconds(0));
}

TEST_F(CycleTimeTest, AMachineThatNeverAnswersKeepsToTheTable) {
  Cycle([](const std::string&, milliseconds limit) { return limit + milliseconds(1); });
  ExpectWithinTable();
}

TEST_F(CycleTimeTest, AMachineThatAnswersAtOnceTakesNoTime) {
  Cycle([](const std::string&, milliseconds) { return milliseconds(0); });
  EXPECT_EQ(elapsed_, waited_["Locks of the database"]);
}

// Each row by itself: none promises more than is so, nor less.
class SlowSourceTest : public CycleTimeTest, public testing::WithParamInterface<const char*> {
 protected:
  void CycleInWhichItTakes(milliseconds longer_than_the_limit) {
    Cycle([&](const std::string& what, milliseconds limit) {
      return what == GetParam() ? limit + longer_than_the_limit : milliseconds(0);
    });
  }

  double AtMost() { return Table().at(GetParam()).at_most; }
};

TEST_P(SlowSourceTest, ThatAnswersAtTheLastMomentTakesWhatTheTableSays) {
  CycleInWhichItTakes(milliseconds(0));
  // No driver that answers in time has to give a request up.
  const bool is_device = Code()[GetParam()].bounds.back() == InSeconds(base::kCancelLimit) && AtMost() > 2;
  const double spared = is_device ? InSeconds(base::kCancelLimit) : 0;
  EXPECT_THAT(InSeconds(waited_[GetParam()]), DoubleNear(AtMost() - spared, kMillisecond));
}

TEST_P(SlowSourceTest, ThatNeverAnswersKeepsToTheTable) {
  CycleInWhichItTakes(milliseconds(1));
  ExpectWithinTable();
  EXPECT_GT(waited_[GetParam()], milliseconds(0));
}

INSTANTIATE_TEST_SUITE_P(Sources, SlowSourceTest,
                         testing::Values("Connecting to WMI", "Rows of queries", "Commands to the firmware",
                                         "Hinge sensor", "Batteries", "Disks"));

class RandomCycleTimeTest : public CycleTimeTest, public testing::WithParamInterface<unsigned> {};

TEST_P(RandomCycleTimeTest, AMachineThatAnswersNowAndThenKeepsToTheTable) {
  std::mt19937 random(GetParam());
  Cycle([&](const std::string&, milliseconds limit) {
    const std::vector<milliseconds> times = {milliseconds(0), limit / 3, limit, limit, limit + milliseconds(1)};
    return times[random() % times.size()];
  });
  ExpectWithinTable();
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomCycleTimeTest, testing::Range(0U, 20U));

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
