#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "network/network_info_msg.h"
#include "network/network_inspection.h"
#include "plugin/logger_export.h"
#include "simulation/machine.h"
#include "support/recording_log.h"
#include "support/status_codes.h"
#include "support/wmi_namespace.h"
#include "zt/shared/wmi/wmi_client.h"

namespace zt::telemetry::collector::performancesamples {

using simulation::Failure;

inline constexpr char kInterfacesTable[] = "Win32_PerfRawData_Tcpip_NetworkInterface";
inline constexpr char kAdaptersTable[] = "Win32_NetworkAdapter";
inline constexpr char kConfigurationsTable[] = "Win32_NetworkAdapterConfiguration";

inline constexpr char kInterfacesQuery[] =
    "SELECT Name, BytesReceivedPersec, BytesSentPersec from Win32_PerfRawData_Tcpip_NetworkInterface";
inline constexpr char kAdaptersQueryStart[] = "SELECT * from Win32_NetworkAdapter WHERE ";
inline constexpr char kConfigurationsQueryStart[] = "SELECT * from Win32_NetworkAdapterConfiguration WHERE ";

inline constexpr char kWifi[] = "Wi-Fi 6E(R) AX Adapter";
inline constexpr char kWired[] = "USB Ethernet Adapter";

/// A simulated machine and its network builder, with a log. Interfaces are numbered in the order in which they are
/// added, from 1.
class NetworkTest : public testing::Test {
 protected:
  NetworkTest() { ztSharedInitializeLogger(plog::info, &log_); }

  /// An interface with its adapter and configuration, connected.
  void AddInterface(const std::string& name) {
    const int number = ++interfaces_;
    machine_.wmi.classes[kInterfacesTable].push_back({{"Name", name}});
    machine_.wmi.classes[kAdaptersTable].push_back({{"Name", name},
                                                    {"ProductName", name},
                                                    {"Description", name},
                                                    {"AdapterType", "Ethernet 802.3"},
                                                    {"MACAddress", Mac(number)},
                                                    {"Manufacturer", "Maker"},
                                                    {"PNPDeviceID", "PCI\\" + std::to_string(number)},
                                                    {"PhysicalAdapter", true},
                                                    {"Speed", "1000000000"},
                                                    {"NetConnectionID", "Connection " + std::to_string(number)},
                                                    {"NetConnectionStatus", 2},
                                                    {"GUID", Guid(number)},
                                                    {"InterfaceIndex", number}});
    machine_.wmi.classes[kConfigurationsTable].push_back(
        {{"Description", name}, {"MACAddress", Mac(number)}, {"DHCPEnabled", true}});
  }

  simulation::WmiRow& AdapterRow(int number) { return Row(kAdaptersTable, number); }
  simulation::WmiRow& ConfigurationRow(int number) { return Row(kConfigurationsTable, number); }

  static std::string Guid(int number) { return "{11111111-0000-4000-8000-000000" + SixDigits(number) + "}"; }
  static std::string Mac(int number) {
    const std::string digits = SixDigits(number);
    return "02:00:00:" + digits.substr(0, 2) + ':' + digits.substr(2, 2) + ':' + digits.substr(4, 2);
  }

  /// Makes every query with this text fail.
  void FailQueries(const std::string& text) {
    machine_.wmi.failures.push_back({text, tests::kAccessDenied, std::nullopt, 0});
  }

  /// Runs the inventory on the machine as it is now.
  types::NetworkInterfaces Inventory() {
    simulation::UseMachine(machine_);
    return network_.PerformNetworkInterfaceQueries();
  }

  /// Runs the inventory and then the pass over general connections.
  types::NetworkInterfaces GeneralConnections() {
    types::NetworkInterfaces interfaces = Inventory();
    network_.HandleGeneralConnInfo(interfaces);
    return interfaces;
  }

  /// Runs the inventory and then the Wi-Fi pass.
  types::NetworkInterfaces WlanInfo() {
    types::NetworkInterfaces interfaces = Inventory();
    network_.HandleWlanInfo(interfaces);
    return interfaces;
  }

  simulation::Machine machine_;
  tests::RecordingLog log_;
  shared::wmi::WMIClient wmi_{tests::kWmiNamespace};
  NetworkInfoMsg::SampleRows rows_;
  NetworkInfoMsg network_{&wmi_, &rows_};
  NetworkInspection inspection_{network_};

 private:
  static std::string SixDigits(int number) { return std::to_string(1'000'000 + number).substr(1); }

  simulation::WmiRow& Row(const char* table, int number) {
    return machine_.wmi.classes[table].at(static_cast<std::size_t>(number - 1));
  }

  int interfaces_ = 0;
};

}  // namespace zt::telemetry::collector::performancesamples
