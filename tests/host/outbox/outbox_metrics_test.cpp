#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>

#include "host/failure.h"
#include "host/outbox/contract_version.h"
#include "host/outbox/kept_record.h"
#include "host/outbox/outbox.h"
#include "performance_samples_upload.pb.h"
#include "support/temporary_folder.h"
#include "tests/host/program_run.h"

namespace zt::telemetry::host {
namespace {

using contract::upload::log::PcLogPerformanceSamplesAsCDM;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

// The outbox of one collection of two hours on the laptop.
class OutboxMetricsTest : public testing::Test {
 protected:
  OutboxMetricsTest() {
    RunProgram({"seed", "--database-dir", folder_.File("d"), "--hours", "2", "--until", "2026-03-07T14:00:00Z"});
    Collect();
  }

  void Collect() const {
    const ProgramRun run = RunProgram({"collect", "--machine", "convertible-laptop", "--database-dir",
                                       folder_.File("d"), "--outbox", folder_.File("o")});
    ASSERT_EQ(run.exit_code, kExitDone) << run.err;
  }

  ProgramRun Export(const std::vector<std::string>& options = {}) const {
    std::vector<std::string> arguments = {"outbox", "export", "--format", "openmetrics", "--outbox", folder_.File("o")};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return RunProgram(arguments);
  }

  // As a collection would keep it.
  void Keep(const PcLogPerformanceSamplesAsCDM& record, const std::string& samples = "") const {
    HandOver hand_over = Kept(kSendKind, record);
    hand_over.samples = samples;
    Outbox(folder_.Path() / "o").Keep({hand_over}, std::nullopt);
  }

