#include "support/collector_fixture.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// A builder that sends a record of its own.
class SendingBuilder : public PerfMessages {
 public:
  using PerfMessages::AddSendWrapper;
  using PerfMessages::cdm_;
  void PopulateStorageAndUploadProtos() override { AddSendWrapper(*cdm_); }
};

class StorageAndUploadTest : public CollectorTest {
 protected:
  StorageAndUploadTest() { UseSerialNumber("ZT12345678"); }

  void UseSerialNumber(std::optional<std::string> serial) {
    simulation::Machine machine;
    machine.clock = ExampleClock();
    machine.smbios_serial_number = std::move(serial);
    simulation::UseMachine(machine);
  }
};

TEST_F(StorageAndUploadTest, StoresThePlatformRecordWithTheOffsetFormOfTheTime) {
  PerfMessages::Init(&collector_, 50);
  PerfMessages::ProcessStorageAndUpload();
  ASSERT_EQ(sink_->stored.size(), 1U);
  EXPECT_EQ(sink_->stored[0].local_time(), "2026-03-07T12:20:42-03:00");
}

TEST_F(StorageAndUploadTest, StampsAndSendsTheUploadRecord) {
  PerfMessages::Init(&collector_, 50);
  PerfMessages::ProcessStorageAndUpload();
  EXPECT_EQ(OnlySent().local_time(), "2026-03-07T12:20:42.000Z");
  EXPECT_EQ(OnlySent().collection_id(), "ZT12345678_2026-03-07T12:20:42");
  EXPECT_EQ(OnlySent().sample_points_actual(), 1U);
}

TEST_F(StorageAndUploadTest, ALongSerialNumberShortensTheTimeInTheId) {
  UseSerialNumber("ZT12345678901234567890");
  PerfMessages::Init(&collector_, 50);
  PerfMessages::ProcessStorageAndUpload();
  EXPECT_EQ(OnlySent().collection_id(), "ZT12345678901234567890_2026-03");
}

TEST_F(StorageAndUploadTest, AShortSerialNumberLeavesTheWholeTimeInTheId) {
  UseSerialNumber("Z");
  PerfMessages::Init(&collector_, 50);
  PerfMessages::ProcessStorageAndUpload();
  EXPECT_EQ(OnlySent().collection_id(), "Z_2026-03-07T12:20:42.000Z");
}

TEST_F(StorageAndUploadTest, TheIdOfAMachineWithoutSerialNumberSaysSo) {
  UseSerialNumber(std::nullopt);
  PerfMessages::Init(&collector_, 50);
  PerfMessages::ProcessStorageAndUpload();
  EXPECT_EQ(OnlySent().collection_id(), "UNKNOWN_SN_2026-03-07T12:20:42");
}

TEST_F(StorageAndUploadTest, TheIdIsNeverCutInsideACharacter) {
  UseSerialNumber("ZT1234567890123456789012345\xC3\xA4\xC3\xB6\xC3\xBC");  // 27 bytes, then three of two bytes each
  PerfMessages::Init(&collector_, 50);
  PerfMessages::ProcessStorageAndUpload();
  EXPECT_EQ(OnlySent().collection_id(), "ZT1234567890123456789012345\xC3\xA4");
}

TEST_F(StorageAndUploadTest, LeavesAnEmptyRecordWithoutSamplePoints) {
  PerfMessages::Init(&collector_, 50);
  const auto sent = PerfMessages::static_cdm_;
  PerfMessages::ProcessStorageAndUpload();
  ASSERT_NE(PerfMessages::static_cdm_, nullptr);
  EXPECT_NE(PerfMessages::static_cdm_, sent);
  EXPECT_EQ(PerfMessages::static_cdm_->ByteSizeLong(), 0U);
}

TEST_F(StorageAndUploadTest, ASecondPassSendsAnEmptyRecordWithAStamp) {
  PerfMessages::Init(&collector_, 50);
  PerfMessages::ProcessStorageAndUpload();
  PerfMessages::ProcessStorageAndUpload();
  ASSERT_EQ(sink_->sent.size(), 2U);
  EXPECT_FALSE(sink_->sent[1].has_sample_points_actual());
  EXPECT_FALSE(sink_->sent[1].has_hw_info());
  EXPECT_EQ(sink_->sent[1].collection_id(), "ZT12345678_2026-03-07T12:20:42");
}

TEST_F(StorageAndUploadTest, NeitherStoresNorResetsTheOtherStorageRecords) {
  PerfMessages::Init(&collector_, 50);
  PerfMessages::thermal_->set_battery_temperature(31);
  const auto thermal = PerfMessages::thermal_;
  const auto energy = PerfMessages::energy_;
  const auto amd_pmf = PerfMessages::amd_pmf_;
  PerfMessages::ProcessStorageAndUpload();
  EXPECT_EQ(sink_->stored.size(), 1U);
  EXPECT_EQ(PerfMessages::thermal_, thermal);
  EXPECT_EQ(PerfMessages::thermal_->battery_temperature(), 31);
  EXPECT_EQ(PerfMessages::energy_, energy);
  EXPECT_EQ(PerfMessages::amd_pmf_, amd_pmf);
}

