#include "collector/example_upload.h"

#include <gmock/gmock.h>
#include <google/protobuf/util/json_util.h>
#include <gtest/gtest.h>

#include <set>

#include <nlohmann/json.hpp>

#include "example_upload_text.h"
#include "performance_samples_upload.pb.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using contract::upload::log::PcLogPerformanceSamplesAsCDM;
using nlohmann::json;
using testing::Each;
using testing::EndsWith;
using testing::UnorderedElementsAre;

json Upload() {
  return json::parse(example_upload_);
}
json Data() {
  return Upload()["data"];
}

std::set<std::string> Keys(const json& object) {
  std::set<std::string> keys;
  for (const auto& [key, value] : object.items()) keys.insert(key);
  return keys;
}

/// The part of the example that is an upload record; parsing fails on a field that the record does not have.
PcLogPerformanceSamplesAsCDM Record() {
  json data = Data();
  data.erase("swInfo");
  data.erase("version");
  PcLogPerformanceSamplesAsCDM record;
  const auto status = google::protobuf::util::JsonStringToMessage(data.dump(), &record);
  EXPECT_TRUE(status.ok()) << status.ToString();
  return record;
}

TEST(ExampleUploadTest, HasItsAgreedLength) {
  EXPECT_EQ(example_upload_.size(), 6311U);
}

TEST(ExampleUploadTest, IsTheTextThatHostsKnow) {
  EXPECT_EQ(example_upload_, kExampleUploadText);
}

TEST(ExampleUploadTest, IsJsonWithoutRepeatedKeys) {
  std::vector<std::set<std::string>> open;
  const auto refuse_repeated_keys = [&](int, json::parse_event_t event, json& parsed) {
    if (event == json::parse_event_t::object_start) open.emplace_back();
    if (event == json::parse_event_t::object_end) open.pop_back();
    if (event == json::parse_event_t::key) {
      EXPECT_TRUE(open.back().insert(parsed).second) << parsed;
    }
    return true;
  };
  EXPECT_FALSE(json::parse(example_upload_, refuse_repeated_keys).is_discarded());
}

TEST(ExampleUploadTest, IsPlainAscii) {
  EXPECT_THAT(example_upload_, Each(testing::AnyOf('\n', testing::AllOf(testing::Ge(' '), testing::Le('~')))));
}

TEST(ExampleUploadTest, HoldsEverySectionOfAnUpload) {
  EXPECT_THAT(Keys(Upload()), UnorderedElementsAre("data", "gun"));
  EXPECT_THAT(Keys(Data()), UnorderedElementsAre("collectionId", "hwInfo", "localTime", "swInfo", "operatingSystemInfo",
                                                 "samplePointsActual", "version"));
  EXPECT_THAT(Keys(Data()["hwInfo"]),
              UnorderedElementsAre("batteriesInfo", "cpusInfo", "deviceState", "fansInfo", "gpusInfo", "networkInfo",
                                   "npusInfo", "storageDrivesInfo", "systemBoardInfo", "systemMemoryInfo"));
  EXPECT_THAT(Keys(Data()["operatingSystemInfo"]),
              UnorderedElementsAre("operatingSessionInfo", "resourceIntensiveProcessesInfo"));
}

TEST(ExampleUploadTest, TellsItsKindAndVersion) {
  EXPECT_THAT(Upload()["gun"].get<std::string>(), EndsWith("PerformanceSamples.version.2"));
  EXPECT_EQ(Data()["version"], "2.0.0-beta.3");
  EXPECT_EQ(Data()["samplePointsActual"], 1);
}

TEST(ExampleUploadTest, IsReadableAsAnUploadRecord) {
  const PcLogPerformanceSamplesAsCDM record = Record();
  EXPECT_EQ(record.collection_id(), "5CG0000001_2026-03-07T12:20:42");
  EXPECT_LE(record.collection_id().size(), 30U);
  EXPECT_EQ(record.local_time(), "2026-03-07T12:20:42.000Z");
  EXPECT_EQ(record.hw_info().batteries_info(0).cycle_count(), 87U);
  EXPECT_EQ(record.hw_info().network_info().interfaces_info(0).w_lan_profiles_size(), 1);
}

// Whether the messages in a message of this type are sections of the record. Which of them the example has is told
// above: its text is fixed, and sources that come later have sections of their own.
bool HoldsSections(const google::protobuf::Descriptor& type) {
  return &type == PcLogPerformanceSamplesAsCDM::descriptor() ||
         &type == PcLogPerformanceSamplesAsCDM::HwInfo::descriptor();
}

TEST(ExampleUploadTest, FillsEveryFieldOfTheRecord) {
  const std::function<void(const google::protobuf::Message&)> expect_filled =
      [&](const google::protobuf::Message& message) {
        const auto& reflection = *message.GetReflection();
        for (int i = 0; i < message.GetDescriptor()->field_count(); ++i) {
          const auto& field = *message.GetDescriptor()->field(i);
          const bool filled =
              field.is_repeated() ? reflection.FieldSize(message, &field) > 0 : reflection.HasField(message, &field);
          const bool is_section = field.message_type() != nullptr && HoldsSections(*message.GetDescriptor());
          EXPECT_TRUE(filled || is_section) << field.full_name();
          if (!filled || field.message_type() == nullptr) continue;
          expect_filled(field.is_repeated() ? reflection.GetRepeatedMessage(message, &field, 0)
                                            : reflection.GetMessage(message, &field));
        }
      };
  expect_filled(Record());
}

TEST(ExampleUploadTest, HoldsNoMoreProcessesThanALiveUpload) {
  const int processes = Record().operating_system_info().resource_intensive_processes_info_size();
  EXPECT_GT(processes, 0);
  EXPECT_LE(processes, 10);
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
