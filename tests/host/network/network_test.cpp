#include <gmock/gmock.h>

#include "host/failure.h"
#include "support/temporary_folder.h"
#include "tests/host/program_run.h"

namespace zt::telemetry::host {
namespace {

using nlohmann::json;
using nlohmann::ordered_json;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;
using testing::SizeIs;

constexpr char kWifi[] = "Wi-Fi 6E(R) AX Adapter";
constexpr char kWired[] = "USB Ethernet Adapter";

class NetworkCommandTest : public testing::Test {
 protected:
  static ProgramRun Show(const std::string& machine, const std::vector<std::string>& options = {}) {
    std::vector<std::string> arguments = {"network", "--machine", machine};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return RunProgram(arguments);
  }

  static json Report(const std::string& machine) {
    const std::vector<json> lines = JsonLinesOf(Show(machine, {"--format", "json"}).out);
    EXPECT_THAT(lines, SizeIs(1));
    return lines.empty() ? json() : lines[0];
  }

  std::string MachineFile(const std::string& profile) const {
    WriteFile(folder_.Path() / "machine.json", profile);
    return folder_.File("machine.json");
  }

  zt::tests::TemporaryFolder folder_;
};

template <typename Json>
std::vector<std::string> Keys(const Json& object) {
  std::vector<std::string> keys;
  for (const auto& [key, value] : object.items()) keys.push_back(key);
  return keys;
}

TEST_F(NetworkCommandTest, JsonIsOneObjectWithTheAgreedKeys) {
  const ordered_json report = ordered_json::parse(Show("convertible-laptop", {"--format", "json"}).out);
  EXPECT_THAT(Keys(report), ElementsAre("interfaces", "is_vpn_connected", "has_network_access", "has_internet_access",
                                        "tcp_ipv4", "tcp_ipv6"));
  EXPECT_THAT(Keys(report["interfaces"]), ElementsAre(kWired, kWifi));
  EXPECT_THAT(Keys(report["tcp_ipv4"]), ElementsAre("current_connections", "failed_connections", "errors_received"));
  EXPECT_THAT(Keys(report["tcp_ipv6"]), ElementsAre("failed_connections"));
}

TEST_F(NetworkCommandTest, AnInterfaceHasItsFieldsInTheOrderOfTheRecord) {
  const ordered_json report = ordered_json::parse(Show("convertible-laptop", {"--format", "json"}).out);
  const ordered_json expected = ordered_json::parse(R"({
      "pnp_device_id": "PCI\\VEN_8086&DEV_7E40&SUBSYS_00000001&REV_20\\3&11583659&0&A3",
      "bytes_sent": 734003200, "bytes_received": 1073741824, "transmission_rate": 1100000.0,
      "receive_rate": 1200000.0, "nominal_speed": 1200000000.0, "reserved_flag": false, "has_internet_access": true,
      "is_connected": true, "net_connection_id": "Wi-Fi", "connection_status": "Connected",
      "mac_address": "02:00:00:00:00:01", "network_category": "Private", "manufacturer": "Intel Corporation",
      "reserved_text": "", "reserved_number": 0, "is_physical_adapter": true, "adapter_type": "Ethernet 802.3",
      "dhcp_enabled": true, "channel": 36, "radio_type": "802.11ax", "signal_strength": 87.0,
      "co_channel_interference_count": 1, "adjacent_channel_interference_count": 6,
      "w_lan_profiles": [
        {"profile_name": "Home", "authentication": "WPA2PSK", "encryption": "AES", "is_current": true},
        {"profile_name": "Café Guest", "authentication": "", "encryption": "", "is_current": false}],
      "guid": "{11111111-0000-4000-8000-000000000001}", "interface_index": 5})");
  EXPECT_EQ(report["interfaces"][kWifi].dump(), expected.dump());
}

TEST_F(NetworkCommandTest, TheFlagsAndTheTcpCountersAreTheMachines) {
  const json report = Report("convertible-laptop");
  EXPECT_EQ(report["is_vpn_connected"], true);
  EXPECT_EQ(report["has_network_access"], true);
  EXPECT_EQ(report["has_internet_access"], true);
  EXPECT_EQ(report["tcp_ipv4"], json::parse(R"({"current_connections": 41, "failed_connections": 12,
                                                "errors_received": 0})"));
  EXPECT_EQ(report["tcp_ipv6"]["failed_connections"], 3);
}

TEST_F(NetworkCommandTest, AnInterfaceThatNothingIsKnownOfKeepsItsDefaults) {
  const json report =
      Report(MachineFile(R"({"wmi": {"classes": {"Win32_PerfRawData_Tcpip_NetworkInterface": [{"Name": "A"}]}}})"));
  EXPECT_EQ(report["interfaces"]["A"]["interface_index"], 4294967295U);
  EXPECT_EQ(report["interfaces"]["A"]["connection_status"], "Unknown");
  EXPECT_EQ(report["interfaces"]["A"]["w_lan_profiles"], json::array());
}

TEST_F(NetworkCommandTest, ACutLetterDoesNotSpoilTheJson) {
  const json report = Report(MachineFile(R"({
      "wmi": {"classes": {"Win32_PerfRawData_Tcpip_NetworkInterface": [{"Name": "A"}],
                          "Win32_NetworkAdapter": [{"Name": "A", "ProductName": "A", "GUID": "{1}"}]}},
      "network": {"manager": {}, "wlan": {"interfaces": [{"guid": "{1}", "profiles": [
          {"name": "P", "flags": 1, "xml": "ÄÖÜäöü</encryption>"}]}]}}})"));
  EXPECT_EQ(report["interfaces"]["A"]["w_lan_profiles"][0]["encryption"], "\xEF\xBF\xBD");
}

TEST_F(NetworkCommandTest, TextShowsConnectionInterfacesWifiAndTcp) {
  const ProgramRun run = Show("convertible-laptop");
  EXPECT_EQ(run.exit_code, kExitDone);
  const std::vector<std::string> lines = Lines(run.out);
  EXPECT_THAT(lines, Contains("CONNECTION"));
  EXPECT_THAT(lines, Contains(MatchesRegex("  VPN +yes *")));
  EXPECT_THAT(lines, Contains("INTERFACES"));
  EXPECT_THAT(lines, Contains(HasSubstr("Media Disconnected")));
  EXPECT_THAT(lines, Contains("WI-FI: Wi-Fi 6E(R) AX Adapter"));
  EXPECT_THAT(lines, Contains(MatchesRegex("  Channel +36 *")));
  EXPECT_THAT(lines, Contains(MatchesRegex("  Channels that overlap +6 *")));
  EXPECT_THAT(lines, Contains(MatchesRegex("  Home +WPA2PSK +AES +yes *")));
  EXPECT_THAT(lines, Contains(MatchesRegex("  Café Guest +- +- +no *")));
  EXPECT_THAT(lines, Contains(MatchesRegex("  IPv4 +41 +12 +0 *")));
  EXPECT_THAT(lines, Not(Contains("WI-FI: USB Ethernet Adapter")));
}

TEST_F(NetworkCommandTest, ALogLineOfThePassesIsShownOnStandardError) {
  EXPECT_THAT(Show("convertible-laptop").err, HasSubstr("Failed to retrieve WLAN profile for Café Guest"));
}

TEST_F(NetworkCommandTest, AMachineWithoutAListShowsTheRestAndFails) {
  const ProgramRun run = Show("bare", {"--format", "json"});
  EXPECT_EQ(run.exit_code, kExitFailed);
  EXPECT_THAT(run.err, HasSubstr("network: Failed to create NetworkListManager instance. (status 0x80040154)"));
  EXPECT_THAT(run.err, HasSubstr("Failed to open handle to WLAN interface"));
  EXPECT_THAT(json::parse(run.out)["interfaces"], IsEmpty());
}

// Every line that tells of a failure, in order.
std::vector<std::string> Failures(const ProgramRun& run) {
  std::vector<std::string> failures;
  for (const std::string& line : Lines(run.err)) {
    if (line.starts_with("network: ")) failures.push_back(line);
  }
  return failures;
}

TEST_F(NetworkCommandTest, EachPassThatFailsIsToldAndFailsTheCommand) {
  const ProgramRun run = Show("failing");
  EXPECT_EQ(run.exit_code, kExitFailed);
  EXPECT_THAT(Failures(run),
              ElementsAre("network: Error while querying Win32_PerfRawData_Tcpip_NetworkInterface (status 0x80041003)",
                          "network: Failed to initialize COM.-2147024882", "network: COM initialization failed",
                          "network: Error occurred while retrieving WLAN interface statistics: "
                          "Failed to open handle to WLAN interface",
                          "network: IPV4 statistics not found", "network: IPV6 statistics not found"));
}

TEST_F(NetworkCommandTest, AFailureIsToldWhateverTheLogShows) {
  const ProgramRun run = Show("failing", {"--log-level", "none"});
  EXPECT_EQ(run.exit_code, kExitFailed);
  EXPECT_EQ(Lines(run.err), Failures(run));
}

TEST_F(NetworkCommandTest, ATableThatCannotBeQueriedIsOneFailureHoweverOftenItIsAsked) {
  const ProgramRun run = Show(MachineFile(R"({
      "wmi": {"classes": {"Win32_PerfRawData_Tcpip_NetworkInterface": [{"Name": "A"}, {"Name": "B"}]},
              "failures": [{"query_contains": "Configuration", "status": 2147749891}]},
      "network": {"manager": {}, "tcp_v4": {}, "tcp_v6": {}}})"));
  EXPECT_EQ(run.exit_code, kExitFailed);
  EXPECT_THAT(Failures(run),
              ElementsAre("network: Error while querying Win32_NetworkAdapterConfiguration (status 0x80041003)"));
}

TEST_F(NetworkCommandTest, AMachineOnWhichNothingFailsIsDone) {
  for (const char* machine : {"convertible-laptop", "workstation"}) {
    const ProgramRun run = Show(machine);
    EXPECT_EQ(run.exit_code, kExitDone) << machine << run.err;
    EXPECT_THAT(Failures(run), IsEmpty());
  }
}

TEST_F(NetworkCommandTest, AMachineWithoutAWlanServiceThatRunsHasNoFailureOfIt) {
  const std::string start = R"({"network": {"manager": {}, "tcp_v4": {}, "tcp_v6": {})";
  EXPECT_EQ(Show(MachineFile(start + "}}")).exit_code, kExitDone) << "there is none";
  EXPECT_EQ(Show(MachineFile(start + R"(, "wlan": {"open": 1062}}})")).exit_code, kExitDone) << "it does not run";
}

TEST_F(NetworkCommandTest, AWlanServiceThatRefusesIsAFailure) {
  const ProgramRun run =
      Show(MachineFile(R"({"network": {"manager": {}, "tcp_v4": {}, "tcp_v6": {}, "wlan": {"open": 5}}})"));
  EXPECT_EQ(run.exit_code, kExitFailed);
  EXPECT_THAT(Failures(run), ElementsAre("network: Error occurred while retrieving WLAN interface statistics: "
                                         "Failed to open handle to WLAN interface"));
}

TEST_F(NetworkCommandTest, WifiInterfacesThatCannotBeListedAreAFailure) {
  const ProgramRun run =
      Show(MachineFile(R"({"network": {"manager": {}, "tcp_v4": {}, "tcp_v6": {}, "wlan": {"enumerate": 5}}})"));
  EXPECT_EQ(run.exit_code, kExitFailed);
  EXPECT_THAT(Failures(run), ElementsAre("network: Error occurred while retrieving WLAN interface statistics: "
                                         "Failed to enumerate WiFi interfaces"));
}

class NetworkLogTest : public NetworkCommandTest {
 protected:
  ProgramRun OnChannel10(const std::vector<std::string>& options = {}) const {
    return Show(MachineFile(R"({
        "wmi": {"classes": {"Win32_PerfRawData_Tcpip_NetworkInterface": [{"Name": "A"}],
                            "Win32_NetworkAdapter": [{"Name": "A", "ProductName": "A", "GUID": "{1}"}]}},
        "network": {"manager": {}, "tcp_v4": {}, "tcp_v6": {},
                    "wlan": {"interfaces": [{"guid": "{1}", "channel": 10}]}}})"),
                options);
  }
};