  zt::tests::TemporaryFolder folder_;
};

TEST_F(OutboxMetricsTest, TheFiguresOfEachKindOfRecordAreThere) {
  const ProgramRun run = Export();
  EXPECT_EQ(run.exit_code, kExitDone) << run.err;
  EXPECT_THAT(run.out,
              AllOf(HasSubstr("\nzt_batteries_charge_ratio{serial_number=\"00042\"} 0.7541\n"),
                    HasSubstr("\nzt_processors_temperature_celsius{processor=\"CPU0\",sensor=\"cpu_temp\"} 65\n"),
                    HasSubstr("\nzt_network_interfaces_received_bytes{"),
                    HasSubstr("\nzt_platform_management_smallest_memory_clock_hertz 6400000000\n")));
  EXPECT_THAT(run.out, EndsWith("\n# EOF\n"));
}

TEST_F(OutboxMetricsTest, EachRecordTellsWhatItIsAndWhenItArrived) {
  const std::string metrics = Export().out;
  for (const std::string kind : {"live", "thermal", "network", "stored"}) {
    EXPECT_THAT(metrics, HasSubstr("\nzt_record_arrival_timestamp_seconds{record=\"" + kind + "\"} 1"));
  }
  EXPECT_THAT(metrics, HasSubstr("zt_record_info{record=\"thermal\",identity=\"2026-03-07T13H_5CG0000001-TH\""));
  EXPECT_THAT(metrics, HasSubstr("contract_version=\"" + ContractVersion() + "\"} 1\n"));
  EXPECT_THAT(metrics, HasSubstr("\nzt_record_samples{record=\"network\"} 180\n"));
}

TEST_F(OutboxMetricsTest, TheNewestRecordCounts) {
  PcLogPerformanceSamplesAsCDM record;
  record.set_collection_id("LATER");
  record.mutable_hw_info()->mutable_system_memory_info()->set_used_physical_memory_kb(7);
  Keep(record);
  const std::string metrics = Export().out;
  EXPECT_THAT(metrics, HasSubstr("\nzt_memory_physical_memory_in_use_bytes 7000\n"));
  EXPECT_THAT(metrics, Not(HasSubstr("zt_batteries"))) << "a battery that is gone is not shown on";
  EXPECT_THAT(metrics, HasSubstr("zt_fans_average")) << "the hourly records stay";
}

TEST_F(OutboxMetricsTest, ARecordThatDoesNotCountIsLeftOut) {
  PcLogPerformanceSamplesAsCDM record;
  record.set_collection_id("SAME");
  record.mutable_hw_info()->add_fans_info()->set_fan_id(7);
  Keep(record, "checksum");
  Outbox outbox(folder_.Path() / "o");
  outbox.CountDeliveries({outbox.LastId()});
  record.mutable_hw_info()->mutable_fans_info(0)->set_fan_id(8);
  record.set_local_time("again");
  Keep(record, "checksum");
  const std::string metrics = Export().out;
  EXPECT_THAT(metrics, HasSubstr("identity=\"SAME\""));
  EXPECT_THAT(metrics, Not(HasSubstr("again")));
}

TEST_F(OutboxMetricsTest, WithoutRecordsThereIsTheEndAlone) {
  Outbox(folder_.Path() / "empty");
  const ProgramRun run = RunProgram({"outbox", "export", "--format", "openmetrics", "--outbox", folder_.File("empty")});
  EXPECT_EQ(run.exit_code, kExitDone) << run.err;
  EXPECT_EQ(run.out, "# EOF\n");
}

TEST_F(OutboxMetricsTest, AskedForTheSourcesItTellsWhatTheDoctorFinds) {
  const ProgramRun run = Export({"--sources", "--machine", "failing", "--database-dir", folder_.File("d")});
  EXPECT_EQ(run.exit_code, kExitDone) << run.err;
  EXPECT_THAT(run.out, AllOf(HasSubstr("\nzt_source_success{source=\"Batteries\"} 0\n"),
                             HasSubstr("\nzt_source_success{source=\"Stored samples\"} 1\n"),
                             HasSubstr("\nzt_source_duration_seconds{source=\"Batteries\"} "),
                             HasSubstr("\nzt_batteries_charge_ratio{"), EndsWith("\n# EOF\n")));
}

TEST_F(OutboxMetricsTest, TheMachineIsForTheSourcesAlone) {
  const ProgramRun run = Export({"--machine", "failing"});
  EXPECT_EQ(run.exit_code, kExitWrongUsage);
  EXPECT_THAT(run.err, HasSubstr("--machine requires --sources"));
}

TEST_F(OutboxMetricsTest, AFileHoldsWhatIsPrintedAndNothingIsLeftBesideIt) {
  const ProgramRun run = Export({"--output", folder_.File("zt.prom")});
  EXPECT_EQ(run.exit_code, kExitDone) << run.err;
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(ReadFile(folder_.Path() / "zt.prom"), Export().out);
  for (const auto& entry : std::filesystem::directory_iterator(folder_.Path())) {
    EXPECT_THAT(ToText(entry.path().filename()), Not(HasSubstr("partial")));
  }
}

TEST_F(OutboxMetricsTest, ARecordThatCannotBeReadLeavesTheFileAsItWas) {
  Outbox(folder_.Path() / "o")
      .Keep({{kSendKind, std::string(PcLogPerformanceSamplesAsCDM::descriptor()->full_name()), "", "", "\xFF\xFF"}},
            std::nullopt);
  WriteFile(folder_.Path() / "zt.prom", "before");
  const ProgramRun run = Export({"--output", folder_.File("zt.prom")});
  EXPECT_EQ(run.exit_code, kExitFailed);
  EXPECT_THAT(run.err, HasSubstr("hand-over 7 cannot be read as a zt.telemetry.contract.upload.log."));
  EXPECT_EQ(ReadFile(folder_.Path() / "zt.prom"), "before");
}

TEST_F(OutboxMetricsTest, TheVersionKeptIsThatOfTheContract) {
  EXPECT_EQ(Outbox(folder_.Path() / "o").Find(1)->contract_version, ContractVersion());
  EXPECT_TRUE(std::regex_match(ContractVersion(), std::regex("[0-9]+\\.[0-9]+"))) << ContractVersion();
}

}  // namespace
}  // namespace zt::telemetry::host
