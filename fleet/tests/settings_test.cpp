#include "fleet/forward/settings.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "host/failure.h"

namespace zt::telemetry::fleet {
namespace {

constexpr char kBrokers[] = "[kafka]\nbrokers = \"kafka1:9092\"\n";

// What is wrong with a text, as one text.
std::string ProblemsOf(const std::string& text) {
  Settings settings;
  std::string problems;
  for (const auto& problem : ReadSettings(text, "/etc/zt/forward.toml", settings)) {
    problems += std::to_string(problem.line) + " " + problem.key + ": " + problem.text + "\n";
  }
  return problems;
}

Settings SettingsOf(const std::string& text) {
  Settings settings;
  EXPECT_TRUE(ReadSettings(text, "/etc/zt/forward.toml", settings).empty()) << ProblemsOf(text);
  return settings;
}

TEST(SettingsTest, NeedNoMoreThanBrokers) {
  const Settings settings = SettingsOf(kBrokers);
  EXPECT_EQ(settings.kafka.brokers, "kafka1:9092");
  EXPECT_EQ(settings.kafka.upload_topic, "zt.upload");
  EXPECT_TRUE(settings.kafka.upload_topics_by_kind);
  EXPECT_EQ(settings.contract_version, "1.0");
}

TEST(SettingsTest, LeaveRoomForTheKindBehindTheNameOfATopic) {
  const auto with_name = [](std::size_t length) {
    return std::string(kBrokers) + "upload_topic = \"" + std::string(length, 'a') + "\"\n";
  };
  EXPECT_EQ(ProblemsOf(with_name(241)), "");
  EXPECT_NE(ProblemsOf(with_name(242)).find("at most 241 letters"), std::string::npos);
}

TEST(SettingsTest, AreWrongWithoutBrokers) {
  EXPECT_EQ(ProblemsOf(""), "1 kafka.brokers: is missing; expected a text such as \"kafka1:9092,kafka2:9092\"\n");
}

TEST(SettingsTest, TakePathsFromTheirOwnFolder) {
  const Settings settings =
      SettingsOf(std::string(kBrokers) + "[spool]\nfolder = \"spool\"\ndone_folder = \"/done\"\n");
  EXPECT_EQ(settings.spool.folder, "/etc/zt/spool");
  EXPECT_EQ(settings.spool.done_folder, "/done");
}

TEST(SettingsTest, TellEachMistakeWithItsLine) {
  EXPECT_EQ(
      ProblemsOf(
          "[kafka]\nbrokers = 7\ncompression = \"gzip\"\nupload_topic = \"a b\"\nqueue_messages = 0\n"
          "typo = 1\nupload_topics_by_kind = \"yes\"\n[spool]\nretry_seconds = \"soon\"\n[metrics]\nport = 70000\n"),
      "2 kafka.brokers: expected the brokers as a text such as \"kafka1:9092,kafka2:9092\", but got 7\n"
      "3 kafka.compression: expected \"none\", \"lz4\" or \"zstd\", but got \"gzip\"\n"
      "4 kafka.upload_topic: expected the name of a topic: at most 241 letters, digits, \".\", \"_\" and \"-\", but "
      "got \"a b\"\n"
      "5 kafka.queue_messages: expected a whole number from 1 to 10000000, but got 0\n"
      "6 kafka.typo: there is no such key; expected one of brokers, upload_topic, upload_topics_by_kind, "
      "storage_topic, dead_letter_topic, compression, queue_messages, queue_kibibytes, client, client_files\n"
      "7 kafka.upload_topics_by_kind: expected true or false, but got \"yes\"\n"
      "9 spool.retry_seconds: expected a whole number from 1 to 86400, but got \"soon\"\n"
      "11 metrics.port: expected a whole number from 0 to 65535, but got 70000\n");
}

TEST(SettingsTest, PassPropertiesOfTheClientOnInBothWaysOfWritingThem) {
  const Settings settings =
      SettingsOf(std::string(kBrokers) +
                 "[kafka.client]\n\"security.protocol\" = \"SASL_SSL\"\nsasl.mechanism = \"PLAIN\"\n"
                 "statistics.interval.ms = 5000\nssl.endpoint.identification.algorithm = \"https\"\n");
  ASSERT_EQ(settings.kafka.client.size(), 4U);
  std::string all;
  for (const ClientProperty& property : settings.kafka.client) all += property.name + "=" + property.value + " ";
  EXPECT_NE(all.find("security.protocol=SASL_SSL "), std::string::npos) << all;
  EXPECT_NE(all.find("sasl.mechanism=PLAIN "), std::string::npos) << all;
  EXPECT_NE(all.find("statistics.interval.ms=5000 "), std::string::npos) << all;
}

TEST(SettingsTest, RefuseWhatTheClientDoesNotKnow) {
  EXPECT_EQ(ProblemsOf(std::string(kBrokers) + "[kafka.client]\n\"sasl.wrong\" = 1\n"),
            "4 kafka.client.sasl.wrong: the Kafka client refuses it: No such configuration property: \"sasl.wrong\"\n");
}

TEST(SettingsTest, RefuseWhatTheProgramsPromisesRestOn) {
  for (const std::string name : {"acks", "enable.idempotence", "message.timeout.ms", "partitioner"}) {
    EXPECT_EQ(ProblemsOf(std::string(kBrokers) + "[kafka.client]\n\"" + name + "\" = \"1\"\n"),
              "4 kafka.client." + name + ": this property is the program's own: its promises rest on it\n");
  }
}

TEST(SettingsTest, ReadSecretsFromFilesAndTellThemToNobody) {
  const std::string file = testing::TempDir() + "secret";
  std::ofstream(file) << "open sesame\n";
  const Settings settings =
      SettingsOf(std::string(kBrokers) + "[kafka.client_files]\n\"sasl.password\" = \"" + file + "\"\n");
  ASSERT_EQ(settings.kafka.client.size(), 1U);
  EXPECT_EQ(settings.kafka.client[0].value, "open sesame");
  EXPECT_EQ(SettingsText(settings).find("sesame"), std::string::npos);
  EXPECT_NE(SettingsText(settings).find("kafka.client.sasl.password = (not told)"), std::string::npos);
}

TEST(SettingsTest, TellASecretsFileThatIsMissing) {
  EXPECT_EQ(ProblemsOf(std::string(kBrokers) + "[kafka.client_files]\n\"sasl.password\" = \"/none\"\n"),
            "4 kafka.client_files.sasl.password: expected a file whose first line is the value, but /none cannot be "
            "read, or is empty\n");
}

TEST(SettingsTest, TellWhereATextIsNoToml) {
  EXPECT_EQ(ProblemsOf("[kafka]\nbrokers = \n").substr(0, 2), "2 ");
}

TEST(SettingsTest, OfAFileThatIsMissingAreWrongUsage) {
  try {
    ReadSettingsFile("/nowhere/forward.toml");
    FAIL();
  } catch (const host::Failure& failure) {
    EXPECT_EQ(failure.ExitCode(), host::kExitWrongUsage);
    EXPECT_STREQ(failure.what(), "--config /nowhere/forward.toml: there is no such file");
  }
}

}  // namespace
}  // namespace zt::telemetry::fleet
