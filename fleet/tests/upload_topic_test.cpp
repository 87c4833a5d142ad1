#include "fleet/forward/upload_topic.h"

#include <google/protobuf/message.h>
#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <iterator>
#include <string>

#include "performance_samples_upload.pb.h"

namespace zt::telemetry::fleet {
namespace {

using google::protobuf::FieldDescriptor;
using google::protobuf::Message;
using Upload = contract::upload::log::PcLogPerformanceSamplesAsCDM;

void Set(Message& holder, const FieldDescriptor& section) {
  const google::protobuf::Reflection& reflection = *holder.GetReflection();
  section.is_repeated() ? reflection.AddMessage(&holder, &section) : reflection.MutableMessage(&holder, &section);
}

// A record for each section that the contract has, with nothing but that section.
void ForEachSection(const std::function<void(const FieldDescriptor& section, UploadTopic topic)>& look) {
  for (int at = 0; at < Upload::HwInfo::descriptor()->field_count(); ++at) {
    Upload record;
    Set(*record.mutable_hw_info(), *Upload::HwInfo::descriptor()->field(at));
    look(*Upload::HwInfo::descriptor()->field(at), UploadTopicOf(record));
  }
  for (int at = 0; at < Upload::OperatingSystemInfo::descriptor()->field_count(); ++at) {
    Upload record;
    Set(*record.mutable_operating_system_info(), *Upload::OperatingSystemInfo::descriptor()->field(at));
    look(*Upload::OperatingSystemInfo::descriptor()->field(at), UploadTopicOf(record));
  }
}

// What ClickHouse reads from the topic: the definition of its queue.
std::string QueueOf(UploadTopic topic) {
  std::ifstream file(ZT_QUEUES_SQL);
  const std::string sql{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  const std::string suffix(kUploadTopicSuffixes.at(static_cast<std::size_t>(topic)));
  const std::size_t topic_list = sql.find("kafka_topic_list = '{upload_topic}" + suffix + "'");
  if (topic_list == std::string::npos) return {};
  const std::size_t begin = sql.rfind("CREATE TABLE", topic_list);
  return sql.substr(begin, topic_list - begin);
}

TEST(UploadTopicTest, EverySectionOfTheContractBelongsToAKindOfRecords) {
  int sections = 0;
  ForEachSection([&sections](const FieldDescriptor& section, UploadTopic topic) {
    EXPECT_NE(topic, UploadTopic::kMixed) << section.full_name();
    ++sections;
  });
  EXPECT_GE(sections, 12);
}

TEST(UploadTopicTest, EverySectionIsReadFromTheTopicThatItGoesTo) {
  ForEachSection([](const FieldDescriptor& section, UploadTopic topic) {
    EXPECT_NE(QueueOf(topic).find(section.name() + " "), std::string::npos) << section.full_name();
    EXPECT_NE(QueueOf(UploadTopic::kMixed).find(section.name() + " "), std::string::npos) << section.full_name();
  });
}

TEST(UploadTopicTest, SectionsOfOneKindStayTogether) {
  Upload live;
  live.mutable_hw_info()->add_batteries_info();
  live.mutable_operating_system_info()->mutable_operating_session_info();
  EXPECT_EQ(UploadTopicOf(live), UploadTopic::kLive);
  Upload thermal;
  thermal.mutable_hw_info()->add_cpus_info();
  thermal.mutable_hw_info()->add_fans_info();
  EXPECT_EQ(UploadTopicOf(thermal), UploadTopic::kThermal);
  Upload network;
  network.mutable_hw_info()->mutable_network_info();
  EXPECT_EQ(UploadTopicOf(network), UploadTopic::kNetwork);
}

TEST(UploadTopicTest, SectionsOfTwoKindsAreMixed) {
  Upload record;
  record.mutable_hw_info()->add_fans_info();
  record.mutable_operating_system_info()->mutable_operating_session_info();
  EXPECT_EQ(UploadTopicOf(record), UploadTopic::kMixed);
}

TEST(UploadTopicTest, ARecordWithoutSectionsIsMixed) {
  EXPECT_EQ(UploadTopicOf(Upload()), UploadTopic::kMixed);
}

TEST(UploadTopicTest, ARecordWithASectionOfALaterContractIsMixed) {
  Upload beside;
  beside.mutable_hw_info()->add_batteries_info();
  beside.GetReflection()->MutableUnknownFields(&beside)->AddVarint(99, 1);
  EXPECT_EQ(UploadTopicOf(beside), UploadTopic::kMixed);
  Upload within;
  within.mutable_hw_info()->add_batteries_info();
  Message& hardware = *within.mutable_hw_info();
  hardware.GetReflection()->MutableUnknownFields(&hardware)->AddVarint(99, 1);
  EXPECT_EQ(UploadTopicOf(within), UploadTopic::kMixed);
}

}  // namespace
}  // namespace zt::telemetry::fleet
