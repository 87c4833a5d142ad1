#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "samplers/cpu_info_msg.h"
#include "samplers/fans_info_msg.h"
#include "samplers/gpu/gpu_info_msg.h"
#include "samplers/system_board_info_msg.h"
#include "support/collector_fixture.h"
#include "support/wmi_namespace.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

// A builder that shows what its base keeps.
class PlainBuilder : public PerfMessages {
 public:
  using PerfMessages::cdm_;
  using PerfMessages::GetThermalDataFromPrivateBiosWmi;
  using PerfMessages::PerfMessages;
  using PerfMessages::private_bios_wmi_;
  using PerfMessages::wmi_client_;
  void PopulateStorageAndUploadProtos() override {}
};

// Any builder that shows what its base keeps.
template <typename Builder>
class Opened : public Builder {
 public:
  using Builder::Builder;
  using Builder::cdm_;
  using Builder::wmi_client_;
};

TEST(BuilderBaseTest, KeepsTheClientsItIsGiven) {
  shared::wmi::WMIClient wmi(tests::kWmiNamespace);
  shared::ztbios::PrivateBiosWmi bios;
  EXPECT_EQ(PlainBuilder().wmi_client_, nullptr);
  EXPECT_EQ(PlainBuilder().private_bios_wmi_, nullptr);
  EXPECT_EQ(PlainBuilder(&wmi).wmi_client_, &wmi);
  EXPECT_EQ(PlainBuilder(&wmi).private_bios_wmi_, nullptr);
  EXPECT_EQ(PlainBuilder(&bios).wmi_client_, nullptr);
  EXPECT_EQ(PlainBuilder(&bios).private_bios_wmi_, &bios);
  EXPECT_EQ(PlainBuilder(&wmi, &bios).wmi_client_, &wmi);
  EXPECT_EQ(PlainBuilder(&wmi, &bios).private_bios_wmi_, &bios);
}

TEST(BuilderBaseTest, StartsWithAnEmptyRecordOfItsOwn) {
  const PlainBuilder one;
  const PlainBuilder other;
  ASSERT_NE(one.cdm_, nullptr);
  EXPECT_EQ(one.cdm_->ByteSizeLong(), 0U);
  EXPECT_NE(one.cdm_, other.cdm_);
}

TEST(BuilderBaseTest, CopiesShareTheRecordAndTheClients) {
  shared::ztbios::PrivateBiosWmi bios;
  const PlainBuilder original(&bios);
  const PlainBuilder copy(original);
  PlainBuilder assigned;
  assigned = original;
  EXPECT_EQ(copy.cdm_, original.cdm_);
  EXPECT_EQ(assigned.cdm_, original.cdm_);
  EXPECT_EQ(copy.private_bios_wmi_, &bios);
  EXPECT_EQ(assigned.private_bios_wmi_, &bios);
}

TEST(BuilderBaseTest, KeepsItsRecordThenItsClients) {
  const PlainBuilder builder;
  const auto address = [](const auto& member) { return reinterpret_cast<std::uintptr_t>(&member); };
  EXPECT_LT(address(builder.cdm_), address(builder.wmi_client_));
  EXPECT_LT(address(builder.wmi_client_), address(builder.private_bios_wmi_));
}

// The table of virtual operations as hosts know it, written down apart from the class that makes it.
class BuilderTable {
 public:
  virtual ~BuilderTable() = default;
  virtual void PopulateStorageAndUploadProtos() = 0;
};

class NotingBuilder : public PerfMessages {
 public:
  explicit NotingBuilder(std::vector<std::string>& notes) : notes_(notes) {}
  ~NotingBuilder() override { notes_.push_back("destructor"); }
  void PopulateStorageAndUploadProtos() override { notes_.push_back("PopulateStorageAndUploadProtos"); }

 private:
  std::vector<std::string>& notes_;
};

TEST(BuilderBaseTest, ItsTableHasTheDestructorThenThePass) {
  std::vector<std::string> notes;
  auto* const table = reinterpret_cast<BuilderTable*>(static_cast<PerfMessages*>(new NotingBuilder(notes)));
  table->PopulateStorageAndUploadProtos();
  delete table;
  EXPECT_THAT(notes, testing::ElementsAre("PopulateStorageAndUploadProtos", "destructor"));
}

