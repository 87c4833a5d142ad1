#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "network/network_info_msg.h"
#include "network/network_inspection.h"
#include "platform/com_apartment.h"
#include "platform/ip_helper.h"
#include "platform/network_list.h"
#include "platform/system_message.h"
#include "platform/windows/ip_helper_figures.h"
#include "platform/windows/system_message_in.h"
#include "platform/wlan_service.h"
#include "plugin/logger_export.h"
#include "support/recording_log.h"
#include "support/windows/com_thread.h"
#include "support/wmi_namespace.h"
#include "zt/shared/wmi/wmi_client.h"

// The network of this very system.
namespace zt::tests {
namespace {

using telemetry::collector::performancesamples::NetworkInfoMsg;
using telemetry::collector::performancesamples::NetworkInspection;
namespace platform = telemetry::collector::performancesamples::platform;
namespace types = telemetry::collector::performancesamples::types;

using testing::Contains;
using testing::IsEmpty;
using testing::Not;

constexpr std::uint32_t kNoInterface = 0xFFFFFFFF;

std::vector<std::wstring> AllAdapters(const platform::NetworkList& list) {
  std::vector<std::wstring> adapters;
  for (const platform::ListedNetwork& network : list.networks) {
    for (const std::wstring& adapter : network.ConnectionAdapters()) adapters.push_back(adapter);
  }
  return adapters;
}

TEST(NetworkListTest, TellsThisSystemsNetworks) {
  const platform::ComApartment com;
  ASSERT_EQ(com.Status(), 0);
  const platform::NetworkList list = platform::ListNetworks();
  ASSERT_EQ(list.outcome, platform::NetworkList::Outcome::kListed);
  ASSERT_THAT(list.networks, Not(IsEmpty()));
  for (const platform::ListedNetwork& network : list.networks) {
    EXPECT_TRUE(network.IsConnected().has_value());
    EXPECT_TRUE(network.IsConnectedToInternet().has_value());
  }
}

TEST(NetworkListTest, AdaptersAreGuidsInBracesAndCapitals) {
  const platform::ComApartment com;
  const std::vector<std::wstring> adapters = AllAdapters(platform::ListNetworks());
  ASSERT_THAT(adapters, Not(IsEmpty()));
  for (const std::wstring& adapter : adapters) {
    ASSERT_EQ(adapter.size(), 38U);
    EXPECT_EQ(adapter.front(), L'{');
    EXPECT_EQ(adapter.back(), L'}');
    EXPECT_EQ(adapter.find_first_not_of(L"{}-0123456789ABCDEF"), std::wstring::npos);
  }
}

TEST(NetworkListTest, ANetworkMayOutliveItsList) {
  const platform::ComApartment com;
  platform::NetworkList list = platform::ListNetworks();
  ASSERT_THAT(list.networks, Not(IsEmpty()));
  const platform::ListedNetwork network = std::move(list.networks.front());
  list = {};
  EXPECT_TRUE(network.IsConnected().has_value());
}

TEST(NetworkListTest, WithoutComThereIsNoManager) {
  OnFreshThread([] {
    const platform::NetworkList list = platform::ListNetworks();
    EXPECT_EQ(list.outcome, platform::NetworkList::Outcome::kNoManager);
    EXPECT_LT(list.status, 0);
  });
}

TEST(ComApartmentTest, AThreadOfASingleThreadedApartmentRefusesAndStays) {
  OnThreadWithApartment(COINIT_APARTMENTTHREADED, [] {
    const auto before = CurrentApartment();
    {
      const platform::ComApartment com;
      EXPECT_EQ(com.Status(), RPC_E_CHANGED_MODE);
    }
    EXPECT_EQ(CurrentApartment(), before);
  });
}

TEST(ComApartmentTest, AThreadWithoutComHasNoneAfterwards) {
  OnFreshThread([] {
    {
      const platform::ComApartment com;
      EXPECT_EQ(com.Status(), 0);
      EXPECT_EQ(CurrentApartment(), APTTYPE_MTA);
    }
    EXPECT_EQ(CurrentApartment(), std::nullopt);
  });
}

TEST(IpHelperTest, TheTcpCountersAreThisSystems) {
  EXPECT_TRUE(platform::TcpV4Counters().has_value());
  EXPECT_TRUE(platform::TcpV6Counters().has_value());
}

TEST(IpHelperTest, AnInterfaceThatThereIsNotHasNoCounters) {
  EXPECT_EQ(platform::CountersOfInterface(kNoInterface), std::nullopt);
}

TEST(IpHelperTest, TheLoopbackInterfaceHasCounters) {
  bool any = false;
  for (std::uint32_t index = 1; index < 64 && !any; ++index) any = platform::CountersOfInterface(index).has_value();
  EXPECT_TRUE(any);
}

TEST(IpHelperTest, OctetsGoTheirOwnWay) {
  MIB_IFROW row{};
  row.dwInOctets = 10;
  row.dwOutOctets = 20;
  const platform::InterfaceCounters counters = platform::CountersOf(row);
  EXPECT_EQ(counters.bytes_in, 10U);
  EXPECT_EQ(counters.bytes_out, 20U);
}

TEST(IpHelperTest, EachTcpCounterIsItsOwn) {
  MIB_TCPSTATS statistics{};
  statistics.dwCurrEstab = 1;
  statistics.dwAttemptFails = 2;
  statistics.dwInErrs = 3;
  const platform::TcpCounters counters = platform::CountersOf(statistics);
  EXPECT_EQ(counters.established, 1U);
  EXPECT_EQ(counters.failed_attempts, 2U);
  EXPECT_EQ(counters.errors_in, 3U);
}

TEST(SystemMessageTest, AKnownCodeHasAText) {
  const std::optional<std::string> text = platform::SystemMessage(ERROR_ACCESS_DENIED);
  ASSERT_TRUE(text.has_value());
  EXPECT_THAT(*text, testing::EndsWith("\r\n"));
  EXPECT_GT(text->size(), 2U);
}

// Letters that English lacks, and that are other bytes in the system's code page.
TEST(SystemMessageTest, ATextOfAnotherLanguageIsUtf8) {
  const auto text = platform::SystemMessageIn(MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN), ERROR_INVALID_FUNCTION);
  if (!text) GTEST_SKIP() << "this system has no German texts";
  EXPECT_THAT(*text, testing::HasSubstr("\u00fcltig"));
}

TEST(SystemMessageTest, AnUnknownCodeHasNone) {
  EXPECT_EQ(platform::SystemMessage(0x2FFF1234), std::nullopt);
}

TEST(NetworkPassesTest, TheInventoryIsWhatTheCountersList) {
  shared::wmi::WMIClient wmi(tests::kWmiNamespace);
  int listed = 0;
  wmi.ExecQuery(L"SELECT Name from Win32_PerfRawData_Tcpip_NetworkInterface");
  while (wmi.Next()) ++listed;
  NetworkInfoMsg network(&wmi, nullptr);
  EXPECT_EQ(network.PerformNetworkInterfaceQueries().size(), static_cast<std::size_t>(listed));
}

// The counters list nothing under every system: the passes run over an interface of the adapters' table.
TEST(NetworkPassesTest, AnAdapterOfTheListIsFilledByTheGeneralPass) {
  shared::wmi::WMIClient wmi(tests::kWmiNamespace);
  NetworkInfoMsg network(&wmi, nullptr);
  types::NetworkInterfaces interfaces;
  {
    const platform::ComApartment com;
    const std::vector<std::wstring> adapters = AllAdapters(platform::ListNetworks());
    ASSERT_THAT(adapters, Not(IsEmpty()));
    types::NetworkInterfaceInfo& info = interfaces["adapter"];
    info.guid = std::string(adapters.front().begin(), adapters.front().end());
    info.connection_status = "Connected";
  }
  network.HandleGeneralConnInfo(interfaces);
  EXPECT_TRUE(interfaces.at("adapter").is_connected);
  EXPECT_TRUE(network.has_network_access_);
}

TEST(NetworkPassesTest, ComIsLeftAsFound) {
  OnFreshThread([] {
    NetworkInfoMsg network(nullptr, nullptr);
    types::NetworkInterfaces interfaces;
    network.is_vpn_connected_ = true;  // so that no adapter is asked for
    network.HandleGeneralConnInfo(interfaces);
    network.HandleWlanInfo(interfaces);
    EXPECT_EQ(CurrentApartment(), std::nullopt);
  });
}

TEST(NetworkPassesTest, ASingleThreadedApartmentIsOneLineOfEachPass) {
  RecordingLog log;
  ztSharedInitializeLogger(plog::info, &log);
  OnThreadWithApartment(COINIT_APARTMENTTHREADED, [&] {
    NetworkInfoMsg network(nullptr, nullptr);
    types::NetworkInterfaces interfaces;
    network.HandleGeneralConnInfo(interfaces);
    EXPECT_THAT(log.Messages(plog::error), testing::ElementsAre("Failed to initialize COM.-2147417850"));
    network.HandleWlanInfo(interfaces);
    EXPECT_THAT(log.Messages(plog::error), Contains("COM initialization failed"));
  });
}

// A server or an emulated system has no Wi-Fi: the service opens and lists nothing, or is not there.
TEST(NetworkPassesTest, WithoutWifiTheWlanPassChangesNothing) {
  const std::optional<platform::WlanService> service = platform::WlanService::Open().service;
  const bool has_wifi = service && !service->Interfaces().value_or(std::vector<std::wstring>()).empty();
  if (has_wifi) GTEST_SKIP() << "this system has Wi-Fi";
  NetworkInfoMsg network(nullptr, nullptr);
  types::NetworkInterfaces interfaces;
  interfaces["adapter"].guid = "{11111111-0000-4000-8000-000000000001}";
  const types::NetworkInterfaces before = interfaces;
  network.HandleWlanInfo(interfaces);
  EXPECT_EQ(interfaces, before);
}

TEST(NetworkPassesTest, TheTcpRecordsAreTheSystemsCounters) {
  RecordingLog log;
  ztSharedInitializeLogger(plog::info, &log);
  NetworkInfoMsg network(nullptr, nullptr);
  NetworkInspection inspection(network);
  const std::uint32_t before = platform::TcpV4Counters()->failed_attempts;
  const types::Ipv4Stats stats = inspection.TcpIPv4();
  const std::uint32_t after = platform::TcpV4Counters()->failed_attempts;
  EXPECT_GE(stats.failed_connections, before);
  EXPECT_LE(stats.failed_connections, after);
  inspection.TcpIPv6();
  EXPECT_THAT(log.lines, IsEmpty());
}

}  // namespace
}  // namespace zt::tests
