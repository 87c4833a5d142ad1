#include <gmock/gmock.h>

#include "host/failure.h"
#include "support/seed_database.h"
#include "support/temporary_folder.h"
#include "tests/host/program_run.h"

namespace zt::telemetry::host {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr char kHour[] = "substr(date_time, 1, 13)";
const std::vector<std::string> kTables = {"ThermalData", "NetworkData"};

class SeedTest : public testing::Test {
 protected:
  std::filesystem::path Database(const std::string& folder = "d") const { return folder_.Path() / folder / "ssm.db"; }

  // Seeds the folder `folder`, by default up to a full hour.
  ProgramRun Seed(std::vector<std::string> options, const std::string& folder = "d",
                  const std::string& until = "2026-03-07T14:00:00Z") const {
    std::vector<std::string> arguments = {"seed", "--database-dir", folder_.File(folder), "--until", until};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return RunProgram(arguments);
  }

  OpenedDatabase Seeded(std::vector<std::string> options) const {
    const ProgramRun run = Seed(std::move(options));
    EXPECT_EQ(run.exit_code, kExitDone) << run.err;
    return OpenedDatabase(Database());
  }

  // Everything in the database, row by row.
  static std::vector<std::string> Content(const OpenedDatabase& database) {
    std::vector<std::string> rows;
    for (const std::string& table : kTables) {
      std::string all;
      for (const std::string& column : database.Column("SELECT name FROM pragma_table_info('" + table + "')")) {
        all += (all.empty() ? "quote(" : " || '|' || quote(") + column + ")";
      }
      for (std::string& row : database.Column("SELECT " + all + " FROM " + table + " ORDER BY rowid")) {
        rows.push_back(std::move(row));
      }
    }
    return rows;
  }