TEST(BuilderBaseTest, TheBuildersOfHourlySectionsAddNothingToALiveRecord) {
  PerfMessages::Init(nullptr, 50);
  const std::string before = PerfMessages::static_cdm_->SerializeAsString();
  CPUInfoMsg().PopulateStorageAndUploadProtos();
  FansInfoMsg().PopulateStorageAndUploadProtos();
  SystemBoardInfoMsg().PopulateStorageAndUploadProtos();
  EXPECT_EQ(PerfMessages::static_cdm_->SerializeAsString(), before);
}

TEST(BuilderBaseTest, TheBuildersOfEachSectionCanBeMadeFromAnother) {
  shared::wmi::WMIClient wmi(tests::kWmiNamespace);
  const PlainBuilder original(&wmi);
  const auto expect_shared = [&](const auto& copy) {
    EXPECT_EQ(copy.cdm_, original.cdm_);
    EXPECT_EQ(copy.wmi_client_, &wmi);
  };
  expect_shared(Opened<CPUInfoMsg>(original));
  expect_shared(Opened<FansInfoMsg>(original));
  expect_shared(Opened<SystemBoardInfoMsg>(original));
  expect_shared(Opened<GPUInfoMsg>(original));
}

TEST(InitTest, CreatesTheSharedRecordsAndKeepsHandleAndEventType) {
  int handle = 0;
  PerfMessages::Init(&handle, 50);
  EXPECT_EQ(PerfMessages::perf_handle_, &handle);
  EXPECT_EQ(PerfMessages::event_type_, 50);
  ASSERT_NE(PerfMessages::static_cdm_, nullptr);
  EXPECT_EQ(PerfMessages::static_cdm_->sample_points_actual(), 1U);
  ASSERT_NE(PerfMessages::thermal_, nullptr);
  ASSERT_NE(PerfMessages::energy_, nullptr);
  ASSERT_NE(PerfMessages::amd_pmf_, nullptr);
  EXPECT_EQ(PerfMessages::thermal_->ByteSizeLong() + PerfMessages::energy_->ByteSizeLong(), 0U);
  EXPECT_EQ(PerfMessages::amd_pmf_->ByteSizeLong(), 0U);
}

TEST(InitTest, ASecondCallWithAnotherHandleAndEventTypeChangesNothing) {
  int first = 0;
  int second = 0;
  PerfMessages::Init(&first, 50);
  const auto record = PerfMessages::static_cdm_;
  const auto thermal = PerfMessages::thermal_;
  PerfMessages::Init(&second, 20);
  EXPECT_EQ(PerfMessages::perf_handle_, &first);
  EXPECT_EQ(PerfMessages::event_type_, 50);
  EXPECT_EQ(PerfMessages::static_cdm_, record);
  EXPECT_EQ(PerfMessages::thermal_, thermal);
}

TEST(InitTest, TakesTheNextHandleOnceTheFirstCollectorIsGone) {
  int first = 0;
  int second = 0;
  PerfMessages::Init(&first, 50);
  PerfMessages::ForgetHandle(&first);
  EXPECT_EQ(PerfMessages::perf_handle_, nullptr);
  PerfMessages::Init(&second, 20);
  EXPECT_EQ(PerfMessages::perf_handle_, &second);
  EXPECT_EQ(PerfMessages::event_type_, 50);
}

TEST(InitTest, KeepsTheHandleThatTookAnothersPlace) {
  int first = 0;
  int second = 0;
  int third = 0;
  PerfMessages::Init(&first, 50);
  PerfMessages::ForgetHandle(&first);
  PerfMessages::Init(&second, 20);
  PerfMessages::Init(&third, 20);
  EXPECT_EQ(PerfMessages::perf_handle_, &second);
}

TEST(InitTest, KeepsTheHandleThatCameWithNewRecords) {
  int first = 0;
  int second = 0;
  int third = 0;
  PerfMessages::Init(&first, 50);
  PerfMessages::ForgetHandle(&first);
  PerfMessages::static_cdm_.reset();
  PerfMessages::Init(&second, 20);
  PerfMessages::Init(&third, 7);
  EXPECT_EQ(PerfMessages::perf_handle_, &second);
  EXPECT_EQ(PerfMessages::event_type_, 20);
}

TEST(InitTest, ReplacesTheStorageRecordsWithTheUploadRecord) {
  int handle = 0;
  PerfMessages::Init(&handle, 50);
  const auto thermal = PerfMessages::thermal_;
  const auto energy = PerfMessages::energy_;
  const auto amd_pmf = PerfMessages::amd_pmf_;
  PerfMessages::static_cdm_.reset();
  PerfMessages::Init(&handle, 50);
  EXPECT_NE(PerfMessages::thermal_, thermal);
  EXPECT_NE(PerfMessages::energy_, energy);
  EXPECT_NE(PerfMessages::amd_pmf_, amd_pmf);
}

