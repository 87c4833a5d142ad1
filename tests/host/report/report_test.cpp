#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/failure.h"
#include "tests/host/report/report_of_records.h"

namespace zt::telemetry::host {
namespace {

using nlohmann::json;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::SizeIs;

TEST_F(ReportTest, TellsWhatItHasWritten) {
  const ProgramRun run = Report(LiveLine("5CG1", "2026-03-07T14:00:30"));
  EXPECT_EQ(run.exit_code, kExitDone) << run.err;
  EXPECT_THAT(run.out, AllOf(HasSubstr("report.html: 1 record of 5CG1"), testing::StartsWith("wrote ")));
  EXPECT_THAT(Page(), AllOf(testing::StartsWith("<!DOCTYPE html>"), Not(HasSubstr("{{data}}"))));
}

TEST_F(ReportTest, ThePageAllowsNothingButItsOwnScriptAndStyle) {
  Report(LiveLine("5CG1", "2026-03-07T14:00:30"));
  EXPECT_THAT(Page(), HasSubstr(R"(content="default-src 'none'; script-src 'sha256-)"));
  EXPECT_THAT(Page(), Not(HasSubstr("unsafe-inline")));
}

TEST_F(ReportTest, EachFigureHasTheUnitAndTheMeaningThatTheContractGives) {
  Report(LiveLine("5CG1", "2026-03-07T14:00:30", R"({"batteriesInfo":[{"electricCurrent":5}]})"));
  const json column = Named(Named(Data().at("tables"), kBatteries).at("columns"), "full_charge_capacity");
  EXPECT_EQ(column.at("label"), "full");
  EXPECT_EQ(column.at("unit"), "mWh");
  EXPECT_EQ(column.at("meaning"), "What the battery holds when it is full.");
}

TEST_F(ReportTest, AFigureThatIsNotSetIsNotZero) {
  Report(LiveLine("5CG1", "2026-03-07T14:00:30", R"({"batteriesInfo":[{"cycleCount":0}]})") +
         LiveLine("5CG1", "2026-03-07T15:00:30", R"({"batteriesInfo":[{"voltage":5}]})"));
  EXPECT_THAT(Column(kBatteries, "cycle_count"), ElementsAre(0, nullptr));
}

TEST_F(ReportTest, ASignedFigureInAnUnsignedFieldIsSigned) {
  Report(
      LiveLine("5CG1", "2026-03-07T14:00:30", R"({"networkInfo":{"interfacesInfo":[{"signalStrength":4294967235}]}})"));
  EXPECT_THAT(Column("PcLogPerformanceSamplesAsCDM.hw_info.network_info.interfaces_info", "signal_strength"),
              ElementsAre(-61));
}

TEST_F(ReportTest, NamedFiguresHaveAColumnForEachName) {
  Report(
      LiveLine("5CG1", "2026-03-07T14:00:30",
               R"({"systemBoardInfo":{"temperatureSensorsInfo":[{"sensorName":"ext_sensor","temperatureCelsius":21},)"
               R"({"sensorName":"loc_sensor","temperatureCelsius":38}]}})"));
  constexpr char kBoard[] = "PcLogPerformanceSamplesAsCDM.hw_info.system_board_info";
  EXPECT_THAT(Column(kBoard, "temperature_sensors_info[ext_sensor]"), ElementsAre(21));
  EXPECT_THAT(Column(kBoard, "temperature_sensors_info[loc_sensor]"), ElementsAre(38));
}

TEST_F(ReportTest, NamesWithoutEndAreLeftOutAndTold) {
  std::string sensors;
  for (int i = 0; i < 100; ++i) {
    sensors +=
        (i > 0 ? "," : "") + std::string(R"({"temperatureCelsius":1,"sensorName":"s)") + std::to_string(i) + "\"}";
  }
  Report(
      LiveLine("5CG1", "2026-03-07T14:00:30", R"({"systemBoardInfo":{"temperatureSensorsInfo":[)" + sensors + "]}}"));
  EXPECT_THAT(Data().at("notices").dump(), HasSubstr("System board: 36 named figures are left out"));
}

TEST_F(ReportTest, RecordsStandInTheOrderOfTheirTimes) {
  Report(LiveLine("5CG1", "2026-03-07T15:00:00", R"({"batteriesInfo":[{"cycleCount":2}]})") +
         LiveLine("5CG1", "2026-03-07T14:00:00", R"({"batteriesInfo":[{"cycleCount":1}]})"));
  EXPECT_THAT(Column(kBatteries, "cycle_count"), ElementsAre(1, 2));
}

TEST_F(ReportTest, ARecordThatIsThereTwiceCountsOnce) {
  const std::string line = LiveLine("5CG1", "2026-03-07T15:00:00");
  const ProgramRun run = Report(line + line);
  EXPECT_THAT(run.out, HasSubstr("1 record"));
  EXPECT_THAT(Data().at("notices").dump(), HasSubstr("1 record was there twice"));
}

TEST_F(ReportTest, AnHourIsMovedIntoTheMachinesZone) {
  Report(HourlyLine("2026-03-07T13H_5CG1-TH") + kStoredStart + R"({"localTime":"2026-03-07T10:20:00-03:00"}})" + "\n" +
         LiveLine("5CG1", "2026-03-07T10:20:00"));
  EXPECT_THAT(Unpacked(Data().at("records").at("times")), ElementsAre(1772877600, 1772878800, 1772878800));
  EXPECT_THAT(Unpacked(Data().at("records").at("kinds")), ElementsAre(1, 3, 0));
}

TEST_F(ReportTest, AnHourWhoseZoneNothingTellsStaysAsItIsAndIsToldOf) {
  Report(HourlyLine("2026-03-07T13H_5CG1-TH"));
  EXPECT_THAT(Unpacked(Data().at("records").at("times")), ElementsAre(1772888400));
  EXPECT_THAT(Data().at("notices").dump(), HasSubstr("No record tells the machine's time zone"));
}

TEST_F(ReportTest, SeveralMachinesHaveAFileEach) {
  const ProgramRun run = Report(LiveLine("5CG1", "2026-03-07T14:00:30") + LiveLine("5CG2", "2026-03-07T14:00:30"));
  EXPECT_EQ(run.exit_code, kExitDone) << run.err;
  EXPECT_EQ(Data("report-5CG1.html").at("machine").at("serial"), "5CG1");
  EXPECT_EQ(Data("report-5CG2.html").at("machine").at("serial"), "5CG2");
  EXPECT_FALSE(std::filesystem::exists(folder_.Path() / "report.html"));
}

TEST_F(ReportTest, SerialNumbersThatAreNoFileNamesGiveFilesAllTheSame) {
  Report(LiveLine("../a", "2026-03-07T14:00:30") + LiveLine("..:a", "2026-03-07T14:00:30"));
  EXPECT_EQ(Data("report-___a.html").at("machine").at("serial"), "../a");
  EXPECT_EQ(Data("report-___a-2.html").at("machine").at("serial"), "..:a");
}

TEST_F(ReportTest, OneOfSeveralMachinesIsChosenByItsSerialNumber) {
  const std::string lines = LiveLine("5CG1", "2026-03-07T14:00:30") + LiveLine("5CG2", "2026-03-07T14:00:30");
  EXPECT_THAT(Report(lines, {"--serial", "5CG2"}).out, HasSubstr("report.html: 1 record of 5CG2"));
  const ProgramRun run = Report(lines, {"--serial", "5CG3"});
  EXPECT_EQ(run.exit_code, kExitWrongUsage);
  EXPECT_THAT(run.err, HasSubstr("--serial 5CG3: no record is of this machine; expected one of 5CG1, 5CG2"));
}

TEST_F(ReportTest, ASerialNumberThatWasCutIsTheWholeOneThatItBegins) {
  const ProgramRun run =
      Report(HourlyLine("2026-03-07T13H_0123456789ABCDE") + HourlyLine("2026-03-07T13H_5CG0000001-TH") +
             LiveLine("0123456789ABCDEFGHIJ", "2026-03-07T14:00:30"));
  EXPECT_THAT(run.out, AllOf(HasSubstr("2 records of 0123456789ABCDEFGHIJ"), HasSubstr("1 record of 5CG0000001")));
}

TEST_F(ReportTest, AStoredRecordIsTheMachinesWhoseLiveRecordFollows) {
  const ProgramRun run =
      Report(LiveLine("5CG1", "2026-03-07T14:00:30") + kStoredStart + R"({"localTime":"2026-03-07T14:00:31+00:00"}})" +
             "\n" + LiveLine("5CG2", "2026-03-07T14:00:31"));
  EXPECT_THAT(run.out, AllOf(HasSubstr("1 record of 5CG1"), HasSubstr("2 records of 5CG2")));
}

TEST_F(ReportTest, FromAndToAreByTheMachinesClock) {
  const std::string lines = LiveLine("5CG1", "2026-03-07T14:00:00") + LiveLine("5CG1", "2026-03-07T15:00:00") +
                            LiveLine("5CG1", "2026-03-07T16:00:00");
  Report(lines, {"--from", "2026-03-07T15:00:00", "--to", "2026-03-07T16:00:00"});
  EXPECT_THAT(Unpacked(Data().at("records").at("times")), ElementsAre(1772895600));
  const ProgramRun run = Report(lines, {"--from", "2027-01-01"});
  EXPECT_EQ(run.exit_code, kExitFailed);
  EXPECT_THAT(run.err, HasSubstr("there is no record to report"));
}

TEST_F(ReportTest, TextsOutOfTheRecordsCannotEndTheirElement) {
  Report(
      LiveLine("5CG1", "2026-03-07T14:00:00",
               R"({"batteriesInfo":[{"batterySerialNumber":"</script><script>x","batteryCTNumber":"\u2028<!--"}]})"));
  EXPECT_THAT(DataText(), AllOf(Not(HasSubstr("<")), HasSubstr(R"(\u003c/script>)"), HasSubstr(R"(\u2028\u003c!--)")));
  EXPECT_THAT(Column(kBatteries, "battery_serial_number"), ElementsAre("</script><script>x"));
}

TEST_F(ReportTest, ATextThatIsNoUtf8IsShownWithWhatIsWrongReplaced) {
  Report(LiveLine("5CG1", "2026-03-07T14:00:00", "{\"batteriesInfo\":[{\"batterySerialNumber\":\"a\xFFz\"}]}"));
  EXPECT_THAT(Column(kBatteries, "battery_serial_number"), ElementsAre("a\xEF\xBF\xBDz"));
}

TEST_F(ReportTest, ATextOf64KilobytesIsKeptWhole) {
  const std::string text(65536, 'W');
  Report(LiveLine("5CG1", "2026-03-07T14:00:00", R"({"batteriesInfo":[{"batterySerialNumber":")" + text + "\"}]}"));
  EXPECT_THAT(Column(kBatteries, "battery_serial_number"), ElementsAre(text));
}

TEST_F(ReportTest, NumbersThatJsonDoesNotHaveAreTexts) {
  Report(LiveLine(
      "5CG1", "2026-03-07T14:00:00",
      R"({"batteriesInfo":[{"voltagePercent":"NaN"},{"voltagePercent":"-Infinity"},{"voltagePercent":0.1}]})"));
  EXPECT_THAT(Column(kBatteries, "voltage_percent"), ElementsAre("NaN", "-Infinity", 0.1));
}

TEST_F(ReportTest, ARecordWithoutATimeIsToldOf) {
  Report(LiveLine("5CG1", "2026-03-07T14:00:00") + kLineStart + R"({"collectionId":"5CG1","localTime":"soon"}})" +
         "\n");
  const ProgramRun run = ReportOf({folder_.File("records.jsonl")}, {"--serial", "5CG1"});
  EXPECT_THAT(Data().at("notices").dump(), HasSubstr("1 record is left out, having no readable time"));
}

TEST_F(ReportTest, OfRecordsWithoutASerialNumberItStillIsOneReport) {
  WriteFile(folder_.Path() / "host.toml", "[redact]\nserial_numbers = \"drop\"\n");
  RunProgram({"simulate", "--hours", "3", "--until", "2026-03-07T14:00:00Z", "--config", folder_.File("host.toml"),
              "--outbox", folder_.File("box")});
  const ProgramRun run =
      RunProgram({"report", "--outbox", folder_.File("box"), "--output", folder_.File("report.html")});
  EXPECT_EQ(run.exit_code, kExitDone) << run.err;
  EXPECT_THAT(run.out, HasSubstr(": 6 records of (no serial number)"));
  EXPECT_THAT(Page(), Not(HasSubstr("5CG0000001")));
}

TEST_F(ReportTest, ASerialNumberThatWasHashedIsThatOfOneMachine) {
  WriteFile(folder_.Path() / "host.toml",
            "[redact]\nserial_numbers = \"hash\"\nkey = \"" + std::string(64, '7') + "\"\n");
  RunProgram({"simulate", "--hours", "3", "--until", "2026-03-07T14:00:00Z", "--config", folder_.File("host.toml"),
              "--outbox", folder_.File("box")});
  const ProgramRun run =
      RunProgram({"report", "--outbox", folder_.File("box"), "--output", folder_.File("report.html")});
  EXPECT_EQ(run.exit_code, kExitDone) << run.err;
  EXPECT_THAT(Lines(run.out), SizeIs(1));
  EXPECT_THAT(Data().at("machine").at("serial").get<std::string>(), SizeIs(10));
  EXPECT_THAT(Page(), Not(HasSubstr("5CG0000001")));
}

TEST_F(ReportTest, TheMachinesNameIsTheReports) {
  Report(LiveLine("5CG1", "2026-03-07T14:00:00"), {"--machine-name", "Anna's <laptop>"});
  EXPECT_EQ(Data().at("machine").at("name"), "Anna's <laptop>");
}

TEST_F(ReportTest, WhatCannotBeWrittenLeavesTheOldReport) {
  WriteFile(folder_.Path() / "report.html", "old");
  const ProgramRun run = Report("no hand-over\n");
  EXPECT_EQ(run.exit_code, kExitFailed);
  EXPECT_EQ(Page(), "old");
  EXPECT_EQ(FilesInFolder(), 2);
}

TEST_F(ReportTest, AFolderInTheReportsPlaceIsWrongUsageAndNoPartIsLeft) {
  std::filesystem::create_directories(folder_.Path() / "report.html");
  const ProgramRun run = Report(LiveLine("5CG1", "2026-03-07T14:00:00"));
  EXPECT_EQ(run.exit_code, kExitWrongUsage);
  EXPECT_THAT(run.err, HasSubstr("this is a folder, not a file"));
  EXPECT_EQ(FilesInFolder(), 2);
}

TEST_F(ReportTest, WithoutAnInputItIsWrongUsage) {
  const ProgramRun run = RunProgram({"report", "--output", folder_.File("report.html")});
  EXPECT_EQ(run.exit_code, kExitWrongUsage);
  EXPECT_THAT(run.err, HasSubstr("--outbox and --records are missing; expected one of them, or outbox.folder in "));
  const ProgramRun missing = ReportOf({folder_.File("none.jsonl")});
  EXPECT_EQ(missing.exit_code, kExitWrongUsage);
  EXPECT_THAT(missing.err, HasSubstr("there is no such file"));
}

}  // namespace
}  // namespace zt::telemetry::host
