#include <gmock/gmock.h>

#include <map>

#include "collector/sources.h"
#include "host/failure.h"
#include "support/recording_sink.h"
#include "support/seed_database.h"
#include "support/temporary_folder.h"
#include "tests/host/program_run.h"

namespace zt::telemetry::host {
namespace {

using nlohmann::json;
using testing::AllOf;
using testing::Contains;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

// The program over an empty folder of stored samples.
class DoctorTest : public testing::Test {
 protected:
  ProgramRun Ask(const std::string& machine, const std::vector<std::string>& options = {}) const {
    std::vector<std::string> arguments = {"doctor", "--machine", machine, "--database-dir", folder_.Utf8()};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return RunProgram(arguments);
  }

  // Each source's report by its name.
  std::map<std::string, json> Reports(const std::string& machine) const {
    std::map<std::string, json> reports;
    for (const json& line : JsonLinesOf(Ask(machine, {"--format", "json"}).out)) reports[line["source"]] = line;
    return reports;
  }

  std::string MachineFile(const std::string& profile) const {
    WriteFile(folder_.Path() / "machine.json", profile);
    return folder_.File("machine.json");
  }

  zt::tests::TemporaryFolder folder_;
};

TEST_F(DoctorTest, AsksEverySourceOnceInTheOrderOfACollection) {
  std::vector<std::string> asked;
  for (const json& line : JsonLinesOf(Ask("convertible-laptop", {"--format", "json"}).out)) {
    asked.push_back(line["source"]);
  }
  std::vector<std::string> expected = {"Stored samples", "Serial number", "Firmware temperatures"};
  for (const auto& source : collector::performancesamples::Sources()) {
    if (source.name == std::string("Graphics cards")) {
      expected.insert(expected.end(), {"NVIDIA graphics", "AMD graphics", "Intel graphics"});
    }
    expected.emplace_back(source.name);
  }
  EXPECT_EQ(asked, expected);
}

TEST_F(DoctorTest, AMachineOnWhichNothingFailsIsDone) {
  for (const char* machine : {"convertible-laptop", "workstation", "bare"}) {
    const ProgramRun run = Ask(machine);
    EXPECT_EQ(run.exit_code, kExitDone) << machine << run.out << run.err;
    EXPECT_THAT(run.out, EndsWith(" 0 failed\n"));
    EXPECT_THAT(run.err, IsEmpty());
  }
}

TEST_F(DoctorTest, AMachineOfWhichASourceFailsIsFailed) {
  const ProgramRun run = Ask("failing");
  EXPECT_EQ(run.exit_code, kExitFailed);
  EXPECT_THAT(run.out, Not(EndsWith(" 0 failed\n")));
}

TEST_F(DoctorTest, AFailureTellsItsReasonAndItsStatus) {
  const auto reports = Reports("failing");
  EXPECT_EQ(reports.at("Storage drives")["state"], "failed");
  EXPECT_EQ(reports.at("Storage drives")["remark"], "Error while querying Win32_DiskDrive (status 0x80041003)");
  EXPECT_EQ(reports.at("Processes and session")["remark"], "Unable to get last input information.");
  EXPECT_THAT(reports.at("NPUs")["remark"].get<std::string>(), HasSubstr("parse error"));
}

TEST_F(DoctorTest, OneFailingSourceLeavesTheOthersAlone) {
  const auto reports = Reports(MachineFile(R"({"npu_report": "{", "smbios": {"serial_number": "SN42"},
      "session": {"tick_counts_ms": [60000], "last_input_tick_ms": 0}})"));
  EXPECT_EQ(reports.at("NPUs")["state"], "failed");
  EXPECT_EQ(reports.at("Serial number")["state"], "present");
  EXPECT_EQ(reports.at("Processes and session")["state"], "present");
}

TEST_F(DoctorTest, WhatASourceOnlyLogsIsAFailureToo) {
  const auto reports = Reports(MachineFile(R"({
      "session": {"tick_counts_ms": [60000], "last_input_tick_ms": 0},
      "processes": [{"id": 7, "user_100ns": 20000000, "peak_working_set_bytes": 1, "working_set_bytes": 1}],
      "wmi": {"classes": {"Win32_PerfFormattedData_PerfProc_Process":
                  [{"Name": "busy", "IDProcess": 7, "PercentProcessorTime": "5", "PriorityBase": 8}]},
              "failures": [{"query_contains": "FROM Win32_Process WHERE", "status": 5}]}})"));
  EXPECT_EQ(reports.at("Processes and session")["state"], "failed");
  EXPECT_EQ(reports.at("Processes and session")["remark"],
            "Processes are left out: querying Win32_Process failed with status 5");
}

TEST_F(DoctorTest, WhatAMachineDoesNotHaveIsAbsent) {
  const auto reports = Reports("bare");
  for (const char* source :
       {"Stored samples", "Serial number", "Firmware temperatures", "Batteries", "NVIDIA graphics", "AMD graphics",
        "Intel graphics", "Graphics cards", "NPUs", "Storage drives", "Processes and session"}) {
    EXPECT_EQ(reports.at(source)["state"], "absent") << source;
    EXPECT_NE(reports.at(source)["remark"], "") << source;
    EXPECT_THAT(reports.at(source)["figures"], IsEmpty()) << source;
  }
}

TEST_F(DoctorTest, AFirmwareThatRefusesIsAFailureAndOneWithoutTheCommandIsNot) {
  const auto machine = [&](const std::string& result) {
    return MachineFile(R"({"private_bios": [{"command": 1, "command_type": 40, "input": [1, 0, 0, 0], "result": )" +
                       result + "}]}");
  };
  EXPECT_EQ(Reports(machine("2147749891")).at("Firmware temperatures")["state"], "failed");
  EXPECT_EQ(Reports(machine("2147749904")).at("Firmware temperatures")["state"], "absent");  // no such class
}

TEST_F(DoctorTest, WhatCannotBeAskedForIsAFailureAndNoAbsence) {
  const auto reports = Reports(MachineFile(R"({
      "smbios": {"fails": 5}, "power_status": {"battery_flag": 1}, "batteries": [{"fails": 1460}],
      "npu_report": {"fails": -2147467259}})"));
  EXPECT_EQ(reports.at("Serial number")["state"], "failed");
  EXPECT_EQ(reports.at("Serial number")["remark"], "the firmware's table cannot be read (status 5)");
  EXPECT_EQ(reports.at("Batteries")["state"], "failed");
  EXPECT_EQ(reports.at("Batteries")["remark"], "a battery does not answer (status 1460)");
  EXPECT_EQ(reports.at("NPUs")["state"], "failed");
  EXPECT_EQ(reports.at("NPUs")["remark"], "the system does not tell all its NPUs (status 0x80004005)");
}

TEST_F(DoctorTest, ABatteryThatDoesNotAnswerIsAFailureBesideOneThatDoes) {
  const auto reports = Reports(MachineFile(R"({"power_status": {"battery_flag": 1},
      "batteries": [{"serial_number": "42"}, {"fails": 1460}]})"));
  EXPECT_EQ(reports.at("Batteries")["state"], "failed");
  EXPECT_EQ(reports.at("Batteries")["figures"]["hwInfo"]["batteriesInfo"][0]["batterySerialNumber"], "42");
}

TEST_F(DoctorTest, APowerStatusThatTheSystemDoesNotTellIsAFailure) {
  const json batteries = Reports(MachineFile("{}")).at("Batteries");
  EXPECT_EQ(batteries["state"], "failed");
  EXPECT_EQ(batteries["remark"], "the system does not tell its power status");
  EXPECT_EQ(Reports(MachineFile(R"({"power_status": {"battery_flag": 128}})")).at("Batteries")["state"], "absent");
}

TEST_F(DoctorTest, ACardWhoseBusTheRegistryDoesNotTellIsAFailure) {
  const std::string card = R"({"adlx": {"gpus": [{"vendor_id": "1002", "device_id": "744C"}]}, "registry": {)"
                           R"("HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Enum\\PCI": )";
  const json refused = Reports(MachineFile(card + R"({"fails": 5}}})")).at("AMD graphics");
  EXPECT_EQ(refused["state"], "failed");
  EXPECT_EQ(refused["remark"], "1 card: 744C at bus 0; the registry does not tell their bus (status 5)");
  EXPECT_EQ(Reports(MachineFile(card + "{}}}")).at("AMD graphics")["state"], "present");
}

TEST_F(DoctorTest, AListOfAdaptersThatCannotBeHadIsAFailureAndNoAbsence) {
  const auto reports = Reports(
      MachineFile(R"({"wmi": {"failures": [{"query_contains": "Win32_VideoController", "status": 2147749891}]}})"));
  EXPECT_EQ(reports.at("Intel graphics")["state"], "failed");
  EXPECT_EQ(reports.at("Intel graphics")["remark"], "Error while querying Win32_VideoController (status 0x80041003)");
}

TEST_F(DoctorTest, TellsTheNumberOfItsSession) {
  const auto remark = [&](const std::string& number) {
    return Reports(MachineFile(R"({"session": {"tick_counts_ms": [60000], "last_input_tick_ms": 0)" + number + "}}"))
        .at("Processes and session")["remark"];
  };
  EXPECT_EQ(remark(""), "session 1");
  EXPECT_EQ(remark(R"(, "number": 2)"), "session 2");
  EXPECT_EQ(remark(R"(, "number": 0)"), "session 0, that of the services: input and windows are not the user's");
}

TEST_F(DoctorTest, ASessionThatTheSystemDoesNotTellIsAFailure) {
  const auto reports = Reports(
      MachineFile(R"({"session": {"tick_counts_ms": [60000], "last_input_tick_ms": 0, "number": {"fails": 87}}})"));
  EXPECT_EQ(reports.at("Processes and session")["state"], "failed");
}

TEST_F(DoctorTest, WritesTheQueriesOfItsSources) {
  Ask("convertible-laptop", {"--queries", folder_.File("queries.txt")});
  const std::vector<std::string> queries = Lines(ReadFile(folder_.Path() / "queries.txt"));
  EXPECT_THAT(queries, Contains(HasSubstr("FROM Win32_OperatingSystem")));
  EXPECT_THAT(queries, Contains(HasSubstr("FROM Win32_DiskDrive")));
}

TEST_F(DoctorTest, ShowsTheLogWhenItIsAskedFor) {
  const std::string machine = MachineFile(R"({
      "session": {"tick_counts_ms": [60000], "last_input_tick_ms": 0},
      "processes": [{"id": 7, "user_100ns": 20000000, "peak_working_set_bytes": 1, "working_set_bytes": 1}],
      "wmi": {"classes": {"Win32_PerfFormattedData_PerfProc_Process":
                  [{"Name": "busy", "IDProcess": 7, "PercentProcessorTime": "5", "PriorityBase": 8}]},
              "failures": [{"query_contains": "FROM Win32_Process WHERE", "status": 5}]}})");
  EXPECT_THAT(Ask(machine).err, IsEmpty());
  const ProgramRun shown = Ask(machine, {"--log-level", "warning"});
  EXPECT_THAT(shown.err, HasSubstr("Processes are left out: querying Win32_Process failed with status 5"));
  EXPECT_THAT(shown.out, HasSubstr("Processes are left out")) << "and it is an issue of the source still";
}

TEST_F(DoctorTest, ADatabaseThatCannotBeLookedForIsAFailure) {
  std::error_code error;
  std::filesystem::create_symlink("ssm.db", folder_.Path() / "ssm.db", error);  // leads to itself
  if (error) GTEST_SKIP() << "no symbolic links here";
  const bool found = std::filesystem::exists(folder_.Path() / "ssm.db", error);
  if (found || !error) GTEST_SKIP() << "this system takes such a link for an absent file";
  const json report = Reports("bare").at("Stored samples");
  EXPECT_EQ(report["state"], "failed");
  EXPECT_THAT(report["remark"].get<std::string>(), HasSubstr("ssm.db: "));
}

TEST_F(DoctorTest, TellsTheCardsOfEachVendor) {
  const auto reports = Reports("workstation");
  EXPECT_EQ(reports.at("NVIDIA graphics")["remark"], "2 cards: 1650000000001 at bus 12, 1650000000002 at bus 0");
  EXPECT_EQ(reports.at("AMD graphics")["remark"], "1 card: 744C at bus 3");
  EXPECT_EQ(reports.at("Intel graphics")["remark"], "1 card: 5CG0000002 at bus 0");
}

TEST_F(DoctorTest, AVendorsLibraryThatIsThereAndDoesNotStartIsAFailureWithItsReason) {
  const auto reports = Reports(MachineFile(R"({"nvml": {"init": 9}, "adlx": {"initialize": 5}})"));
  EXPECT_EQ(reports.at("NVIDIA graphics")["state"], "failed");
  EXPECT_EQ(reports.at("NVIDIA graphics")["remark"], "NVIDIA driver is not loaded (status 9)");
  EXPECT_EQ(reports.at("AMD graphics")["state"], "failed");
  EXPECT_EQ(reports.at("AMD graphics")["remark"], "Error while initializing ADLX lib (status 5)");
}

TEST_F(DoctorTest, AVendorsLibraryThatLacksAFunctionIsAFailure) {
  const auto reports = Reports(MachineFile(
      R"({"nvml": {"missing_functions": ["nvmlInit_v2"]}, "adlx": {"missing_functions": ["ADLXTerminate"]}})"));
  EXPECT_EQ(reports.at("NVIDIA graphics")["state"], "failed");
  EXPECT_EQ(reports.at("AMD graphics")["state"], "failed");
}

TEST_F(DoctorTest, AVendorsLibraryWithoutCardsIsAnAbsence) {
  const auto reports = Reports(MachineFile(R"({"nvml": {}, "adlx": {}})"));
  EXPECT_EQ(reports.at("NVIDIA graphics")["remark"], "no card of this vendor");
  EXPECT_EQ(reports.at("AMD graphics")["remark"], "no card of this vendor");
}

TEST_F(DoctorTest, TheFiguresAreThoseOfACollection) {
  const ProgramRun collected = RunProgram({"collect", "--machine", "convertible-laptop", "--format", "json"});
  json asked;
  for (const auto& [source, report] : Reports("convertible-laptop")) asked.merge_patch(report["figures"]);
  json sent = JsonLinesOf(collected.out).at(1)["record"];
  EXPECT_EQ(asked["hwInfo"], sent["hwInfo"]);
  EXPECT_EQ(asked["operatingSystemInfo"], sent["operatingSystemInfo"]);
}

TEST_F(DoctorTest, ReadsTheSessionsClockAsACollectionDoes) {
  const auto reports =
      Reports(MachineFile(R"({"session": {"tick_counts_ms": [60000, 3660000], "last_input_tick_ms": 0}})"));
  const json& session = reports.at("Processes and session")["figures"]["operatingSystemInfo"]["operatingSessionInfo"];
  EXPECT_EQ(session["timeSinceLastBootMinutes"], 1.0);
  EXPECT_EQ(session["timeSinceLastLogonMinutes"], 61.0);
}

TEST_F(DoctorTest, HandsNothingOver) {
  const auto sink = zt::tests::RegisterRecordingSink();
  Ask("convertible-laptop");
  common::RegisterTelemetrySink(nullptr);
  EXPECT_THAT(sink->stored, IsEmpty());
  EXPECT_THAT(sink->sent, IsEmpty());
  EXPECT_THAT(sink->texts, IsEmpty());
}

// The collector that it asks is one of its own, with a state of its own: that of the plugin would have no receiver
// after an inspection.
TEST_F(DoctorTest, LeavesThePluginsCollectorAsItWas) {
  Ask("convertible-laptop");
  const ProgramRun run = RunProgram({"collect", "--machine", "convertible-laptop", "--format", "json"});
  EXPECT_EQ(run.exit_code, kExitDone);
  EXPECT_THAT(JsonLinesOf(run.out), SizeIs(2)) << run.err;
}

TEST_F(DoctorTest, CountsTheStoredSamplesAndLeavesThemThere) {
  ASSERT_EQ(RunProgram({"seed", "--database-dir", folder_.Utf8(), "--hours", "24", "--interfaces", "2", "--until",
                        "2026-03-07T14:00:00Z"})
                .exit_code,
            kExitDone);
  for (int i = 0; i < 2; ++i) {
    const json report = Reports("bare").at("Stored samples");
    EXPECT_EQ(report["state"], "present");
    EXPECT_EQ(report["remark"], "1,440 thermal and 2,880 network samples");
  }
}

TEST_F(DoctorTest, AFileThatIsNoDatabaseIsAFailureThatNamesIt) {
  WriteFile(folder_.Path() / "ssm.db", std::string(4096, 'x'));
  const json report = Reports("bare").at("Stored samples");
  EXPECT_EQ(report["state"], "failed");
  EXPECT_THAT(report["remark"].get<std::string>(), HasSubstr("ssm.db: file is not a database"));
  EXPECT_EQ(Ask("bare").exit_code, kExitFailed);
}

TEST_F(DoctorTest, ADatabaseWithoutATableIsAFailureThatNamesTheTable) {
  sqlite3* made = nullptr;
  sqlite3_open(folder_.File("ssm.db").c_str(), &made);
  sqlite3_exec(made, "CREATE TABLE ThermalData(a)", nullptr, nullptr, nullptr);
  sqlite3_close(made);
  EXPECT_THAT(Reports("bare").at("Stored samples")["remark"].get<std::string>(),
              EndsWith("ssm.db: no such table: NetworkData"));
}

TEST_F(DoctorTest, TextHasALineForEachSourceThenTheFiguresThenTheCounts) {
  const std::vector<std::string> lines = Lines(Ask("convertible-laptop").out);
  EXPECT_THAT(lines.at(1), AllOf(StartsWith("Serial number          present "), EndsWith(" ms  5CG0000001")));
  EXPECT_THAT(lines, Contains("FIGURES"));
  EXPECT_THAT(lines, Contains("    mode  positionPullForward"));
  EXPECT_THAT(lines.back(), AllOf(HasSubstr(" present, "), EndsWith(" absent, 0 failed")));
}

}  // namespace
}  // namespace zt::telemetry::host
