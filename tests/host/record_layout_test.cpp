#include "host/views/record_layout.h"

#include <gmock/gmock.h>

#include <set>

#include "device_performance_storage.pb.h"
#include "performance_samples_upload.pb.h"

namespace zt::telemetry::host {
namespace {

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;

const RecordLayout& LayoutOf(const Descriptor& descriptor) {
  const RecordLayout* const layout = FindRecordLayout(descriptor.full_name());
  if (layout == nullptr) throw std::logic_error("no layout for " + std::string(descriptor.full_name()));
  return *layout;
}

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
  std::set<std::string> paths = {std::string(layout.id_path), std::string(layout.time_path),
                                 std::string(layout.samples_path)};
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
    for (const Section& section : LayoutOf(*record).sections) {
      std::set<std::string_view> labels;
      for (const Figure& figure : section.figures) labels.insert(figure.label);
      EXPECT_EQ(labels.size(), section.figures.size()) << section.title;
    }
  }
}

TEST(RecordLayoutTest, ARecordThatIsNotKnownHasNoLayout) {
  EXPECT_EQ(FindRecordLayout("some.Record"), nullptr);
}

}  // namespace
}  // namespace zt::telemetry::host
