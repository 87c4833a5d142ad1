#include "host/configuration/configuration_file.h"

#include <gmock/gmock.h>

#include "host/files.h"
#include "host/program_environment.h"

namespace zt::telemetry::host {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr char kKey[] = "000102030405060708090a0b0c0d0e0f101112131415161718191a1b1c1d1e1f";

class ConfigurationFileTest : public testing::Test {
 protected:
  ConfigurationFileTest() { configuration_.file = PathFromText("/etc/made-up/host.toml"); }

  // "LINE KEY: TEXT" of each problem.
  std::vector<std::string> Problems(const std::string& text) {
    std::vector<std::string> problems;
    for (const ConfigurationProblem& problem : ReadSettings(text, configuration_)) {
      problems.push_back(std::to_string(problem.line) + " " + problem.key + ": " + problem.text);
    }
    return problems;
  }

  Configuration configuration_;
};

TEST_F(ConfigurationFileTest, AnEmptyFileLeavesTheDefaults) {
  EXPECT_THAT(Problems(""), IsEmpty());
  EXPECT_EQ(configuration_.max_bytes.value, 268'435'456);
  EXPECT_EQ(configuration_.max_days.value, 90);
  EXPECT_EQ(configuration_.outbox_folder.value, std::nullopt);
  EXPECT_EQ(configuration_.log_level.value, std::nullopt);
  EXPECT_TRUE(configuration_.GivenConsent().IsWhole());
}

TEST_F(ConfigurationFileTest, EverySettingIsTakenWithItsLine) {
  EXPECT_THAT(Problems(R"([outbox]
folder = "/var/outbox"
max_bytes = 1048576
max_days = 7

[log]
level = "info"
file = "/var/host.log"

[sections]
batteries = false
network = true
)"),
              IsEmpty());
  EXPECT_EQ(configuration_.outbox_folder.value, PathFromText("/var/outbox"));
  EXPECT_EQ(configuration_.outbox_folder.origin.kind, Origin::Kind::kFile);
  EXPECT_EQ(configuration_.outbox_folder.origin.line, 2U);
  EXPECT_EQ(configuration_.max_bytes.value, 1'048'576);
  EXPECT_EQ(configuration_.max_days.origin.line, 4U);
  EXPECT_EQ(configuration_.log_level.value, plog::info);
  EXPECT_EQ(configuration_.log_file.value, PathFromText("/var/host.log"));
  const Consent consent = configuration_.GivenConsent();
  EXPECT_FALSE(consent.Includes(RecordSection::kBatteries));
  EXPECT_TRUE(consent.Includes(RecordSection::kNetwork));
}

TEST_F(ConfigurationFileTest, EverySectionAndIdentityHasItsName) {
  for (std::size_t i = 0; i < kSectionNames.size(); ++i) {
    EXPECT_THAT(Problems("[sections]\n" + std::string(kSectionNames.at(i)) + " = false"), IsEmpty());
    EXPECT_FALSE(configuration_.GivenConsent().sections.at(i));
  }
  for (std::size_t i = 0; i < kIdentityNames.size(); ++i) {
    EXPECT_THAT(Problems("[redact]\n" + std::string(kIdentityNames.at(i)) + " = \"drop\""), IsEmpty());
    EXPECT_EQ(configuration_.GivenConsent().identities.at(i), Treatment::kDrop);
  }
}

TEST_F(ConfigurationFileTest, APathIsMeantFromTheFolderOfTheFile) {
  EXPECT_THAT(Problems("[outbox]\nfolder = \"../für 日本\""), IsEmpty());
  EXPECT_EQ(ToText(configuration_.outbox_folder.value->filename()), "für 日本");
  EXPECT_EQ(configuration_.outbox_folder.value->parent_path(), PathFromText("/etc"));
}

TEST_F(ConfigurationFileTest, AKeyThatThereIsNotIsToldWithThoseThatThereAre) {
  EXPECT_THAT(Problems("outbx = 1\n[log]\nlvl = 2\n"),
              ElementsAre("1 outbx: there is no such key; expected one of outbox, log, sections, redact",
                          "3 log.lvl: there is no such key; expected one of level, file"));
}

TEST_F(ConfigurationFileTest, AValueOfTheWrongTypeIsToldWithWhatWasExpected) {
  EXPECT_THAT(Problems("outbox = 1\n[log]\nfile = true\n[sections]\nfans = \"no\"\nmemory = {}\n[redact]\n"
                       "process_names = 3.5\nserial_numbers = [1]\nwifi_profiles = 2026-03-07\n"),
              ElementsAre("1 outbox: expected a table, [outbox], but got 1",
                          "3 log.file: expected a path as a text, but got true",
                          "5 sections.fans: expected true or false, but got \"no\"",
                          "6 sections.memory: expected true or false, but got a table",
                          "8 redact.process_names: expected one of \"keep\", \"drop\", \"hash\", but got a number "
                          "with a fraction",
                          "9 redact.serial_numbers: expected one of \"keep\", \"drop\", \"hash\", but got a list",
                          "10 redact.wifi_profiles: expected one of \"keep\", \"drop\", \"hash\", but got a date or a "
                          "time"));
}

TEST_F(ConfigurationFileTest, AValueOutOfRangeIsToldWithTheRange) {
  EXPECT_THAT(Problems("[outbox]\nmax_bytes = 1048575\nmax_days = 36501\n[log]\nlevel = \"loud\"\n"),
              ElementsAre("2 outbox.max_bytes: expected a whole number from 1048576 to 1099511627776, but got 1048575",
                          "3 outbox.max_days: expected a whole number from 1 to 36500, but got 36501",
                          StartsWith("5 log.level: expected one of \"none\", \"fatal\", \"error\"")));
}

TEST_F(ConfigurationFileTest, ASettingThatIsWrongStaysAsItWas) {
  Problems("[outbox]\nmax_days = 0\n");
  EXPECT_EQ(configuration_.max_days.value, 90);
  EXPECT_EQ(configuration_.max_days.origin.kind, Origin::Kind::kDefault);
}

TEST_F(ConfigurationFileTest, WhatIsNoTomlIsToldWithItsLine) {
  EXPECT_THAT(Problems("[log]\nlevel = \n"), ElementsAre(StartsWith("2 : ")));
  EXPECT_THAT(Problems("[log]\n[log]\n"), ElementsAre(StartsWith("2 : ")));
  EXPECT_THAT(Problems("[log]\nlevel = \"\xff\"\n"), ElementsAre(StartsWith("2 : ")));
}

TEST_F(ConfigurationFileTest, AHashNeedsAKey) {
  EXPECT_THAT(Problems("[redact]\nserial_numbers = \"hash\"\n"),
              ElementsAre(HasSubstr("2 redact.serial_numbers: \"hash\" needs a key: expected redact.key")));
  EXPECT_THAT(Problems("[redact]\nserial_numbers = \"hash\"\nkey = \"" + std::string(kKey) + "\"\n"), IsEmpty());
  EXPECT_EQ(KeyText(configuration_.GivenConsent().key.value()), kKey);
}

TEST_F(ConfigurationFileTest, AKeyThatIsNoneIsToldWithoutIt) {
  const std::string secret = "5ec2e7";
  for (const std::string& value :
       {"\"" + secret + "\"", "[\"" + secret + "\"]", "\"" + secret + std::string(58, 'x') + "\""}) {
    const std::vector<std::string> problems = Problems("[redact]\nkey = " + value + "\nserial_numbers = \"hash\"\n");
    EXPECT_THAT(problems, ElementsAre(AllOf(StartsWith("2 redact.key: expected 64 hexadecimal digits as a text"),
                                            Not(HasSubstr(secret)))));
  }
}

}  // namespace
}  // namespace zt::telemetry::host
