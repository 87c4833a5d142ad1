#include "simulation/calls.h"

#include <gmock/gmock.h>

#include <system_error>
#include <utility>

#include "simulation/handed_out.h"
#include "simulation/machine.h"
#include "zt/shared/smbios/smbios_info.h"
#include "zt/shared/wmi/wmi_client.h"

namespace zt::tests {
namespace {

using simulation::Call;
using simulation::Disturbance;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr wchar_t kQuery[] = L"SELECT Tag FROM Win32_PhysicalMemory";

class CallsTest : public testing::Test {
 protected:
  CallsTest() {
    simulation::Machine machine;
    machine.smbios_serial_number = "5CG0000001";
    machine.wmi.classes["Win32_PhysicalMemory"] = {{{"Tag", "first"}}, {{"Tag", "second"}}};
    simulation::UseMachine(std::move(machine));
  }
  ~CallsTest() override { simulation::WatchCalls({}); }

  // Every call is noted; the `number`-th meets `kind`.
  void Watch(std::size_t number = 0, Disturbance kind = Disturbance::kNone) {
    simulation::WatchCalls([this, number, kind](const Call& call) {
      calls_.push_back(call);
      return call.number == number ? kind : Disturbance::kNone;
    });
  }

  // The texts of all rows that a query of a client of its own gives; its status too.
  std::vector<std::string> Tags() {
    shared::wmi::WMIClient client(L"");
    std::vector<std::string> tags;
    status_ = client.ExecQuery(kQuery);
    while (client.Next()) client.GetValue(L"Tag", tags.emplace_back("left as it was"));
    return tags;
  }

  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const Call& call : calls_) names.push_back(call.name);
    return names;
  }

  std::vector<Call> calls_;
  std::int32_t status_ = 0;
};

TEST_F(CallsTest, CallsAreSeenInTheirOrderWithTheirNamesAndNumbersFromOne) {
  Tags();
  Watch();
  EXPECT_THAT(Tags(), ElementsAre("first", "second"));
  const std::string of = " of SELECT Tag FROM Win32_PhysicalMemory";
  EXPECT_THAT(Names(), ElementsAre("WMIClient", "query" + of, "row" + of, "row" + of, "Tag" + of, "Tag" + of));
  for (std::size_t i = 0; i < calls_.size(); ++i) EXPECT_EQ(calls_[i].number, i + 1);
  EXPECT_THAT(calls_.at(1).kinds, Contains(Disturbance::kEndlessRows));
}

TEST_F(CallsTest, NumbersBeginAnewWithEachWatcherAndNobodySeesCallsWithoutOne) {
  Watch();
  Tags();
  Watch();
  Tags();
  EXPECT_EQ(calls_.back().number, 6U);
  simulation::WatchCalls({});
  calls_.clear();
  Tags();
  EXPECT_THAT(calls_, IsEmpty());
}

TEST_F(CallsTest, ACallMeetsWhatTheWatcherSaysAndTheOthersAreAnswered) {
  Watch(5, Disturbance::kFails);
  EXPECT_THAT(Tags(), ElementsAre("left as it was", "second"));
  Watch(5, Disturbance::kEmpty);
  EXPECT_THAT(Tags(), ElementsAre("", "second"));
  Watch(5, Disturbance::kEndlessText);
  EXPECT_THAT(Tags(), ElementsAre(simulation::EndlessText(), "second"));
}

TEST_F(CallsTest, RowsBeforeTheOneThatFailsAreKept) {
  Watch(4, Disturbance::kFails);
  EXPECT_THAT(Tags(), ElementsAre("first"));
  EXPECT_NE(status_, 0);
}

TEST_F(CallsTest, RowsWithoutEndAreCutByTheClientsLimits) {
  Watch(2, Disturbance::kEndlessRows);
  EXPECT_GT(Tags().size(), 100U);
  EXPECT_EQ(status_, shared::wmi::kTimedOut);
}

TEST_F(CallsTest, AClientThrowsWhereTheWatcherSaysSo) {
  Watch(2, Disturbance::kThrows);
  EXPECT_THROW(Tags(), std::system_error);
}

TEST_F(CallsTest, WhatIsNoKindOfTheCallLeavesItUndisturbed) {
  Watch(2, Disturbance::kAbsurd);
  EXPECT_THAT(Tags(), ElementsAre("first", "second"));
}

TEST_F(CallsTest, AFirmwareTableWithoutEndIsReadAsFarAsItGoes) {
  Watch(1, Disturbance::kEndlessText);
  EXPECT_NE(shared::smbios::SMBiosInfo(nullptr).GetTypeSysInfo().serial_number, "5CG0000001");
  Watch(1, Disturbance::kFails);
  EXPECT_EQ(shared::smbios::SMBiosInfo(nullptr).GetReadError(), 5U);
}

TEST_F(CallsTest, WhatIsHandedOutIsCountedUntilItIsGivenBack) {
  const std::int64_t before = simulation::HandedOut()["WMI client"];
  {
    const shared::wmi::WMIClient client(L"");
    EXPECT_EQ(simulation::HandedOut()["WMI client"], before + 1);
  }
  EXPECT_EQ(simulation::HandedOut()["WMI client"], before);
}

}  // namespace
}  // namespace zt::tests