TEST_F(NetworkLogTest, InformationIsShownWhenItIsAskedFor) {
  const ProgramRun run = OnChannel10({"--log-level", "info"});
  EXPECT_EQ(run.exit_code, kExitDone);
  EXPECT_THAT(run.err, HasSubstr("connectedChannel 10 not found in frequencyData."));
}

TEST_F(NetworkLogTest, InformationIsNotShownUnlessItIsAskedFor) {
  EXPECT_THAT(OnChannel10().err, IsEmpty());
}

TEST_F(NetworkCommandTest, TextOfAMachineWithoutInterfacesSaysSo) {
  EXPECT_THAT(Lines(Show("bare").out), Contains("  none"));
}

TEST_F(NetworkCommandTest, TheQueriesAreWrittenInTheirOrder) {
  Show("convertible-laptop", {"--queries", folder_.File("queries.txt")});
  const std::vector<std::string> queries = Lines(ReadFile(folder_.Path() / "queries.txt"));
  const std::string by_name = "Name = 'Wi-Fi 6E(R) AX Adapter' OR Name = 'USB Ethernet Adapter'";
  const std::string by_description = "Description = 'Wi-Fi 6E(R) AX Adapter' OR Description = 'USB Ethernet Adapter'";
  EXPECT_THAT(
      queries,
      ElementsAre("SELECT Name, BytesReceivedPersec, BytesSentPersec from Win32_PerfRawData_Tcpip_NetworkInterface",
                  "SELECT * from Win32_NetworkAdapter WHERE " + by_name,
                  "SELECT * from Win32_NetworkAdapterConfiguration WHERE " + by_description,
                  "SELECT * from Win32_NetworkAdapter WHERE " + by_description,
                  "SELECT * from Win32_NetworkAdapterConfiguration WHERE " + by_description,
                  "SELECT Description from Win32_NetworkAdapter WHERE GUID = "
                  "'{11111111-0000-4000-8000-000000000003}'"));
}

TEST_F(NetworkCommandTest, AnOptionOfAnotherCommandIsWrongUsage) {
  EXPECT_EQ(RunProgram({"network", "--event", "50"}).exit_code, kExitWrongUsage);
}

}  // namespace
}  // namespace zt::telemetry::host
