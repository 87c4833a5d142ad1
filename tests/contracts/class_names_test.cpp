// The names by which the collector's code and its neighbours know the nested messages.
#include <gtest/gtest.h>

#include "descriptors.h"

namespace zt::telemetry::contract::upload::log {
namespace {

template <typename Class>
std::string Name() {
  return tests::NameInPackage(*Class::descriptor());
}

TEST(ClassNamesTest, ANestedMessageHasOneFlatClassName) {
  EXPECT_EQ(Name<PcLogPerformanceSamplesAsCDM>(), "PcLogPerformanceSamplesAsCDM");
#define ZT_EXPECT_CLASS(outer, inner) EXPECT_EQ(Name<outer##_##inner>(), Name<outer>() + "." #inner)
  ZT_EXPECT_CLASS(PcLogPerformanceSamplesAsCDM, HwInfo);
  ZT_EXPECT_CLASS(PcLogPerformanceSamplesAsCDM_HwInfo, BatteryInfo);
  ZT_EXPECT_CLASS(PcLogPerformanceSamplesAsCDM_HwInfo, CpuInfo);
  ZT_EXPECT_CLASS(PcLogPerformanceSamplesAsCDM_HwInfo, DeviceStateInfo);
  ZT_EXPECT_CLASS(PcLogPerformanceSamplesAsCDM_HwInfo, Fans);
  ZT_EXPECT_CLASS(PcLogPerformanceSamplesAsCDM_HwInfo_Fans, FanStatistics);
  ZT_EXPECT_CLASS(PcLogPerformanceSamplesAsCDM_HwInfo, GraphicsCardInfo);
  ZT_EXPECT_CLASS(PcLogPerformanceSamplesAsCDM_HwInfo, Network);
  ZT_EXPECT_CLASS(PcLogPerformanceSamplesAsCDM_HwInfo_Network, Interfaces);
  ZT_EXPECT_CLASS(PcLogPerformanceSamplesAsCDM_HwInfo_Network_Interfaces, WLanProfiles);
  ZT_EXPECT_CLASS(PcLogPerformanceSamplesAsCDM_HwInfo_Network, TcpIPV4Stats);
  ZT_EXPECT_CLASS(PcLogPerformanceSamplesAsCDM_HwInfo_Network, TcpIPV6Stats);
  ZT_EXPECT_CLASS(PcLogPerformanceSamplesAsCDM_HwInfo, NpuInfo);
  ZT_EXPECT_CLASS(PcLogPerformanceSamplesAsCDM_HwInfo, StorageDriveInfo);
  ZT_EXPECT_CLASS(PcLogPerformanceSamplesAsCDM_HwInfo, SystemBoardInfo);
  ZT_EXPECT_CLASS(PcLogPerformanceSamplesAsCDM_HwInfo, SystemMemoryInfo);
  ZT_EXPECT_CLASS(PcLogPerformanceSamplesAsCDM, OperatingSystemInfo);
  ZT_EXPECT_CLASS(PcLogPerformanceSamplesAsCDM_OperatingSystemInfo, OperatingSystemSession);
  ZT_EXPECT_CLASS(PcLogPerformanceSamplesAsCDM_OperatingSystemInfo, OperatingSystemProcessInfo);
#undef ZT_EXPECT_CLASS
}

TEST(ClassNamesTest, TheSharedMessagesStandBesideTheRecord) {
  EXPECT_EQ(Name<TemperatureSensor>(), "TemperatureSensor");
  EXPECT_EQ(Name<ProcessResourceUtilizationInfo>(), "ProcessResourceUtilizationInfo");
}

TEST(ClassNamesTest, TheStorageRecordsHaveTheirOwnNames) {
  namespace storage = contract::storage::device_performance;
  EXPECT_EQ(Name<storage::AmdPmfSamples>(), "AmdPmfSamples");
  EXPECT_EQ(Name<storage::ThermalZTBiosSamples>(), "ThermalZTBiosSamples");
  EXPECT_EQ(Name<storage::EnergyEMISamples>(), "EnergyEMISamples");
}

}  // namespace
}  // namespace zt::telemetry::contract::upload::log
