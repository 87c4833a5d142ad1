// The records against what was agreed, both ways: agreed_records.txt.
#include <google/protobuf/descriptor.pb.h>
#include <gtest/gtest.h>

#include "agreed_records.h"
#include "descriptors.h"
#include "record_listing.h"

namespace zt::tests {
namespace {

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;
using google::protobuf::FileDescriptor;

void ExpectTheSame(const std::vector<std::string>& built, const std::vector<std::string>& agreed) {
  ASSERT_FALSE(agreed.empty());
  EXPECT_EQ(Without(agreed, built), "") << "put it back: what was agreed stays";
  EXPECT_EQ(Without(built, agreed), "") << "new: scripts/contract adds it to tests/contracts/agreed_records.txt";
}

struct Contract {
  const char* name;
  const FileDescriptor& (*file)();
};

void PrintTo(const Contract& contract, std::ostream* out) {
  *out << contract.name;
}

class ContractTest : public testing::TestWithParam<Contract> {
 protected:
  std::vector<const Descriptor*> Messages() const { return tests::Messages(GetParam().file()); }
  std::string Agreed() const { return PartOf(kAgreedRecords, std::string(GetParam().file().name())); }
  std::string Built() const { return ListingOf(GetParam().file()); }
};

INSTANTIATE_TEST_SUITE_P(Contracts, ContractTest,
                         testing::Values(Contract{"Upload", UploadFile}, Contract{"Storage", StorageFile}),
                         [](const auto& contract) { return contract.param.name; });

TEST_P(ContractTest, HoldsTheAgreedMessagesAndNoOther) {
  ExpectTheSame(LinesOf(Built(), "message"), LinesOf(Agreed(), "message"));
}

TEST_P(ContractTest, HoldsTheAgreedFieldsWithTheirTypesAndJsonNamesAndNoOther) {
  ExpectTheSame(FieldsOf(Built()), FieldsOf(Agreed()));
}

TEST_P(ContractTest, TellsUnsetFromZeroInEveryFieldThatIsNoList) {
  for (const Descriptor* message : Messages()) {
    for (int i = 0; i < message->field_count(); ++i) {
      const FieldDescriptor& field = *message->field(i);
      if (field.is_repeated()) continue;
      EXPECT_TRUE(field.has_presence()) << field.full_name();
      EXPECT_TRUE(field.has_optional_keyword()) << field.full_name();
    }
  }
}

TEST_P(ContractTest, HasNoFieldsOutsideItsMessages) {
  google::protobuf::FileDescriptorProto file;
  GetParam().file().CopyTo(&file);
  EXPECT_EQ(file.syntax(), "proto3");
  EXPECT_EQ(GetParam().file().extension_count(), 0);
  EXPECT_EQ(GetParam().file().enum_type_count(), 0);
}

TEST(ContractPackageTest, ARecordsPackageIsThatOfItsReaders) {
  for (const FileDescriptor* file : {&UploadFile(), &StorageFile()}) {
    const std::string agreed = PartOf(kAgreedRecords, std::string(file->name()));
    EXPECT_EQ(LinesOf(ListingOf(*file), "file"), LinesOf(agreed, "file")) << file->name();
  }
}

TEST(ContractPresenceTest, AZeroThatWasSetSurvivesTheWayToItsReader) {
  telemetry::contract::upload::log::PcLogPerformanceSamplesAsCDM record;
  record.set_sample_points_actual(0);
  telemetry::contract::upload::log::PcLogPerformanceSamplesAsCDM read;
  ASSERT_TRUE(read.ParseFromString(record.SerializeAsString()));
  EXPECT_TRUE(read.has_sample_points_actual());
  EXPECT_FALSE(read.has_local_time());
}

}  // namespace
}  // namespace zt::tests
