#include "host/consent/record_filter.h"

#include <gmock/gmock.h>
#include <google/protobuf/descriptor.pb.h>
#include <google/protobuf/dynamic_message.h>
#include <google/protobuf/wrappers.pb.h>

#include <algorithm>
#include <memory>
#include <set>

#include "contract_annotations.pb.h"
#include "device_performance_storage.pb.h"
#include "host/consent/record_places.h"
#include "performance_samples_upload.pb.h"

namespace zt::telemetry::host {
namespace {

using contract::storage::device_performance::AmdPmfSamples;
using contract::storage::device_performance::EnergyEMISamples;
using contract::storage::device_performance::ThermalZTBiosSamples;
using contract::upload::log::PcLogPerformanceSamplesAsCDM;
using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;
using testing::Contains;
using testing::IsEmpty;

const std::vector<const Descriptor*>& Records() {
  static const std::vector<const Descriptor*> records = {
      PcLogPerformanceSamplesAsCDM::descriptor(), AmdPmfSamples::descriptor(), ThermalZTBiosSamples::descriptor(),
      EnergyEMISamples::descriptor()};
  return records;
}

// "record: path" of every field that is no message.
void AddFields(const Descriptor& message, const std::string& prefix, bool texts_alone, std::set<std::string>& fields) {
  for (int i = 0; i < message.field_count(); ++i) {
    const FieldDescriptor& field = *message.field(i);
    const std::string path = prefix + field.name();
    if (field.message_type() != nullptr) {
      AddFields(*field.message_type(), path + ".", texts_alone, fields);
    } else if (!texts_alone || field.type() == FieldDescriptor::TYPE_STRING) {
      fields.insert(path);
    }
  }
}

std::set<std::string> AllFields(bool texts_alone) {
  std::set<std::string> fields;
  for (const Descriptor* const record : Records()) {
    AddFields(*record, std::string(record->full_name()) + ": ", texts_alone, fields);
  }
  return fields;
}

std::string Name(const FieldPlace& place) {
  return std::string(place.record) + ": " + std::string(place.path);
}

Consent Dropping() {
  Consent consent;
  consent.identities.fill(Treatment::kDrop);
  return consent;
}

Consent Without(RecordSection section) {
  Consent consent;
  consent.sections.at(static_cast<std::size_t>(section)) = false;
  return consent;
}

TEST(RecordPlacesTest, EveryPlaceOfASectionIsInTheContract) {
  std::set<std::string> homeless = AllFields(false);
  for (const SectionPlace& section : SectionPlaces()) {
    const std::size_t erased =
        std::erase_if(homeless, [&](const std::string& field) { return field.starts_with(Name(section.place)); });
    EXPECT_GT(erased, 0U) << Name(section.place) << " is no field, or stands twice";
  }
}

// Who adds a text to a section says here whether it can tell one machine or person from another.
TEST(RecordPlacesTest, EveryTextOfTheContractIsAnIdentityOrOneOfManyMachines) {
  const std::string upload = "zt.telemetry.contract.upload.log.PcLogPerformanceSamplesAsCDM: ";
  std::set<std::string> texts = AllFields(true);
  // What is of no section is not told where anything is held back.
  std::erase_if(texts, [](const std::string& text) {
    return text.find("_info.") != std::string::npos &&
           std::ranges::none_of(SectionPlaces(), [&](const SectionPlace& section) {
             return text.starts_with(Name(section.place) + ".");
           });
  });
  for (const IdentityPlace& identity : IdentityPlaces()) {
    EXPECT_EQ(texts.erase(Name(identity.place)), 1U) << Name(identity.place);
  }
  const std::set<std::string> of_many_machines = {
      upload + "collection_id",  // apart from the serial number in it
      upload + "local_time",
      upload + "hw_info.batteries_info.battery_status",
      upload + "hw_info.batteries_info.charge_state",
      upload + "hw_info.cpus_info.temperature_sensors_info.sensor_name",
      upload + "hw_info.device_state.device_mode",
      upload + "hw_info.fans_info.fan_statistics_info.fan_stat_name",
      upload + "hw_info.gpus_info.bus_id",
      upload + "hw_info.gpus_info.performance_capped_reason",
      upload + "hw_info.network_info.interfaces_info.is_managed_network",
      upload + "hw_info.network_info.interfaces_info.network_adapter_type",
      upload + "hw_info.network_info.interfaces_info.network_trust_level",
      upload + "hw_info.network_info.interfaces_info.radio_type",
      upload + "hw_info.network_info.interfaces_info.w_lan_profiles.w_lan_profile_authentication",
      upload + "hw_info.network_info.interfaces_info.w_lan_profiles.w_lan_profile_encryption",
      upload + "hw_info.npus_info.temperature_sensors_info.sensor_name",
      upload + "hw_info.system_board_info.temperature_sensors_info.sensor_name",
      upload + "operating_system_info.resource_intensive_processes_info.status",
      "zt.telemetry.contract.storage.device_performance.AmdPmfSamples: device_mode",
      "zt.telemetry.contract.storage.device_performance.AmdPmfSamples: local_time"};
  EXPECT_EQ(texts, of_many_machines);
}

TEST(RecordFilterTest, AWholeConsentLeavesARecordAsItIs) {
  PcLogPerformanceSamplesAsCDM record;
  record.set_collection_id("SN42_2026-03-07T11:20:42.000Z");
  record.mutable_hw_info()->add_batteries_info()->set_battery_serial_number("00042");
  const std::string before = record.SerializeAsString();
  EXPECT_TRUE(ApplyConsent(Consent(), record));
  EXPECT_EQ(record.SerializeAsString(), before);
}

TEST(RecordFilterTest, ASectionThatIsOffIsNotInTheRecordAndTheOthersStay) {
  PcLogPerformanceSamplesAsCDM record;
  record.mutable_hw_info()->add_batteries_info()->set_voltage(12'000);
  record.mutable_hw_info()->mutable_device_state()->set_device_mode("positionTablet");
  EXPECT_TRUE(ApplyConsent(Without(RecordSection::kBatteries), record));
  EXPECT_THAT(record.hw_info().batteries_info(), IsEmpty());
  EXPECT_EQ(record.hw_info().device_state().device_mode(), "positionTablet");
}

TEST(RecordFilterTest, APartThatHeldNothingElseIsGoneToo) {
  PcLogPerformanceSamplesAsCDM record;
  record.mutable_hw_info()->add_batteries_info();
  record.mutable_operating_system_info()->mutable_operating_session_info()->set_max_user_input_delay_ms(10);
  EXPECT_TRUE(ApplyConsent(Without(RecordSection::kBatteries), record));
  EXPECT_FALSE(record.has_hw_info());
}

TEST(RecordFilterTest, NothingIsToldOfARecordOfWhichOnlyTheHeadingIsLeft) {
  PcLogPerformanceSamplesAsCDM record;
  record.set_collection_id("2026-03-07T12H_SN42-NE");
  record.set_sample_points_actual(60);
  record.mutable_hw_info()->mutable_network_info()->set_has_network_access(true);
  EXPECT_FALSE(ApplyConsent(Without(RecordSection::kNetwork), record));
}

TEST(RecordFilterTest, ARecordThatHeldNothingBeforeIsTold) {
  PcLogPerformanceSamplesAsCDM record;
  record.set_sample_points_actual(1);
  EXPECT_TRUE(ApplyConsent(Without(RecordSection::kNetwork), record));
}

TEST(RecordFilterTest, TheStoredRecordLosesTheFiguresOfItsSections) {
  AmdPmfSamples record;
  record.set_local_time("2026-03-07T11:20:42-03:00");
  record.set_battery_charge_rate_mw(7);
  record.set_memory_clock_mhz(4800);
  EXPECT_TRUE(ApplyConsent(Without(RecordSection::kBatteries), record));
  EXPECT_FALSE(record.has_battery_charge_rate_mw());
  EXPECT_EQ(record.memory_clock_mhz(), 4800U);
  EXPECT_FALSE(ApplyConsent(Without(RecordSection::kMemory), record));
}

TEST(RecordFilterTest, DroppedIdentitiesAreUnset) {
  PcLogPerformanceSamplesAsCDM record;
  for (const char* name : {"one", "two"}) {
    record.mutable_operating_system_info()->add_resource_intensive_processes_info()->set_executable_file_id(name);
  }
  EXPECT_TRUE(ApplyConsent(Dropping(), record));
  for (const auto& process : record.operating_system_info().resource_intensive_processes_info()) {
    EXPECT_FALSE(process.has_executable_file_id());
  }
}

TEST(RecordFilterTest, HashedIdentitiesAreHashesAndEmptyOnesStayEmpty) {
  Consent consent;
  consent.identities.fill(Treatment::kHash);
  consent.key = NewKey();
  PcLogPerformanceSamplesAsCDM record;
  record.mutable_hw_info()->add_npus_info()->set_device_id("PCI\\VEN_8086");
  record.mutable_hw_info()->add_npus_info()->set_device_id("");
  EXPECT_TRUE(ApplyConsent(consent, record));
  EXPECT_EQ(record.hw_info().npus_info(0).device_id(), KeyedHash(*consent.key, "PCI\\VEN_8086"));
  EXPECT_EQ(record.hw_info().npus_info(1).device_id(), "");
}

TEST(RecordFilterTest, TheSerialNumberInTheIdentityIsTreatedAsSerialNumbersAre) {
  Consent consent = Dropping();
  PcLogPerformanceSamplesAsCDM record;
  record.set_collection_id("SN42_2026-03-07T11:20:42.000Z");
  record.set_local_time("2026-03-07T11:20:42.000Z");
  PcLogPerformanceSamplesAsCDM hashed = record;
  ApplyConsent(consent, record);
  EXPECT_EQ(record.collection_id(), "_2026-03-07T11:20:42.000Z");
  consent.identities.fill(Treatment::kHash);
  consent.key = NewKey();
  ApplyConsent(consent, hashed);
  EXPECT_EQ(hashed.collection_id(), KeyedHash(*consent.key, "SN42").substr(0, 10) + "_2026-03-07T11:20:42");
}

// The contract with one more part of the upload record, as another version of the collector may have it.
const Descriptor& UploadWithAStranger(google::protobuf::DescriptorPool& pool) {
  const auto& file = *PcLogPerformanceSamplesAsCDM::descriptor()->file();
  for (const auto* const needed : {google::protobuf::DescriptorProto::descriptor()->file(), file.dependency(0)}) {
    google::protobuf::FileDescriptorProto proto;
    needed->CopyTo(&proto);
    pool.BuildFile(proto);
  }
  google::protobuf::FileDescriptorProto proto;
  file.CopyTo(&proto);
  auto& hardware = *proto.mutable_message_type(0)->mutable_nested_type(0);
  auto& field = *hardware.add_field();
  field.set_name("stranger");
  field.set_number(4711);
  field.set_type(google::protobuf::FieldDescriptorProto::TYPE_STRING);
  field.set_label(google::protobuf::FieldDescriptorProto::LABEL_OPTIONAL);
  return *pool.BuildFile(proto)->message_type(0);
}

TEST(RecordFilterTest, APartThatBelongsToNoSectionIsHeldBackWhereAnythingIs) {
  google::protobuf::DescriptorPool pool;
  const Descriptor& type = UploadWithAStranger(pool);
  google::protobuf::DynamicMessageFactory factory(&pool);
  const std::unique_ptr<google::protobuf::Message> record(factory.GetPrototype(&type)->New());
  PcLogPerformanceSamplesAsCDM known;
  known.mutable_hw_info()->mutable_device_state()->set_device_mode("positionTablet");
  ASSERT_TRUE(record->ParseFromString(known.SerializeAsString()));
  auto& hardware = *record->GetReflection()->MutableMessage(record.get(), type.FindFieldByName("hw_info"));
  hardware.GetReflection()->SetString(&hardware, hardware.GetDescriptor()->FindFieldByName("stranger"), "who");

  EXPECT_TRUE(ApplyConsent(Consent(), *record));
  EXPECT_THAT(record->SerializeAsString(), testing::HasSubstr("who"));
  EXPECT_TRUE(ApplyConsent(Without(RecordSection::kFans), *record));
  EXPECT_EQ(record->SerializeAsString(), known.SerializeAsString());
}

TEST(RecordFilterTest, FieldsThatNobodyKnowsAreNotLetThrough) {
  PcLogPerformanceSamplesAsCDM record;
  record.mutable_hw_info()
      ->GetReflection()
      ->MutableUnknownFields(record.mutable_hw_info())
      ->AddLengthDelimited(4711, "who");
  EXPECT_TRUE(ApplyConsent(Dropping(), record));
  EXPECT_THAT(record.SerializeAsString(), testing::Not(testing::HasSubstr("who")));
}

TEST(RecordFilterTest, ARecordOfAnotherTypeIsNotLetThroughWhereAnythingIsHeldBack) {
  google::protobuf::StringValue record;
  record.set_value("who");
  EXPECT_TRUE(ApplyConsent(Consent(), record));
  EXPECT_FALSE(ApplyConsent(Dropping(), record));
}

}  // namespace
}  // namespace zt::telemetry::host
