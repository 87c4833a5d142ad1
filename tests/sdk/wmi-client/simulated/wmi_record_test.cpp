#include <gmock/gmock.h>

#include <utility>

#include "simulation/machine.h"
#include "zt/shared/wmi/query_failures.h"
#include "zt/shared/wmi/wmi_client.h"

// Queries that fail by order of the machine, and the record of what ran.
namespace zt::tests {
namespace {

using shared::wmi::kSuccess;
using shared::wmi::WMIClient;
using simulation::Machine;
using simulation::WmiFailure;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::int32_t kFails = -5;
constexpr std::int32_t kFailsToo = -6;
constexpr const wchar_t* kDrives = L"SELECT DeviceID FROM Win32_DiskDrive";
constexpr const wchar_t* kMemory = L"SELECT Capacity FROM Win32_PhysicalMemory";

class WmiRecordTest : public ::testing::Test {
 protected:
  WmiRecordTest() { UseFailures({}); }

  static void UseFailures(std::vector<WmiFailure> failures) {
    Machine machine;
    machine.wmi.classes["Win32_DiskDrive"] = {{{"DeviceID", "0"}}};
    machine.wmi.failures = std::move(failures);
    simulation::UseMachine(std::move(machine));
  }

  std::vector<std::int32_t> StatusesOf(const std::wstring& wql, int executions) {
    std::vector<std::int32_t> statuses;
    for (int i = 0; i < executions; ++i) statuses.push_back(client_.ExecQuery(wql));
    return statuses;
  }

  WMIClient client_{L"any"};
};

TEST_F(WmiRecordTest, AQueryThatFailsAlwaysFailsAlwaysAndAlone) {
  UseFailures({{"Win32_DiskDrive", kFails, std::nullopt, 0}});
  EXPECT_THAT(StatusesOf(kDrives, 3), ElementsAre(kFails, kFails, kFails));
  EXPECT_FALSE(client_.Next());
  EXPECT_THAT(StatusesOf(kMemory, 1), ElementsAre(kSuccess));
}

TEST_F(WmiRecordTest, AFailureComesAfterSoManyExecutionsAndGoesAfterSoMany) {
  UseFailures({{"Win32_DiskDrive", kFails, 2, 1}});
  EXPECT_THAT(StatusesOf(kDrives, 2), ElementsAre(kSuccess, kFails));
  EXPECT_THAT(StatusesOf(kMemory, 2), ElementsAre(kSuccess, kSuccess));
  EXPECT_THAT(StatusesOf(kDrives, 3), ElementsAre(kFails, kSuccess, kSuccess));
}

TEST_F(WmiRecordTest, FailedQueriesAreToldUntilNobodyListens) {
  UseFailures({{"Win32_DiskDrive", kFails, std::nullopt, 0}});
  std::vector<std::pair<std::wstring, std::int32_t>> told;
  shared::wmi::ObserveFailures([&](const std::wstring& wql, std::int32_t status) { told.emplace_back(wql, status); });
  StatusesOf(kMemory, 1);
  StatusesOf(kDrives, 2);
  EXPECT_THAT(told, ElementsAre(std::pair(std::wstring(kDrives), kFails), std::pair(std::wstring(kDrives), kFails)));
  shared::wmi::ObserveFailures({});
  EXPECT_THAT(StatusesOf(kDrives, 1), ElementsAre(kFails));
  EXPECT_THAT(told, ::testing::SizeIs(2));
}

TEST_F(WmiRecordTest, AFailureWithoutEndMayBeginLater) {
  UseFailures({{"Win32_DiskDrive", kFails, std::nullopt, 2}});
  EXPECT_THAT(StatusesOf(kDrives, 4), ElementsAre(kSuccess, kSuccess, kFails, kFails));
}

TEST_F(WmiRecordTest, AFailureOfNoTimesNeverComes) {
  UseFailures({{"Win32_DiskDrive", kFails, 0, 0}});
  EXPECT_THAT(StatusesOf(kDrives, 2), ElementsAre(kSuccess, kSuccess));
}

TEST_F(WmiRecordTest, EachFailureCountsEachQueryThatContainsItsText) {
  UseFailures({{"DeviceID", kFails, 1, 0}, {"Win32", kFailsToo, 1, 1}});
  EXPECT_THAT(StatusesOf(kDrives, 3), ElementsAre(kFails, kFailsToo, kSuccess));
}

TEST_F(WmiRecordTest, OfTwoFailuresThatAreDueTheFirstOneAnswers) {
  UseFailures({{"Win32_DiskDrive", kFails, std::nullopt, 0}, {"", kFailsToo, std::nullopt, 0}});
  EXPECT_THAT(StatusesOf(kDrives, 1), ElementsAre(kFails));
  EXPECT_THAT(StatusesOf(kMemory, 1), ElementsAre(kFailsToo));
}

TEST_F(WmiRecordTest, TheTextOfAFailureIsComparedCharacterByCharacter) {
  UseFailures({{"win32_diskdrive", kFails, std::nullopt, 0}});
  EXPECT_THAT(StatusesOf(kDrives, 1), ElementsAre(kSuccess));
}

TEST_F(WmiRecordTest, EveryQueryIsRecordedInItsOrderAlsoOneThatFails) {
  UseFailures({{"Win32_DiskDrive", kFails, std::nullopt, 0}});
  client_.ExecQuery(kDrives);
  WMIClient(L"another").ExecQuery(kMemory);
  client_.ExecQuery(L"nonsense \u00E9");
  EXPECT_THAT(simulation::RecordedQueries(),
              ElementsAre("SELECT DeviceID FROM Win32_DiskDrive", "SELECT Capacity FROM Win32_PhysicalMemory",
                          "nonsense \xC3\xA9"));
}

TEST_F(WmiRecordTest, AnotherMachineStartsWithoutRecordAndWithNewCounts) {
  UseFailures({{"Win32_DiskDrive", kFails, 1, 0}});
  EXPECT_THAT(StatusesOf(kDrives, 2), ElementsAre(kFails, kSuccess));
  UseFailures({{"Win32_DiskDrive", kFails, 1, 0}});
  EXPECT_THAT(simulation::RecordedQueries(), IsEmpty());
  EXPECT_THAT(StatusesOf(kDrives, 2), ElementsAre(kFails, kSuccess));
}

TEST_F(WmiRecordTest, AnObserverHearsEachQueryBeforeItRuns) {
  std::vector<std::wstring> heard;
  std::size_t recorded_before = 99;
  shared::wmi::ObserveQueries([&](const std::wstring& wql) {
    heard.push_back(wql);
    recorded_before = simulation::RecordedQueries().size();
  });
  client_.ExecQuery(kDrives);
  shared::wmi::ObserveQueries({});
  client_.ExecQuery(kMemory);
  EXPECT_THAT(heard, ElementsAre(kDrives));
  EXPECT_EQ(recorded_before, 0U);
}

}  // namespace
}  // namespace zt::tests
