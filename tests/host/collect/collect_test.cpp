#include <gmock/gmock.h>

#include <algorithm>

#include "host/failure.h"
#include "simulation/machine.h"
#include "support/seed_database.h"
#include "support/temporary_folder.h"
#include "tests/host/program_run.h"

namespace zt::telemetry::host {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr char kUpload[] = "zt.telemetry.contract.upload.log.PcLogPerformanceSamplesAsCDM";
constexpr char kStorage[] = "zt.telemetry.contract.storage.device_performance.AmdPmfSamples";
constexpr char kMachine[] = R"({
  "smbios": {"serial_number": "SN42"},
  "clock": {"now": "2026-03-07T14:20:42Z", "standard_offset_minutes": -180},
  "session": {"tick_counts_ms": [60000], "last_input_tick_ms": 0},
  "wmi": {
    "classes": {
      "Win32_ComputerSystem": [{"TotalPhysicalMemory": 17179869184}],
      "Win32_OperatingSystem": [{"FreePhysicalMemory": 8126464, "TotalVirtualMemorySize": 20252928,
                                 "FreeVirtualMemory": 9126464}],
      "Win32_PhysicalMemory": [{"ConfiguredClockSpeed": 4800}]
    },
    "failures": [{"query_contains": "Win32_NoSuch", "status": -1}]
  }
})";

// The program over the collector beside it and a machine of the test's own.
class CollectTest : public testing::Test {
 protected:
  CollectTest() { WriteFile(folder_.Path() / "machine.json", kMachine); }

  ProgramRun Collect(const std::vector<std::string>& options) const {
    std::vector<std::string> arguments = {"collect", "--machine", folder_.File("machine.json")};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return RunProgram(arguments);
  }

  void Seed(const std::string& hours) const {
    const ProgramRun run =
        RunProgram({"seed", "--database-dir", folder_.File("d"), "--hours", hours, "--until", "2026-03-07T14:00:00Z"});
    ASSERT_EQ(run.exit_code, kExitDone) << run.err;
  }

  zt::tests::TemporaryFolder folder_;
};

TEST_F(CollectTest, AFullCollectionStoresOneRecordAndSendsOneRecord) {
  const ProgramRun run = Collect({"--format", "json"});
  EXPECT_EQ(run.exit_code, kExitDone) << run.err;
  const std::vector<json> lines = JsonLinesOf(run.out);
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0]["handover"], "store");
  EXPECT_EQ(lines[0]["type"], kStorage);
  EXPECT_EQ(lines[0]["record"]["memoryClockMhz"], 4800);
  EXPECT_EQ(lines[1]["handover"], "send");
  EXPECT_EQ(lines[1]["type"], kUpload);
  EXPECT_EQ(lines[1]["record"]["collectionId"], "SN42_2026-03-07T11:20:42.000Z");
  EXPECT_EQ(lines[1]["record"]["hwInfo"]["systemMemoryInfo"]["totalVirtualMemoryKb"], 20252928);
}

TEST_F(CollectTest, TextShowsTheSameRecordsForPeople) {
  const ProgramRun run = Collect({});
  EXPECT_EQ(run.exit_code, kExitDone) << run.err;
  EXPECT_THAT(run.out, HasSubstr("STORED AmdPmfSamples  2026-03-07 11:20:42-03:00\n"));
  EXPECT_THAT(
      run.out,
      HasSubstr("SENT PcLogPerformanceSamplesAsCDM  SN42_2026-03-07T11:20:42.000Z  2026-03-07 11:20:42  1 sample\n"));
  EXPECT_THAT(run.out, HasSubstr("virtual memory            20,252,928 kB (19.31 GiB)\n"));
}

TEST_F(CollectTest, TheExampleUploadIsOneTextLine) {
  const ProgramRun run = Collect({"--event", "51", "--format", "json"});
  EXPECT_EQ(run.exit_code, kExitDone) << run.err;
  const std::vector<json> lines = JsonLinesOf(run.out);
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0]["handover"], "send");
  EXPECT_EQ(lines[0]["type"], "text");
  EXPECT_TRUE(json::parse(lines[0]["text"].get<std::string>()).contains("data"));
}

TEST_F(CollectTest, TheExampleUploadIsShownToPeopleAsARecord) {
  const ProgramRun run = Collect({"--event", "51"});
  EXPECT_THAT(run.out, HasSubstr("SENT text of 6,311 characters"));
  EXPECT_THAT(run.out, AllOf(HasSubstr("\n  Batteries\n"), HasSubstr("\n  Memory\n"), HasSubstr("\n  Processes\n")));
}