  zt::tests::TemporaryFolder folder_;
};

TEST_F(SeedTest, AMinuteHasOneThermalSampleAndOneNetworkSampleOfEachInterface) {
  const OpenedDatabase database = Seeded({"--hours", "2"});
  EXPECT_EQ(database.Number("SELECT COUNT(*) FROM ThermalData"), 120);
  EXPECT_EQ(database.Number("SELECT COUNT(DISTINCT date_time) FROM ThermalData"), 120);
  EXPECT_EQ(database.Number("SELECT COUNT(*) FROM NetworkData"), 360);
  EXPECT_THAT(database.Column("SELECT DISTINCT COUNT(*) FROM NetworkData GROUP BY date_time"), ElementsAre("3"));
}

TEST_F(SeedTest, TheSamplesEndJustBeforeTheTimeGiven) {
  const OpenedDatabase database = Seeded({"--hours", "2"});
  for (const std::string& table : kTables) {
    EXPECT_EQ(database.Value("SELECT MIN(date_time) FROM " + table), "2026-03-07T12:00:00.000Z");
    EXPECT_EQ(database.Value("SELECT MAX(date_time) FROM " + table), "2026-03-07T13:59:00.000Z");
  }
}

TEST_F(SeedTest, UntilAFullHourTheSamplesFillAsManyHoursAsAskedFor) {
  const OpenedDatabase database = Seeded({"--hours", "30"});
  for (const std::string& table : kTables) {
    const std::string hours = std::string("SELECT COUNT(*) FROM ") + table + " GROUP BY " + kHour;
    EXPECT_EQ(database.Column(hours).size(), 30U);
    EXPECT_EQ(
        database.Column("SELECT DISTINCT n FROM (SELECT COUNT(*) n FROM " + table + " GROUP BY " + kHour + ")").size(),
        1U);
  }
}

TEST_F(SeedTest, UntilAnotherTimeTheFirstAndTheLastHourAreFilledInPart) {
  ASSERT_EQ(Seed({"--hours", "2"}, "d", "2026-03-07T14:20:00Z").exit_code, kExitDone);
  EXPECT_THAT(OpenedDatabase(Database()).Column(std::string("SELECT COUNT(*) FROM ThermalData GROUP BY ") + kHour),
              ElementsAre("40", "60", "20"));
}

TEST_F(SeedTest, WithoutATimeTheSamplesEndAtThePresent) {
  ASSERT_EQ(RunProgram({"seed", "--database-dir", folder_.File("d"), "--hours", "1"}).exit_code, kExitDone);
  const OpenedDatabase database(Database());
  EXPECT_EQ(
      database.Number("SELECT MAX(strftime('%s', 'now') - strftime('%s', substr(date_time, 1, 19)) BETWEEN 60 AND 120) "
                      "FROM ThermalData"),
      1);
}

TEST_F(SeedTest, NoColumnOfARowIsNull) {
  const OpenedDatabase database = Seeded({"--hours", "24"});
  for (const std::string& table : kTables) {
    for (const std::string& column : database.Column("SELECT name FROM pragma_table_info('" + table + "')")) {
      EXPECT_EQ(database.Number("SELECT COUNT(*) FROM " + table + " WHERE " + column + " IS NULL"), 0) << column;
    }
  }
}

TEST_F(SeedTest, EveryValueHasTheTypeThatItsColumnDeclares) {
  const OpenedDatabase database = Seeded({"--hours", "24"});
  for (const std::string& table : kTables) {
    const auto types = database.Column("SELECT lower(type) || ' ' || name FROM pragma_table_info('" + table + "')");
    ASSERT_THAT(types, Not(testing::IsEmpty()));
    for (const std::string& type_and_name : types) {
      const std::string type = type_and_name.substr(0, type_and_name.find(' '));
      const std::string name = type_and_name.substr(type.size() + 1);
      EXPECT_THAT(database.Column("SELECT DISTINCT typeof(" + name + ") FROM " + table), ElementsAre(type)) << name;
    }
  }
}

TEST_F(SeedTest, TheInterfacesAreWiredWiFiAndVpnInTurn) {
  const OpenedDatabase database = Seeded({"--hours", "1", "--interfaces", "5"});
  EXPECT_EQ(database.Number("SELECT COUNT(DISTINCT interface_device_id) FROM NetworkData"), 5);
  EXPECT_THAT(database.Column("SELECT radio_type != '' FROM NetworkData ORDER BY rowid LIMIT 5"),
              ElementsAre("0", "1", "0", "0", "1"));
}

TEST_F(SeedTest, AnInterfaceWithoutARadioHasZerosEmptyTextsAndAnEmptyHash) {
  const OpenedDatabase database = Seeded({"--hours", "24"});
  EXPECT_THAT(
      database.Column("SELECT DISTINCT channel || radio_type || signal_strength || co_channel_interference_count "
                      "|| adjacent_channel_interference_count || profile_authentication || profile_encryption "
                      "|| length(profile_name_hash) FROM NetworkData WHERE radio_type = ''"),
      ElementsAre("00000"));
  EXPECT_EQ(database.Number("SELECT COUNT(*) FROM NetworkData WHERE radio_type = ''"), 2 * 24 * 60);
}

TEST_F(SeedTest, AWiFiInterfaceHasAChannelASignalAndAProfileWithABinaryHash) {
  const OpenedDatabase database = Seeded({"--hours", "24"});
  EXPECT_EQ(database.Number(
                "SELECT COUNT(*) FROM NetworkData WHERE radio_type != '' AND (channel = 0 OR signal_strength >= 0 "
                "OR length(profile_name_hash) != 32 OR profile_authentication = '' OR profile_encryption = '')"),
            0);
  EXPECT_THAT(database.Column("SELECT DISTINCT typeof(profile_name_hash) FROM NetworkData"), ElementsAre("blob"));
}

TEST_F(SeedTest, AnHourCanHoldSeveralWiFiProfiles) {
  const OpenedDatabase database = Seeded({"--hours", "24"});
  EXPECT_GE(
      database.Number(std::string("SELECT MAX(n) FROM (SELECT COUNT(DISTINCT profile_name_hash) n FROM NetworkData "
                                  "WHERE radio_type != '' GROUP BY ") +
                      kHour + ")"),
      2);
}

TEST_F(SeedTest, TheFansStopForHoursAndRunInOthers) {
  const OpenedDatabase database = Seeded({"--hours", "48"});
  for (const std::string fan : {"fan1", "fan2"}) {
    const std::string hours = "SELECT COUNT(*) FROM (SELECT MAX(" + fan + "_current_tach_speed + " + fan +
                              "_target_tach_speed + " + fan + "_speed_step) most FROM ThermalData GROUP BY " + kHour +
                              ")";
    EXPECT_GE(database.Number(hours + " WHERE most = 0"), 8) << fan;
    EXPECT_GE(database.Number(hours + " WHERE most > 0"), 8) << fan;
  }
}

TEST_F(SeedTest, TheProcessorIsWarmerByDayThanByNight) {
  const OpenedDatabase database = Seeded({"--hours", "24"});
  const auto average = [&](const std::string& hour) {
    return std::stod(
        database.Value("SELECT AVG(cpu_temp) FROM ThermalData WHERE substr(date_time, 12, 2) = '" + hour + "'"));
  };
  EXPECT_GT(average("10"), average("03") + 20);
  EXPECT_EQ(database.Number("SELECT MIN(cpu_temp BETWEEN 20 AND 95) FROM ThermalData"), 1);
}

TEST_F(SeedTest, FlagsAreZeroOrOneAndTheVpnIsConnectedInWorkingHours) {
  const OpenedDatabase database = Seeded({"--hours", "24"});
  for (const std::string flag : {"is_managed", "is_vpn_connected", "has_network_access", "has_internet_access"}) {
    EXPECT_EQ(database.Number("SELECT COUNT(*) FROM NetworkData WHERE " + flag + " NOT IN (0, 1)"), 0) << flag;
  }
  EXPECT_THAT(
      database.Column("SELECT DISTINCT substr(date_time, 12, 2) FROM NetworkData WHERE is_vpn_connected ORDER BY 1"),
      ElementsAre("09", "10", "11", "12", "13", "14", "15", "16"));
}

TEST_F(SeedTest, TheSameNumbersGiveTheSameSamples) {
  ASSERT_EQ(Seed({"--hours", "5", "--random-seed", "42"}, "one").exit_code, kExitDone);
  ASSERT_EQ(Seed({"--hours", "5", "--random-seed", "42"}, "two").exit_code, kExitDone);
  EXPECT_EQ(Content(OpenedDatabase(Database("one"))), Content(OpenedDatabase(Database("two"))));
}

TEST_F(SeedTest, AnotherRandomSeedGivesOtherSamplesOfTheSameInterfacesAndProfiles) {
  ASSERT_EQ(Seed({"--hours", "24", "--random-seed", "42"}, "one").exit_code, kExitDone);
  ASSERT_EQ(Seed({"--hours", "24", "--random-seed", "43"}, "two").exit_code, kExitDone);
  const OpenedDatabase one(Database("one"));
  const OpenedDatabase two(Database("two"));
  EXPECT_NE(Content(one), Content(two));
  for (const char* sql : {"SELECT DISTINCT interface_device_id FROM NetworkData ORDER BY 1",
                          "SELECT DISTINCT hex(profile_name_hash) FROM NetworkData ORDER BY 1"}) {
    EXPECT_EQ(one.Column(sql), two.Column(sql));
  }
}

TEST_F(SeedTest, SamplesAreAddedToThoseThatAreThere) {
  ASSERT_EQ(Seed({"--hours", "1"}, "d", "2026-03-07T13:00:00Z").exit_code, kExitDone);
  ASSERT_EQ(Seed({"--hours", "2"}, "d", "2026-03-07T15:00:00Z").exit_code, kExitDone);
  EXPECT_THAT(OpenedDatabase(Database()).Column(std::string("SELECT COUNT(*) FROM ThermalData GROUP BY ") + kHour),
              ElementsAre("60", "60", "60"));
}

TEST_F(SeedTest, WithoutInterfacesThereAreThermalSamplesOnly) {
  const OpenedDatabase database = Seeded({"--hours", "1", "--interfaces", "0"});
  EXPECT_EQ(database.Number("SELECT COUNT(*) FROM ThermalData"), 60);
  EXPECT_EQ(database.Number("SELECT COUNT(*) FROM NetworkData"), 0);
}

TEST_F(SeedTest, AMissingFolderIsMadeWithItsParentsWhateverItsName) {
  const ProgramRun run = Seed({"--hours", "1"}, "tief/Proben für 日本");
  ASSERT_EQ(run.exit_code, kExitDone) << run.err;
  const std::filesystem::path folder = folder_.Path() / "tief" / std::filesystem::path(u8"Proben für 日本");
  EXPECT_EQ(OpenedDatabase(folder / "ssm.db").Number("SELECT COUNT(*) FROM ThermalData"), 60);
}

TEST_F(SeedTest, WhatWasWrittenIsToldOnStandardErrorAndNothingOnStandardOutput) {
  const ProgramRun run = Seed({"--hours", "480"});
  EXPECT_EQ(run.out, "");
  const std::vector<std::string> lines = Lines(run.err);
  ASSERT_EQ(lines.size(), 1U) << "progress is for terminals";
  EXPECT_THAT(lines[0], testing::StartsWith("seed: 28,800 thermal and 86,400 network samples from "
                                            "2026-02-15T14:00:00.000Z on are in "));
}

TEST_F(SeedTest, AFileInPlaceOfTheFolderIsWrongUsage) {
  WriteFile(folder_.Path() / "d", "a file");
  const ProgramRun run = Seed({"--hours", "1"});
  EXPECT_EQ(run.exit_code, kExitWrongUsage);
  EXPECT_THAT(run.err, AllOf(HasSubstr("--database-dir"), HasSubstr("this is not a folder")));
  EXPECT_EQ(ReadFile(folder_.Path() / "d"), "a file");
}

TEST_F(SeedTest, AFileThatIsNoDatabaseIsWrongUsageAndStaysAsItIs) {
  const std::string text(2000, 'x');
  std::filesystem::create_directories(folder_.Path() / "d");
  WriteFile(Database(), text);
  const ProgramRun run = Seed({"--hours", "1"});
  EXPECT_EQ(run.exit_code, kExitWrongUsage);
  EXPECT_THAT(run.err, AllOf(HasSubstr("ssm.db"), HasSubstr("file is not a database")));
  EXPECT_EQ(ReadFile(Database()), text);
}

TEST_F(SeedTest, ATableOfOtherColumnsIsWrongUsageAndNothingIsAdded) {
  ASSERT_EQ(Seed({"--hours", "1"}).exit_code, kExitDone);
  OpenedDatabase(Database()).Execute("ALTER TABLE NetworkData DROP COLUMN radio_type");
  const ProgramRun run = Seed({"--hours", "1"});
  EXPECT_EQ(run.exit_code, kExitWrongUsage);
  EXPECT_THAT(run.err, HasSubstr("table NetworkData has no column named radio_type"));
  EXPECT_EQ(OpenedDatabase(Database()).Number("SELECT COUNT(*) FROM ThermalData"), 60);
}

TEST_F(SeedTest, ARowThatCannotBeWrittenFailsAndLeavesTheDatabaseAsItWas) {
  ASSERT_EQ(Seed({"--hours", "1"}).exit_code, kExitDone);
  OpenedDatabase(Database())
      .Execute(
          "CREATE TRIGGER full BEFORE INSERT ON NetworkData WHEN NEW.date_time LIKE '%:30:%' BEGIN "
          "SELECT RAISE(ABORT, 'no more room'); END");
  const ProgramRun run = Seed({"--hours", "1"});
  EXPECT_EQ(run.exit_code, kExitFailed);
  EXPECT_THAT(run.err, HasSubstr("no more room"));
  EXPECT_EQ(OpenedDatabase(Database()).Number("SELECT COUNT(*) FROM ThermalData"), 60);
}

TEST_F(SeedTest, SamplesThatWouldBeginBeforeTheYear1AreWrongUsage) {
  const ProgramRun run = Seed({"--hours", "2"}, "d", "0001-01-01T01:00:00Z");
  EXPECT_EQ(run.exit_code, kExitWrongUsage);
  EXPECT_THAT(run.err, HasSubstr("before the year 1"));
  EXPECT_FALSE(std::filesystem::exists(folder_.Path() / "d"));
}

}  // namespace
}  // namespace zt::telemetry::host