TEST(InitTest, KeepsItsHandleWhenAnotherCollectorIsGone) {
  int first = 0;
  int second = 0;
  PerfMessages::Init(&first, 50);
  PerfMessages::ForgetHandle(&second);
  EXPECT_EQ(PerfMessages::perf_handle_, &first);
}

TEST(InitTest, WithoutACollectorThereIsNoneToForget) {
  int second = 0;
  PerfMessages::Init(nullptr, 50);
  PerfMessages::ForgetHandle(nullptr);
  PerfMessages::Init(&second, 20);
  EXPECT_EQ(PerfMessages::perf_handle_, nullptr);
}

TEST(SerialNumberTest, IsTheSmbiosOne) {
  simulation::Machine machine;
  machine.smbios_serial_number = "ZT12345678";
  simulation::UseMachine(machine);
  EXPECT_EQ(PerfMessages::GetSN(), "ZT12345678");
}

TEST(SerialNumberTest, AnEmptySmbiosOneIsUsedAsItIs) {
  simulation::Machine machine;
  machine.smbios_serial_number = "";
  simulation::UseMachine(machine);
  EXPECT_EQ(PerfMessages::GetSN(), "");
}

TEST(SerialNumberTest, IsUnknownSnWithoutASmbiosOne) {
  simulation::UseMachine({});
  EXPECT_EQ(PerfMessages::GetSN(), "UNKNOWN_SN");
}

class FirmwareThermalQueryTest : public testing::Test {
 protected:
  // A machine whose firmware answers the thermal command with this selector as it is told.
  void UseReply(std::uint8_t selector, std::int32_t result, std::uint32_t return_code) {
    simulation::Machine machine;
    machine.private_bios = {{1, 40, {selector, 0, 0, 0}, result, return_code, {2, 55, 48}}};
    simulation::UseMachine(machine);
  }

  std::array<std::uint8_t, 128> reply_{};
  shared::ztbios::PrivateBiosWmi bios_;
  PlainBuilder builder_{&bios_};
};

TEST_F(FirmwareThermalQueryTest, GivesTheReplyBytes) {
  UseReply(1, 0, 0);
  EXPECT_EQ(builder_.GetThermalDataFromPrivateBiosWmi(1, reply_.data()), 0U);
  EXPECT_EQ(reply_[0], 2);
  EXPECT_EQ(reply_[1], 55);
  EXPECT_EQ(reply_[2], 48);
}

TEST_F(FirmwareThermalQueryTest, SendsOnlyTheLowByteOfTheSelector) {
  UseReply(0x34, 0, 0);
  EXPECT_EQ(builder_.GetThermalDataFromPrivateBiosWmi(0x1234, reply_.data()), 0U);
  EXPECT_EQ(reply_[1], 55);
}

TEST_F(FirmwareThermalQueryTest, ReturnsTheFirmwaresCodeWhenTheCallItselfWorked) {
  UseReply(1, 0, 7);
  EXPECT_EQ(builder_.GetThermalDataFromPrivateBiosWmi(1, reply_.data()), 7U);
}

TEST_F(FirmwareThermalQueryTest, PrefersTheStatusOfAFailedCall) {
  UseReply(1, -5, 7);
  EXPECT_EQ(builder_.GetThermalDataFromPrivateBiosWmi(1, reply_.data()), 0xFFFFFFFBU);
}

TEST_F(FirmwareThermalQueryTest, AsksForTheWholeReply) {
  UseReply(1, 0, 0);
  reply_.fill(0xAA);
  builder_.GetThermalDataFromPrivateBiosWmi(1, reply_.data());
  EXPECT_EQ(std::count(reply_.begin(), reply_.end(), std::uint8_t{0}), 125) << "the rest of 128 bytes becomes zero";
}

TEST_F(FirmwareThermalQueryTest, WithoutAClientItFailsAndLeavesTheReply) {
  PlainBuilder without_client;
  reply_.fill(0xAA);
  EXPECT_EQ(without_client.GetThermalDataFromPrivateBiosWmi(1, reply_.data()), 0x80004003U);
  EXPECT_EQ(std::count(reply_.begin(), reply_.end(), std::uint8_t{0xAA}), 128);
}

TEST_F(FirmwareThermalQueryTest, FailsOnAMachineWithoutTheInterface) {
  simulation::UseMachine({});
  EXPECT_NE(builder_.GetThermalDataFromPrivateBiosWmi(1, reply_.data()), 0U);
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