TEST_F(CollectTest, SeveralEventsRunInTurnInOneProcess) {
  const ProgramRun run = Collect({"--event", "51", "--event", "50", "--event", "20", "--format", "json"});
  EXPECT_EQ(run.exit_code, kExitDone) << run.err;
  const std::vector<json> lines = JsonLinesOf(run.out);
  ASSERT_EQ(lines.size(), 5U);
  EXPECT_EQ(lines[0]["type"], "text");
  EXPECT_EQ(lines[2]["record"].value("samplePointsActual", 0), 1);
  EXPECT_FALSE(lines[4]["record"].contains("samplePointsActual")) << "one process, one first record";
}

TEST_F(CollectTest, AnEventWithoutMeaningHandsNothingOverAndIsNoFailure) {
  const ProgramRun run = Collect({"--event", "7", "--format", "json"});
  EXPECT_EQ(run.exit_code, kExitDone);
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(run.err, HasSubstr("event 7: nothing was handed over"));
}

TEST_F(CollectTest, StoredSamplesBecomeOneRecordOfEachKindForEachHourAndAreDeleted) {
  Seed("3");
  const ProgramRun run = Collect({"--database-dir", folder_.File("d"), "--format", "json"});
  EXPECT_EQ(run.exit_code, kExitDone) << run.err;
  std::vector<std::string> identities;
  for (const json& line : JsonLinesOf(run.out)) identities.push_back(line["record"].value("collectionId", "stored"));
  EXPECT_THAT(identities, ElementsAre("2026-03-07T11H_SN42-TH", "2026-03-07T12H_SN42-TH", "2026-03-07T13H_SN42-TH",
                                      "2026-03-07T11H_SN42-NE", "2026-03-07T12H_SN42-NE", "2026-03-07T13H_SN42-NE",
                                      "stored", "SN42_2026-03-07T11:20:42.000Z"));
  const OpenedDatabase database(folder_.Path() / "d" / "ssm.db");
  EXPECT_EQ(database.Number("SELECT (SELECT COUNT(*) FROM ThermalData) + (SELECT COUNT(*) FROM NetworkData)"), 0);
}

TEST_F(CollectTest, WhatSeedWritesGivesWholeHourlyRecords) {
  Seed("24");
  const ProgramRun run = Collect({"--database-dir", folder_.File("d"), "--format", "json"});
  int thermal = 0;
  int network = 0;
  int with_fans = 0;
  for (const json& line : JsonLinesOf(run.out)) {
    const json& record = line["record"];
    const std::string identity = record.value("collectionId", "");
    if (identity.ends_with("-TH")) {
      ++thermal;
      EXPECT_EQ(record["samplePointsActual"], 60);
      if (record["hwInfo"].contains("fansInfo")) ++with_fans;
    } else if (identity.ends_with("-NE")) {
      ++network;
      EXPECT_EQ(record["samplePointsActual"], 180);
      EXPECT_EQ(record["hwInfo"]["networkInfo"]["interfacesInfo"].size(), 3U);
    }
  }
  EXPECT_EQ(thermal, 24);
  EXPECT_EQ(network, 24);
  EXPECT_GT(with_fans, 4);
  EXPECT_LT(with_fans, 20) << "fans stop at night";
}

TEST_F(CollectTest, AFolderWithoutADatabaseIsFine) {
  const ProgramRun run = Collect({"--database-dir", ToText(folder_.Path()), "--format", "json"});
  EXPECT_EQ(run.exit_code, kExitDone) << run.err;
  EXPECT_EQ(JsonLinesOf(run.out).size(), 2U);
}

TEST_F(CollectTest, AFolderThatDoesNotExistOrIsNoneIsWrongUsageBeforeAnythingIsHandedOver) {
  for (const char* name : {"none", "machine.json"}) {
    const ProgramRun run = Collect({"--database-dir", folder_.File(name)});
    EXPECT_EQ(run.exit_code, kExitWrongUsage);
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.err, AllOf(HasSubstr("--database-dir"), HasSubstr(name)));
  }
}

TEST_F(CollectTest, AFolderInPlaceOfTheDatabaseIsWrongUsage) {
  std::filesystem::create_directories(folder_.Path() / "d" / "ssm.db");
  const ProgramRun run = Collect({"--database-dir", folder_.File("d")});
  EXPECT_EQ(run.exit_code, kExitWrongUsage);
  EXPECT_THAT(run.err, HasSubstr("ssm.db: this is a folder, not a file"));
}

