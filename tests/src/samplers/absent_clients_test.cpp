// Builders without the clients that they would ask. A client that is not there is one whose every query fails.
#include <exception>

#include "samplers/battery_info_msg.h"
#include "samplers/cpu_info_msg.h"
#include "samplers/device_state_info_msg.h"
#include "samplers/fans_info_msg.h"
#include "samplers/memory_info_msg.h"
#include "samplers/npu_msg.h"
#include "samplers/operating_system_info_msg.h"
#include "samplers/storage_info_msg.h"
#include "samplers/system_board_info_msg.h"
#include "simulation/profile.h"
#include "support/sampler_test.h"
#include "support/status_codes.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

constexpr std::int64_t kNoClientStatus = tests::kNullPointer;  // E_POINTER

class AbsentClientsTest : public SamplerTest {
 protected:
  AbsentClientsTest() {
    machine_ = simulation::ReadShippedProfile("convertible-laptop");
    UseMachine();
  }

  /// The error that `builder` ends with.
  static Error Failure(PerfMessages& builder) {
    return FailureOf([&] { builder.PopulateStorageAndUploadProtos(); });
  }
};

TEST_F(AbsentClientsTest, MemoryIsAFailedFirstQuery) {
  MemoryInfoMsg builder(static_cast<shared::wmi::WMIClient*>(nullptr));
  const Error error = Failure(builder);
  EXPECT_EQ(error.kind, 5);
  EXPECT_EQ(error.code, kNoClientStatus);
  EXPECT_EQ(error.description, "Error while querying Win32_PhysicalMemory");
  EXPECT_EQ(Hardware().system_memory_info().ByteSizeLong(), 0U);
}

TEST_F(AbsentClientsTest, StorageIsAFailedFirstQuery) {
  StorageInfoMsg builder(nullptr, nullptr);
  const Error error = Failure(builder);
  EXPECT_EQ(error.code, kNoClientStatus);
  EXPECT_EQ(error.description, "Error while querying Win32_DiskDrive");
  EXPECT_EQ(Hardware().storage_drives_info_size(), 0);
}

TEST_F(AbsentClientsTest, KeyboardsAreAFailedQuery) {
  DeviceStateInfoMsg builder(static_cast<shared::wmi::WMIClient*>(nullptr));
  simulation::UseMachine({});
  EXPECT_EQ(Failure(builder),
            Error(5, kNoClientStatus, "Error while querying Win32_PnPEntity",
                  "zt::telemetry::collector::performancesamples::DeviceStateInfoMsg::InferFromKeyboardStatus", ""));
  EXPECT_FALSE(Hardware().has_device_state());
}

TEST_F(AbsentClientsTest, TheHingeStillTellsThePosture) {
  simulation::Machine machine;
  machine.sensors.hinge = simulation::Hinge{simulation::HingeOutcome::kReading, 110};
  simulation::UseMachine(machine);
  DeviceStateInfoMsg(static_cast<shared::wmi::WMIClient*>(nullptr)).PopulateStorageAndUploadProtos();
  EXPECT_EQ(Hardware().device_state().device_mode(), "positionPullForward");
}

TEST_F(AbsentClientsTest, ProcessesAreAFailedQueryAndTheSessionIsTold) {
  OperatingSystemInfoMsg builder(static_cast<shared::wmi::WMIClient*>(nullptr));
  std::string failure;
  try {
    builder.PopulateStorageAndUploadProtos();
  } catch (...) {
    failure = Error::FromCurrentException().description;
  }
  EXPECT_EQ(failure, "Unknown exception type.") << "the form in which the process sampler fails";
  const auto& section = PerfMessages::static_cdm_->operating_system_info();
  EXPECT_TRUE(section.operating_session_info().has_time_since_last_logon_minutes());
  EXPECT_EQ(section.resource_intensive_processes_info_size(), 0);
}

TEST_F(AbsentClientsTest, BuildersThatAskNoClientNeedNone) {
  const DeviceStateInfoMsg without(static_cast<shared::wmi::WMIClient*>(nullptr));
  const PerfMessages& base = without;
  BatteryInfoMsg(base).PopulateStorageAndUploadProtos();
  NPUMsg(base).PopulateStorageAndUploadProtos();
  EXPECT_EQ(Hardware().batteries_info_size(), 1);
  EXPECT_EQ(Hardware().npus_info_size(), 1);
}

TEST_F(AbsentClientsTest, BuildersOfTheHourlyRecordsAddNothing) {
  CPUInfoMsg().PopulateStorageAndUploadProtos();
  FansInfoMsg().PopulateStorageAndUploadProtos();
  SystemBoardInfoMsg().PopulateStorageAndUploadProtos();
  EXPECT_FALSE(PerfMessages::static_cdm_->has_hw_info());
  EXPECT_THAT(simulation::RecordedQueries(), testing::IsEmpty());
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