TEST_F(StorageAndUploadTest, AFailedStoreIsLoggedByItsDescriptionAndTheUploadStillHappens) {
  sink_->store_outcome = {5, 13, "the store is full", "Store", ""};
  PerfMessages::Init(&collector_, 50);
  PerfMessages::ProcessStorageAndUpload();
  EXPECT_THAT(log_.Messages(plog::error), ElementsAre("the store is full"));
  EXPECT_EQ(log_.lines[0].function,
            "zt::telemetry::collector::performancesamples::PerfMessages::ProcessStorageAndUpload");
  EXPECT_EQ(sink_->sent.size(), 1U);
  EXPECT_EQ(PerfMessages::static_cdm_->ByteSizeLong(), 0U);
}

TEST_F(StorageAndUploadTest, AStoreFailsByItsCodeAlone) {
  sink_->store_outcome = {0, 13, "only a code", "", ""};
  PerfMessages::Init(&collector_, 50);
  PerfMessages::ProcessStorageAndUpload();
  EXPECT_THAT(log_.Messages(plog::error), ElementsAre("only a code"));
}

TEST_F(StorageAndUploadTest, AStoreFailsByItsKindAlone) {
  sink_->store_outcome = {5, 0, "only a kind", "", ""};
  PerfMessages::Init(&collector_, 50);
  PerfMessages::ProcessStorageAndUpload();
  EXPECT_THAT(log_.Messages(plog::error), ElementsAre("only a kind"));
}

TEST_F(StorageAndUploadTest, AFailedSendIsNotLoggedAndLosesTheRecord) {
  sink_->send_outcome = {5, 1, "no upload today", "", ""};
  PerfMessages::Init(&collector_, 50);
  PerfMessages::ProcessStorageAndUpload();
  EXPECT_THAT(log_.lines, IsEmpty());
  EXPECT_EQ(PerfMessages::static_cdm_->ByteSizeLong(), 0U);
}

TEST_F(StorageAndUploadTest, WithoutASinkTheStoreFailsAndTheRecordIsReset) {
  common::RegisterTelemetrySink(nullptr);
  PerfMessages::Init(&collector_, 50);
  PerfMessages::ProcessStorageAndUpload();
  EXPECT_THAT(log_.Messages(plog::error), ElementsAre("No telemetry sink is registered"));
  EXPECT_EQ(PerfMessages::static_cdm_->ByteSizeLong(), 0U);
}

TEST_F(StorageAndUploadTest, WithoutAPlatformRecordNothingIsStoredAndTheUploadStillHappens) {
  PerfMessages::Init(&collector_, 50);
  PerfMessages::amd_pmf_.reset();
  PerfMessages::ProcessStorageAndUpload();
  EXPECT_THAT(sink_->stored, IsEmpty());
  EXPECT_EQ(sink_->sent.size(), 1U);
}

TEST_F(StorageAndUploadTest, WithoutAnUploadRecordNothingIsSentAndAnEmptyOneIsMade) {
  PerfMessages::Init(&collector_, 50);
  PerfMessages::static_cdm_.reset();
  PerfMessages::ProcessStorageAndUpload();
  EXPECT_THAT(sink_->sent, IsEmpty());
  ASSERT_NE(PerfMessages::static_cdm_, nullptr);
}

TEST_F(StorageAndUploadTest, ANullHandleIsLoggedAndLeavesEverythingAsItIs) {
  PerfMessages::Init(nullptr, 50);
  const auto record = PerfMessages::static_cdm_;
  PerfMessages::ProcessStorageAndUpload();
  EXPECT_THAT(log_.Messages(plog::error), ElementsAre("PerfMessages::ProcessStorageAndUpload - perf_handle_ is null."));
  EXPECT_THAT(sink_->stored, IsEmpty());
  EXPECT_THAT(sink_->sent, IsEmpty());
  EXPECT_EQ(PerfMessages::static_cdm_, record);
  EXPECT_EQ(record->sample_points_actual(), 1U);
}

TEST_F(StorageAndUploadTest, ABuilderSendsItsOwnRecordWithAStamp) {
  PerfMessages::Init(&collector_, 50);
  SendingBuilder builder;
  builder.PopulateStorageAndUploadProtos();
  EXPECT_EQ(OnlySent().collection_id(), "ZT12345678_2026-03-07T12:20:42");
  EXPECT_EQ(OnlySent().local_time(), "2026-03-07T12:20:42.000Z");
}

TEST_F(StorageAndUploadTest, ABuilderStampsItsOwnRecordWhateverItSends) {
  PerfMessages::Init(&collector_, 50);
  SendingBuilder builder;
  PcLogPerformanceSamplesAsCDM other;
  other.set_collection_id("other");
  builder.AddSendWrapper(other);
  EXPECT_EQ(OnlySent().collection_id(), "other");
  EXPECT_EQ(builder.cdm_->collection_id(), "ZT12345678_2026-03-07T12:20:42");
}

TEST_F(StorageAndUploadTest, ABuilderTakesAGivenTimeAsItIs) {
  PerfMessages::Init(&collector_, 50);
  SendingBuilder builder;
  builder.AddSendWrapper(*builder.cdm_, "yesterday");
  EXPECT_EQ(OnlySent().collection_id(), "ZT12345678_yesterday");
  EXPECT_EQ(OnlySent().local_time(), "yesterday");
}

TEST_F(StorageAndUploadTest, ABuilderWithoutACollectorDoesNothing) {
  SendingBuilder builder;
  builder.PopulateStorageAndUploadProtos();
  builder.AddSendWrapper(*builder.cdm_, "yesterday");
  EXPECT_THAT(sink_->sent, IsEmpty());
  EXPECT_THAT(log_.lines, IsEmpty());
  EXPECT_EQ(builder.cdm_->ByteSizeLong(), 0U);
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
