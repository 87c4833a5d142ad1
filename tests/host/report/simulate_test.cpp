#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/failure.h"
#include "support/temporary_folder.h"
#include "tests/host/program_run.h"

namespace zt::telemetry::host {
namespace {

using nlohmann::json;
using testing::HasSubstr;

constexpr char kUntil[] = "2026-03-07T14:00:00Z";

ProgramRun Simulated(const std::string& hours, const std::string& random_seed = "1") {
  return RunProgram({"simulate", "--hours", hours, "--until", kUntil, "--random-seed", random_seed});
}

// The live records, without what is stored beside them.
std::vector<json> LiveRecords(const ProgramRun& run) {
  std::vector<json> records;
  for (const json& line : JsonLinesOf(run.out)) {
    if (line.at("handover") == "send") records.push_back(line.at("record"));
  }
  return records;
}

double Number(const json& record, const std::string& place) {
  return record.at(json::json_pointer(place)).get<double>();
}

TEST(SimulateTest, HasARecordForEachHour) {
  const ProgramRun run = Simulated("24");
  EXPECT_EQ(run.exit_code, kExitDone) << run.err;
  const std::vector<json> records = LiveRecords(run);
  ASSERT_EQ(records.size(), 24U);
  EXPECT_THAT(records[0].at("localTime"), testing::StartsWith("2026-03-06T12:0"));
  EXPECT_THAT(records[23].at("localTime"), testing::StartsWith("2026-03-07T11:0"));
}

TEST(SimulateTest, TheSameNumbersGiveTheSameRecords) {
  const std::vector<json> records = LiveRecords(Simulated("12"));
  const std::vector<json> others = LiveRecords(Simulated("12", "2"));
  const std::vector<json> again = LiveRecords(Simulated("12"));
  // The first live record of a process counts its samples, and no other does.
  for (std::size_t i = 1; i < records.size(); ++i) EXPECT_EQ(records[i], again[i]) << i;
  EXPECT_NE(records[1], others[1]);
}

TEST(SimulateTest, TheBatteryAgesAndTheDriveFills) {
  const std::vector<json> records = LiveRecords(Simulated("720"));
  constexpr char kHealth[] = "/hwInfo/batteriesInfo/0/fullChargeCapacityPercent";
  constexpr char kCycles[] = "/hwInfo/batteriesInfo/0/cycleCount";
  constexpr char kUsed[] = "/hwInfo/storageDrivesInfo/0/utilizationPercent";
  EXPECT_GT(Number(records.front(), kHealth), 80);
  EXPECT_LT(Number(records.back(), kHealth), 80);
  EXPECT_GT(Number(records.back(), kCycles), Number(records.front(), kCycles) + 20);
  EXPECT_LT(Number(records.front(), kUsed), 90);
  EXPECT_GT(Number(records.back(), kUsed), 90);
}

TEST(SimulateTest, CardsAndNpusAreWarmByDayAndCoolAtNight) {
  const std::vector<json> records = LiveRecords(Simulated("24"));
  for (const char* const place :
       {"/hwInfo/gpusInfo/0/temperatureCelsius", "/hwInfo/npusInfo/0/temperatureSensorsInfo/0/temperatureCelsius"}) {
    const double by_day = Number(records[23], place);    // 11 o'clock
    const double at_night = Number(records[14], place);  // 2 o'clock
    EXPECT_GT(by_day, at_night + 15) << place;
  }
}

TEST(SimulateTest, NobodyIsThereAtNight) {
  constexpr char kIdle[] = "/operatingSystemInfo/operatingSessionInfo/timeSinceLastLogonMinutes";
  const std::vector<json> records = LiveRecords(Simulated("24"));  // from 14:00 on
  EXPECT_LT(Number(records[1], kIdle), 10);
  EXPECT_GT(Number(records[14], kIdle), 180);
}

TEST(SimulateTest, AWeeklyRestartLeavesAGapAndBeginsTheUptimeAnew) {
  constexpr char kUp[] = "/operatingSystemInfo/operatingSessionInfo/timeSinceLastBootMinutes";
  const std::vector<json> records = LiveRecords(Simulated("171"));
  ASSERT_EQ(records.size(), 169U);
  EXPECT_GT(Number(records[167], kUp), 10'000);
  EXPECT_LT(Number(records[168], kUp), 60);
}

TEST(SimulateTest, KeepsItsRecordsInAnOutbox) {
  const zt::tests::TemporaryFolder folder;
  const ProgramRun run = RunProgram({"simulate", "--hours", "3", "--until", kUntil, "--outbox", folder.File("o")});
  EXPECT_EQ(run.exit_code, kExitDone) << run.err;
  EXPECT_THAT(RunProgram({"outbox", "status", "--outbox", folder.File("o")}).out, HasSubstr("6"));
  EXPECT_THAT(RunProgram({"report", "--outbox", folder.File("o"), "--output", folder.File("r.html")}).out,
              HasSubstr("6 records of 5CG0000001"));
}

TEST(SimulateTest, WhatTheConfigurationHoldsBackIsInNoRecord) {
  const zt::tests::TemporaryFolder folder;
  WriteFile(folder.Path() / "host.toml", "[sections]\nprocesses = false\n[redact]\nserial_numbers = \"drop\"\n");
  const ProgramRun run =
      RunProgram({"simulate", "--hours", "2", "--until", kUntil, "--config", folder.File("host.toml")});
  EXPECT_EQ(run.exit_code, kExitDone) << run.err;
  EXPECT_EQ(LiveRecords(run).size(), 2U);
  EXPECT_THAT(run.out, testing::AllOf(HasSubstr("batteriesInfo"), testing::Not(HasSubstr("resourceIntensiveProcesses")),
                                      testing::Not(HasSubstr("5CG0000001"))));
}

TEST(SimulateTest, TwoPlacesForTheRecordsAreWrongUsage) {
  const ProgramRun run = RunProgram({"simulate", "--hours", "3", "--outbox", "o", "--output", "f"});
  EXPECT_EQ(run.exit_code, kExitWrongUsage);
  EXPECT_THAT(run.err, HasSubstr("--outbox and --output are both given"));
}

}  // namespace
}  // namespace zt::telemetry::host
