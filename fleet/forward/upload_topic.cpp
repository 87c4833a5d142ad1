#include "fleet/forward/upload_topic.h"

#include <google/protobuf/message.h>

#include <optional>
#include <vector>

#include "performance_samples_upload.pb.h"

namespace zt::telemetry::fleet {
namespace {

using google::protobuf::FieldDescriptor;
using google::protobuf::Message;
using Upload = contract::upload::log::PcLogPerformanceSamplesAsCDM;
using Hardware = Upload::HwInfo;
using System = Upload::OperatingSystemInfo;

UploadTopic TopicOfHardware(int section) {
  switch (section) {
    case Hardware::kBatteriesInfoFieldNumber:
    case Hardware::kDeviceStateFieldNumber:
    case Hardware::kGpusInfoFieldNumber:
    case Hardware::kNpusInfoFieldNumber:
    case Hardware::kStorageDrivesInfoFieldNumber:
    case Hardware::kSystemMemoryInfoFieldNumber:
      return UploadTopic::kLive;
    case Hardware::kCpusInfoFieldNumber:
    case Hardware::kFansInfoFieldNumber:
    case Hardware::kSystemBoardInfoFieldNumber:
      return UploadTopic::kThermal;
    case Hardware::kNetworkInfoFieldNumber:
      return UploadTopic::kNetwork;
    default:
      return UploadTopic::kMixed;
  }
}

UploadTopic TopicOfSystem(int section) {
  switch (section) {
    case System::kOperatingSessionInfoFieldNumber:
    case System::kResourceIntensiveProcessesInfoFieldNumber:
      return UploadTopic::kLive;
    default:
      return UploadTopic::kMixed;
  }
}

// What the sections seen so far agree on.
class Agreement {
 public:
  void Add(const Message& holder, UploadTopic (*topic_of)(int)) {
    const google::protobuf::Reflection& reflection = *holder.GetReflection();
    if (!reflection.GetUnknownFields(holder).empty()) Add(UploadTopic::kMixed);
    std::vector<const FieldDescriptor*> sections;
    reflection.ListFields(holder, &sections);
    for (const FieldDescriptor* const section : sections) Add(topic_of(section->number()));
  }

  void Add(UploadTopic topic) {
    if (!agreed_.has_value()) agreed_ = topic;
    if (agreed_ != topic) agreed_ = UploadTopic::kMixed;
  }

  UploadTopic Topic() const { return agreed_.value_or(UploadTopic::kMixed); }

 private:
  std::optional<UploadTopic> agreed_;
};

}  // namespace

UploadTopic UploadTopicOf(const Upload& record) {
  Agreement agreement;
  if (!record.GetReflection()->GetUnknownFields(record).empty()) agreement.Add(UploadTopic::kMixed);
  agreement.Add(record.hw_info(), TopicOfHardware);
  agreement.Add(record.operating_system_info(), TopicOfSystem);
  return agreement.Topic();
}

}  // namespace zt::telemetry::fleet
