// The records against the list of what was agreed, both ways.
#include <gmock/gmock.h>
#include <google/protobuf/descriptor.pb.h>
#include <gtest/gtest.h>

#include "contracts/agreed_fields.h"
#include "contracts/descriptors.h"

namespace zt::tests {
namespace {

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;
using google::protobuf::FileDescriptor;

struct Contract {
  const char* name;
  const FileDescriptor& (*file)();
  const std::vector<AgreedMessage>& (*messages)();
};

void PrintTo(const Contract& contract, std::ostream* out) {
  *out << contract.name;
}

class ContractTest : public testing::TestWithParam<Contract> {
 protected:
  std::vector<const Descriptor*> Messages() const { return tests::Messages(GetParam().file()); }
};

INSTANTIATE_TEST_SUITE_P(Contracts, ContractTest,
                         testing::Values(Contract{"Upload", UploadFile, UploadMessages},
                                         Contract{"Storage", StorageFile, StorageMessages}),
                         [](const auto& contract) { return contract.param.name; });

TEST_P(ContractTest, HoldsTheAgreedMessagesAndNoOther) {
  std::vector<std::string> agreed;
  for (const AgreedMessage& message : GetParam().messages()) agreed.push_back(message.name);
  std::vector<std::string> found;
  for (const Descriptor* message : Messages()) found.push_back(NameInPackage(*message));
  EXPECT_THAT(found, testing::UnorderedElementsAreArray(agreed));
}

TEST_P(ContractTest, HoldsTheAgreedFieldsWithTheirTypesAndJsonNamesAndNoOther) {
  const auto line = [](const std::string& message, const AgreedField& field) {
    return message + "." + field.name + ": " + (field.repeated ? "list of " : "") + field.type + ", \"" +
           field.json_name + "\"";
  };
  std::vector<std::string> agreed;
  for (const AgreedMessage& message : GetParam().messages()) {
    for (const AgreedField& field : message.fields) agreed.push_back(line(message.name, field));
  }
  std::vector<std::string> found;
  for (const Descriptor* message : Messages()) {
    for (int i = 0; i < message->field_count(); ++i) {
      const FieldDescriptor& field = *message->field(i);
      found.push_back(line(NameInPackage(*message), {std::string(field.name()), TypeName(field),
                                                     std::string(field.json_name()), field.is_repeated()}));
    }
  }
  EXPECT_THAT(found, testing::UnorderedElementsAreArray(agreed));
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
  EXPECT_EQ(UploadFile().package(), "zt.telemetry.contract.upload.log");
  EXPECT_EQ(StorageFile().package(), "zt.telemetry.contract.storage.device_performance");
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