TEST_F(CollectTest, OutputTakesTheHandOversFromStandardOutput) {
  const ProgramRun run = Collect({"--format", "json", "--output", folder_.File("日本.jsonl")});
  EXPECT_EQ(run.exit_code, kExitDone) << run.err;
  EXPECT_EQ(run.out, "");
  const std::string written = ReadFile(folder_.Path() / std::filesystem::path(u8"日本.jsonl"));
  EXPECT_EQ(JsonLinesOf(written).size(), 2U);
  EXPECT_THAT(written, Not(HasSubstr("\r")));
}

TEST_F(CollectTest, OutputTakesTheTextToo) {
  const ProgramRun run = Collect({"--output", folder_.File("report.txt")});
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(ReadFile(folder_.Path() / "report.txt"), HasSubstr("SENT PcLogPerformanceSamplesAsCDM"));
}

TEST_F(CollectTest, AnOutputThatCannotBeWrittenIsWrongUsageBeforeAnythingIsRun) {
  const ProgramRun run = Collect({"--output", folder_.File("none/out"), "--queries", folder_.File("q")});
  EXPECT_EQ(run.exit_code, kExitWrongUsage);
  EXPECT_THAT(run.err, AllOf(HasSubstr("--output"), HasSubstr("none"), HasSubstr("cannot be written")));
  EXPECT_FALSE(std::filesystem::exists(folder_.Path() / "q"));
}

bool EndsWithClass(const std::string& query, const std::string& name) {
  return query.ends_with("FROM " + name);
}

TEST_F(CollectTest, QueriesAreWrittenInTheOrderInWhichTheyRan) {
  const ProgramRun run = Collect({"--queries", folder_.File("q.txt")});
  EXPECT_EQ(run.exit_code, kExitDone) << run.err;
  const std::vector<std::string> written = Lines(ReadFile(folder_.Path() / "q.txt"));
  EXPECT_EQ(written, simulation::RecordedQueries());
  auto place = written.begin();
  for (const char* name : {"Win32_PhysicalMemory", "Win32_DiskDrive", "Win32_PerfFormattedData_PerfProc_Process"}) {
    place = std::find_if(place, written.end(), [&](const std::string& query) { return EndsWithClass(query, name); });
    EXPECT_NE(place, written.end()) << name << " is not asked for, or before another";
  }
}

TEST_F(CollectTest, QueriesThatCannotBeWrittenAreWrongUsage) {
  const ProgramRun run = Collect({"--queries", ToText(folder_.Path())});
  EXPECT_EQ(run.exit_code, kExitWrongUsage);
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(run.err, AllOf(HasSubstr("--queries"), HasSubstr("this is a folder")));
}

TEST_F(CollectTest, OneFileCannotTakeBothHandOversAndQueries) {
  const ProgramRun run = Collect({"--output", folder_.File("x"), "--queries", folder_.File("./x")});
  EXPECT_EQ(run.exit_code, kExitWrongUsage);
  EXPECT_THAT(run.err, HasSubstr("--output and --queries name the same file"));
  EXPECT_FALSE(std::filesystem::exists(folder_.Path() / "x"));
}

TEST_F(CollectTest, TheLogIsQuietUnlessAskedFor) {
  EXPECT_EQ(Collect({}).err, "");
}

TEST_F(CollectTest, TheCollectorsLogGoesToStandardErrorAtTheLevelAskedFor) {
  const ProgramRun run = Collect({"--log-level", "info", "--format", "json"});
  const std::string place = "zt::telemetry::collector::performancesamples::PerformanceSamples::ReadSource";
  EXPECT_THAT(run.err,
              AllOf(HasSubstr("INFO [" + place), HasSubstr("Started " + place), HasSubstr("Finished " + place)));
  EXPECT_EQ(JsonLinesOf(run.out).size(), 2U);
}

TEST_F(CollectTest, AMachineOnWhichEverythingFailsIsLoggedAndStillUploads) {
  const ProgramRun run = RunProgram({"collect", "--machine", "failing", "--log-level", "error", "--format", "json"});
  EXPECT_EQ(run.exit_code, kExitDone);
  EXPECT_THAT(run.err, HasSubstr("Error handling message. Details: "));
  EXPECT_EQ(JsonLinesOf(run.out).size(), 2U);
}

}  // namespace
}  // namespace zt::telemetry::host
