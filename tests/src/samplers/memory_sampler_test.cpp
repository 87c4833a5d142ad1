#include "samplers/memory_info_msg.h"
#include "support/sampler_test.h"
#include "support/status_codes.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using contract::upload::log::PcLogPerformanceSamplesAsCDM_HwInfo_SystemMemoryInfo;

class MemorySamplerTest : public SamplerTest {
 protected:
  MemorySamplerTest() {
    auto& classes = machine_.wmi.classes;
    classes["Win32_PhysicalMemory"] = {{{"ConfiguredClockSpeed", 3200}}};
    classes["Win32_ComputerSystem"] = {{{"TotalPhysicalMemory", "17179869184"}}};
    classes["Win32_OperatingSystem"] = {
        {{"FreePhysicalMemory", "8000000"}, {"TotalVirtualMemorySize", "20000000"}, {"FreeVirtualMemory", "9000000"}}};
  }

  /// Samples the machine; the section is the shared record's.
  const PcLogPerformanceSamplesAsCDM_HwInfo_SystemMemoryInfo& Sample() {
    Populate<MemoryInfoMsg>(&wmi_);
    return Section();
  }

  /// The error that sampling ends with.
  Error SampleAndFail() {
    return FailureOf([this] { Sample(); });
  }

  const PcLogPerformanceSamplesAsCDM_HwInfo_SystemMemoryInfo& Section() const {
    return Hardware().system_memory_info();
  }

  void SetClocks(std::initializer_list<std::int32_t> clocks) {
    auto& modules = machine_.wmi.classes["Win32_PhysicalMemory"];
    modules.clear();
    for (const std::int32_t clock : clocks) modules.push_back({{"ConfiguredClockSpeed", clock}});
  }

  void FailQuery(const std::string& wmi_class) {
    machine_.wmi.failures = {{wmi_class, tests::kAccessDenied, std::nullopt, 0}};
  }
};

TEST_F(MemorySamplerTest, UsesThousandsOfBytesForTheTotalAndKibibytesForTheFreePart) {
  const auto& section = Sample();
  EXPECT_EQ(section.used_physical_memory_kb(), 9179869U);
  EXPECT_FLOAT_EQ(section.utilization_physical_percent(), 53.43F);
}

TEST_F(MemorySamplerTest, TakesTheUsedPartInSinglePrecision) {
  machine_.wmi.classes["Win32_ComputerSystem"] = {{{"TotalPhysicalMemory", "32500982000"}}};
  machine_.wmi.classes["Win32_OperatingSystem"] = {{{"FreePhysicalMemory", "13863295"}}};
  const auto& section = Sample();
  EXPECT_EQ(section.used_physical_memory_kb(), 18637687U);
  // In double precision throughout it would be 57.34.
  EXPECT_EQ(section.utilization_physical_percent(), 57.35F);
}

TEST_F(MemorySamplerTest, ReportsVirtualMemoryAsRead) {
  const auto& section = Sample();
  EXPECT_EQ(section.total_virtual_memory_kb(), 20000000U);
  EXPECT_EQ(section.used_virtual_memory_kb(), 11000000U);
}

TEST_F(MemorySamplerTest, KeepsTheSlowestClockOtherThanZero) {
  SetClocks({2400, 0, 3200});
  Sample();
  EXPECT_EQ(PerfMessages::amd_pmf_->memory_clock_mhz(), 2400U);
}

TEST_F(MemorySamplerTest, KeepsALaterSlowerClock) {
  SetClocks({0, 3200, 2400});
  Sample();
  EXPECT_EQ(PerfMessages::amd_pmf_->memory_clock_mhz(), 2400U);
}

TEST_F(MemorySamplerTest, ReportsAZeroClockWhenNoModuleHasAnother) {
  SetClocks({0, 0});
  Sample();
  EXPECT_TRUE(PerfMessages::amd_pmf_->has_memory_clock_mhz());
  EXPECT_EQ(PerfMessages::amd_pmf_->memory_clock_mhz(), 0U);
}

TEST_F(MemorySamplerTest, LeavesTheClockUnsetWithoutModules) {
  SetClocks({});
  Sample();
  EXPECT_FALSE(PerfMessages::amd_pmf_->has_memory_clock_mhz());
}

TEST_F(MemorySamplerTest, AClockThatIsNoNumberCountsAsThePreviousModules) {
  machine_.wmi.classes["Win32_PhysicalMemory"] = {{{"ConfiguredClockSpeed", 3200}}, {{"ConfiguredClockSpeed", "fast"}}};
  Sample();
  EXPECT_EQ(PerfMessages::amd_pmf_->memory_clock_mhz(), 3200U);
}

TEST_F(MemorySamplerTest, DoesNotDivideByATotalBelowOneThousandBytes) {
  machine_.wmi.classes["Win32_ComputerSystem"] = {{{"TotalPhysicalMemory", "999"}}};
  const auto& section = Sample();
  EXPECT_TRUE(section.has_utilization_physical_percent());
  EXPECT_EQ(section.utilization_physical_percent(), 0.0F);
}

