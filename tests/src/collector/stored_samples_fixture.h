#pragma once

#include <string>
#include <vector>

#include "support/collector_fixture.h"
#include "support/sample_store_fixture.h"

namespace zt::telemetry::collector::performancesamples {

using Records = std::vector<tests::PcLogPerformanceSamplesAsCDM>;

/// A collector beside a database of stored samples, on a machine with one processor and the serial number ZT12345678.
class StoredSamplesTest : public CollectorTest {
 protected:
  StoredSamplesTest() {
    simulation::Machine machine;
    machine.clock = ExampleClock();
    machine.smbios_serial_number = "ZT12345678";
    machine.wmi.classes["Win32_Processor"] = {{{"DeviceID", "CPU0"}, {"LoadPercentage", 12}}};
    simulation::UseMachine(machine);
  }

  std::string File() const { return folder_.File("ssm.db"); }
  tests::SampleStore MakeStore() { return tests::SampleStore::WithTables(File()); }

  /// Runs a cycle, which must succeed and send its live record last.
  void Cycle() {
    sink_->sent.clear();
    EXPECT_THAT(Execute(50), testing::HasSubstr(R"("code":0)"));
    ASSERT_FALSE(sink_->sent.empty());
    EXPECT_TRUE(sink_->sent.back().hw_info().has_system_memory_info());
    sink_->sent.pop_back();
  }

  Records Sent(const std::string& suffix) const {
    Records records;
    for (const auto& record : sink_->sent) {
      if (record.collection_id().ends_with(suffix)) records.push_back(record);
    }
    return records;
  }
  Records Thermal() const { return Sent("-TH"); }
  Records Network() const { return Sent("-NE"); }

  static std::uint64_t SamplesOf(const Records& records) {
    std::uint64_t samples = 0;
    for (const auto& record : records) samples += record.sample_points_actual();
    return samples;
  }
};

}  // namespace zt::telemetry::collector::performancesamples
