#include "host/views/record_layout.h"

#include <gmock/gmock.h>
#include <google/protobuf/descriptor.pb.h>
#include <google/protobuf/wrappers.pb.h>

#include <set>

#include "contract_annotations.pb.h"
#include "device_performance_storage.pb.h"
#include "performance_samples_upload.pb.h"

namespace zt::telemetry::host {
namespace {

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;

const std::vector<const Descriptor*>& Records() {
  using contract::storage::device_performance::AmdPmfSamples;
  using contract::storage::device_performance::ThermalZTBiosSamples;
  using contract::upload::log::PcLogPerformanceSamplesAsCDM;
  static const std::vector<const Descriptor*> records = {
      PcLogPerformanceSamplesAsCDM::descriptor(), AmdPmfSamples::descriptor(), ThermalZTBiosSamples::descriptor()};
  return records;
}

std::string Joined(std::string_view path, std::string_view rest) {
  return path.empty() ? std::string(rest) : std::string(path) + "." + std::string(rest);
}

// Every path at which the layout shows something.
std::set<std::string> ShownPaths(const RecordLayout& layout) {
  std::set<std::string> paths = {layout.id_path, layout.time_path, layout.samples_path};
  paths.erase("");
  for (const Section& section : layout.sections) {
    for (const Figure& figure : section.figures) paths.insert(Joined(section.path, figure.path));
  }
  return paths;
}

// Every field that holds no message, and every list of messages that the layout shows as one figure.
void AddLeaves(const Descriptor& descriptor, const std::string& prefix, const std::set<std::string>& shown,
               std::set<std::string>& leaves) {
  for (int i = 0; i < descriptor.field_count(); ++i) {
    const FieldDescriptor& field = *descriptor.field(i);
    const std::string path = Joined(prefix, field.name());
    if (field.message_type() == nullptr || (field.is_repeated() && shown.contains(path))) {
      leaves.insert(path);
    } else {
      AddLeaves(*field.message_type(), path, shown, leaves);
    }
  }
}

TEST(RecordLayoutTest, EveryFieldOfTheContractHasAPlaceAndEveryPlaceAField) {
  for (const Descriptor* record : Records()) {
    const std::set<std::string> shown = ShownPaths(LayoutOf(*record));
    std::set<std::string> fields;
    AddLeaves(*record, "", shown, fields);
    EXPECT_EQ(shown, fields) << record->full_name();
  }
}

TEST(RecordLayoutTest, LabelsWithinASectionAreDistinct) {
  for (const Descriptor* record : Records()) {
    const RecordLayout layout = LayoutOf(*record);
    for (const Section& section : layout.sections) {
      std::set<std::string_view> labels;
      for (const Figure& figure : section.figures) labels.insert(figure.label);
      EXPECT_EQ(labels.size(), section.figures.size()) << section.title;
    }
  }
}

TEST(RecordLayoutTest, ARecordThatIsNotKnownHasNoLayout) {
  const RecordLayout layout = LayoutOf(*google::protobuf::StringValue::descriptor());
  EXPECT_EQ(ShownPaths(layout), std::set<std::string>());
  EXPECT_THAT(layout.sections, testing::IsEmpty());
}

// Every message type in `descriptor`, itself included.
void AddTypes(const Descriptor& descriptor, std::set<const Descriptor*>& types) {
  if (!types.insert(&descriptor).second) return;
  for (int i = 0; i < descriptor.field_count(); ++i) {
    if (descriptor.field(i)->message_type() != nullptr) AddTypes(*descriptor.field(i)->message_type(), types);
  }
}

std::set<const Descriptor*> TypesOfTheContract() {
  std::set<const Descriptor*> types;
  for (const Descriptor* record : Records()) AddTypes(*record, types);
  return types;
}

TEST(RecordLayoutTest, NoTwoFieldsOfAMessageShareAPlace) {
  for (const Descriptor* message : TypesOfTheContract()) {
    std::set<std::uint32_t> places;
    for (int i = 0; i < message->field_count(); ++i) {
      const std::uint32_t place = message->field(i)->options().GetExtension(contract::shown).place();
      EXPECT_TRUE(place == 0 || places.insert(place).second) << message->field(i)->full_name();
    }
  }
}

TEST(RecordLayoutTest, NoTwoSectionsOfARecordShareAPlace) {
  for (const Descriptor* record : Records()) {
    std::set<const Descriptor*> types;
    AddTypes(*record, types);
    std::set<std::uint32_t> places;
    for (const Descriptor* message : types) {
      const std::uint32_t place = message->options().GetExtension(contract::section).place();
      EXPECT_TRUE(place == 0 || places.insert(place).second) << message->full_name();
    }
  }
}

TEST(RecordLayoutTest, AFigureHasTheLabelFormAndUnitOfItsField) {
  const RecordLayout layout = LayoutOf(*contract::upload::log::PcLogPerformanceSamplesAsCDM::descriptor());
  const auto figure = [&layout](std::string_view title, std::string_view path) {
    for (const Section& section : layout.sections) {
      for (const Figure& candidate : section.figures) {
        if (section.title == title && candidate.path == path) return candidate;
      }
    }
    return Figure{"none", ""};
  };
  const auto is = [](std::string_view label, Form form, std::string_view unit) {
    return testing::AllOf(testing::Field(&Figure::label, label), testing::Field(&Figure::form, form),
                          testing::Field(&Figure::unit, unit));
  };
  EXPECT_THAT(figure("Batteries", "voltage"), is("voltage", Form::kNumber, " mV"));
  EXPECT_THAT(figure("Batteries", "charge_state"), is("state", Form::kText, ""));
  EXPECT_THAT(figure("Batteries", "battery_status"), is("status", Form::kList, ""));
  EXPECT_THAT(figure("Memory", "used_virtual_memory_kb"), is("virtual memory in use", Form::kKibibytes, " KiB"));
  EXPECT_THAT(figure("Network", "is_vpn_connected"), is("VPN", Form::kYesNo, ""));
  EXPECT_THAT(figure("Network", "tcp_i_p_v6_stats_info.failed_connections"),
              is("IPv6 connections failed", Form::kNumber, ""));
  EXPECT_THAT(figure("Network interfaces", "signal_strength"), is("signal", Form::kSigned, " dBm"));
  EXPECT_THAT(figure("Network interfaces", "bytes_sent"), is("sent", Form::kBytes, " B"));
  EXPECT_THAT(figure("Session", "time_since_last_boot_minutes"), is("since the last start", Form::kMinutes, " min"));
  EXPECT_THAT(figure("Processes", "resource_utilization_info.io_reads_kb"), is("reads/1024", Form::kOmitted, ""));
}

TEST(RecordLayoutTest, AMessageThatHoldsItselfIsReadOnce) {
  google::protobuf::FileDescriptorProto file;
  file.set_name("chain.proto");
  file.set_syntax("proto3");
  auto& link = *file.add_message_type();
  link.set_name("Link");
  auto& next = *link.add_field();
  next.set_name("next");
  next.set_number(1);
  next.set_label(google::protobuf::FieldDescriptorProto::LABEL_OPTIONAL);
  next.set_type(google::protobuf::FieldDescriptorProto::TYPE_MESSAGE);
  next.set_type_name(".Link");
  google::protobuf::DescriptorPool pool;
  const auto* const built = pool.BuildFile(file);
  ASSERT_NE(built, nullptr);
  EXPECT_THAT(LayoutOf(*built->message_type(0)).sections, testing::IsEmpty());
}

}  // namespace
}  // namespace zt::telemetry::host