TEST_F(MemorySamplerTest, WithoutAComputerRowUsedMemoryIsMinusTheFreePart) {
  machine_.wmi.classes["Win32_ComputerSystem"].clear();
  const auto& section = Sample();
  EXPECT_EQ(section.utilization_physical_percent(), 0.0F);
  EXPECT_EQ(section.used_physical_memory_kb(), 4286967296U);  // 2^32 - 8,000,000
}

TEST_F(MemorySamplerTest, WithoutASystemRowTheVirtualFiguresAreZero) {
  machine_.wmi.classes["Win32_OperatingSystem"].clear();
  const auto& section = Sample();
  EXPECT_TRUE(section.has_total_virtual_memory_kb());
  EXPECT_EQ(section.total_virtual_memory_kb(), 0U);
  EXPECT_EQ(section.used_virtual_memory_kb(), 0U);
  EXPECT_EQ(section.utilization_physical_percent(), 100.0F);
}

TEST_F(MemorySamplerTest, WrapsWhenMoreVirtualMemoryIsFreeThanThereIs) {
  machine_.wmi.classes["Win32_OperatingSystem"] = {
      {{"FreePhysicalMemory", "1"}, {"TotalVirtualMemorySize", "10"}, {"FreeVirtualMemory", "11"}}};
  EXPECT_EQ(Sample().used_virtual_memory_kb(), 4294967295U);
}

TEST_F(MemorySamplerTest, CutsFiguresToTheirLow32Bits) {
  machine_.wmi.classes["Win32_OperatingSystem"] = {
      {{"FreePhysicalMemory", "1"}, {"TotalVirtualMemorySize", "4294967297"}, {"FreeVirtualMemory", "0"}}};
  EXPECT_EQ(Sample().total_virtual_memory_kb(), 1U);
}

TEST_F(MemorySamplerTest, AMissingPropertyCountsAsZero) {
  machine_.wmi.classes["Win32_OperatingSystem"] = {{{"TotalVirtualMemorySize", "10"}}};
  const auto& section = Sample();
  EXPECT_EQ(section.used_virtual_memory_kb(), 10U);
  EXPECT_EQ(section.used_physical_memory_kb(), 17179869U);
}

TEST_F(MemorySamplerTest, OnlyTheFirstComputerRowCounts) {
  machine_.wmi.classes["Win32_ComputerSystem"].push_back({{"TotalPhysicalMemory", "1"}});
  EXPECT_EQ(Sample().used_physical_memory_kb(), 9179869U);
}

TEST_F(MemorySamplerTest, AFailedModuleQueryEndsThePassWithItsStatus) {
  FailQuery("Win32_PhysicalMemory");
  const Error error = SampleAndFail();
  EXPECT_EQ(error.kind, 5);
  EXPECT_EQ(error.code, tests::kAccessDenied);
  EXPECT_EQ(error.description, "Error while querying Win32_PhysicalMemory");
  EXPECT_EQ(error.message, "");
  EXPECT_EQ(simulation::RecordedQueries().size(), 1U);
  EXPECT_FALSE(Section().has_utilization_physical_percent());
}

TEST_F(MemorySamplerTest, AFailedComputerQueryKeepsTheClockAndEndsThePass) {
  FailQuery("Win32_ComputerSystem");
  EXPECT_EQ(SampleAndFail().description, "Error while querying Win32_ComputerSystem");
  EXPECT_EQ(PerfMessages::amd_pmf_->memory_clock_mhz(), 3200U);
  EXPECT_EQ(simulation::RecordedQueries().size(), 2U);
}

TEST_F(MemorySamplerTest, AFailedSystemQueryLeavesTheSectionEmpty) {
  FailQuery("Win32_OperatingSystem");
  EXPECT_EQ(SampleAndFail().description, "Error while querying Win32_OperatingSystem");
  EXPECT_TRUE(PerfMessages::static_cdm_->hw_info().has_system_memory_info());
  EXPECT_EQ(Section().ByteSizeLong(), 0U);
}

TEST_F(MemorySamplerTest, AsksExactlyItsThreeQueries) {
  Sample();
  EXPECT_THAT(simulation::RecordedQueries(),
              testing::ElementsAre(
                  "SELECT ConfiguredClockSpeed FROM Win32_PhysicalMemory",
                  "SELECT TotalPhysicalMemory FROM Win32_ComputerSystem",
                  "SELECT FreePhysicalMemory, TotalVirtualMemorySize, FreeVirtualMemory FROM Win32_OperatingSystem"));
}

TEST_F(MemorySamplerTest, OverwritesItsSectionInTheNextPass) {
  Sample();
  machine_.wmi.classes["Win32_ComputerSystem"] = {{{"TotalPhysicalMemory", "8000001000"}}};
  const auto& section = Sample();
  EXPECT_EQ(section.used_physical_memory_kb(), 1U);
}

TEST_F(MemorySamplerTest, ACopyOfAnotherBuilderUsesItsClient) {
  PopulateByCopy(MemoryInfoMsg(&wmi_));
  EXPECT_EQ(Section().used_physical_memory_kb(), 9179869U);
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
