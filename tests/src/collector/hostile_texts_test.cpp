// Texts of the machine and of the stored samples that were chosen by somebody with bad intent.
#include <algorithm>
#include <cctype>
#include <string>
#include <string_view>
#include <vector>

#include "network/network_info_msg.h"
#include "network/network_inspection.h"
#include "simulation/profile.h"
#include "support/collector_fixture.h"
#include "support/sample_store_fixture.h"
#include "support/sql_trace.h"
#include "support/wmi_namespace.h"
#include "zt/shared/wmi/wmi_client.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::Contains;
using testing::Each;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::UnorderedElementsAre;

constexpr char kMark[] = "zzmark";
constexpr char kBadText[] = R"(%n%s%x'"`;--\}{ DROP TABLE ThermalData)";

bool IsNumber(const std::string& text) {
  return std::all_of(text.begin(), text.end(), [](unsigned char byte) { return std::isdigit(byte) != 0; });
}

// What a query tells apart by its text stays as it is, and so does a figure.
void Mark(simulation::WmiRow& row) {
  for (auto& [name, value] : row) {
    auto* const text = std::get_if<std::string>(&value);
    if (text != nullptr && name != "PNPClass" && name != "AdapterCompatibility" && !IsNumber(*text)) *text += kMark;
  }
}

// The laptop, on which every text of WMI ends in a mark.
simulation::Machine MarkedLaptop() {
  simulation::Machine machine = simulation::ReadShippedProfile("convertible-laptop");
  for (auto& [name, rows] : machine.wmi.classes) std::for_each(rows.begin(), rows.end(), Mark);
  for (simulation::WmiAssociation& association : machine.wmi.associations) {
    association.of.insert(association.of.size() - 1, kMark);  // inside the closing quote
    std::for_each(association.rows.begin(), association.rows.end(), Mark);
  }
  return machine;
}

// The marked queries since the machine was put in force, up to the mark and what stands before it in the quotes.
std::vector<std::string> MarkedQueries() {
  std::vector<std::string> starts;
  for (const std::string& query : simulation::RecordedQueries()) {
    if (query.find(kMark) == std::string::npos) continue;
    const std::string start = query.substr(0, query.find('\''));
    if (std::find(starts.begin(), starts.end(), start) == starts.end()) starts.push_back(start);
  }
  return starts;
}

class HostileTextsTest : public CollectorTest {
 protected:
  /// What the system counts of the laptop's process of this name.
  static simulation::WmiRow& Row(simulation::Machine& machine, const std::string& process) {
    auto& rows = machine.wmi.classes.at("Win32_PerfFormattedData_PerfProc_Process");
    return *std::find_if(rows.begin(), rows.end(),
                         [&](auto& row) { return row["Name"] == simulation::WmiProperty(process); });
  }
};

TEST_F(HostileTextsTest, ACyclesQueriesHoldTheIdsOfDrivesAlone) {
  simulation::UseMachine(MarkedLaptop());
  Execute(50);
  EXPECT_THAT(MarkedQueries(), UnorderedElementsAre("SELECT SerialNumber FROM Win32_PhysicalMedia WHERE Tag = ",
                                                    "ASSOCIATORS OF {Win32_DiskDrive.DeviceID=",
                                                    "ASSOCIATORS OF {Win32_DiskPartition.DeviceID="));
}

TEST_F(HostileTextsTest, TheNetworksQueriesHoldNamesAndIdsOfInterfacesAlone) {
  simulation::UseMachine(MarkedLaptop());
  shared::wmi::WMIClient wmi(tests::kWmiNamespace);
  NetworkInfoMsg::SampleRows rows;
  NetworkInfoMsg network(&wmi, &rows);
  types::NetworkInterfaces interfaces = network.PerformNetworkInterfaceQueries();
  network.HandleGeneralConnInfo(interfaces);
  EXPECT_THAT(MarkedQueries(),
              UnorderedElementsAre("SELECT * from Win32_NetworkAdapter WHERE Name = ",
                                   "SELECT * from Win32_NetworkAdapter WHERE Description = ",
                                   "SELECT * from Win32_NetworkAdapterConfiguration WHERE Description = "));
}

TEST_F(HostileTextsTest, AProcessWhoseIdIsNoNumberIsInNoQuery) {
  simulation::Machine machine = simulation::ReadShippedProfile("convertible-laptop");
  Row(machine, "compiler")["IDProcess"] = std::string("7820 OR Name='") + kMark + "'";
  simulation::UseMachine(machine);
  Execute(50);
  const std::vector<std::string> queries = simulation::RecordedQueries();
  EXPECT_THAT(queries, Contains(HasSubstr("FROM Win32_Process WHERE ProcessId=4312")));
  EXPECT_THAT(queries, Each(Not(HasSubstr(kMark))));
}

TEST_F(HostileTextsTest, AStatementHoldsNoTextOfASample) {
  tests::SampleStore store = tests::SampleStore::WithTables(folder_.File("ssm.db"));
  const std::string literal = std::string("'") + kMark + "'";
  store.AddThermal("2026-03-07T12:00:30.000Z");
  store.AddNetwork("2026-03-07T12:00:30.000Z", {{"interface_device_id", literal},
                                                {"network_trust_level", literal},
                                                {"radio_type", literal},
                                                {"profile_authentication", literal},
                                                {"profile_encryption", literal}});
  const tests::SqlTrace trace;
  Execute(50);
  EXPECT_THAT(trace.statements, Not(IsEmpty()));
  EXPECT_THAT(trace.statements, Each(Not(HasSubstr(kMark))));
}

TEST_F(HostileTextsTest, AProcessOfAnyNameIsSentUnderIt) {
  simulation::Machine machine = simulation::ReadShippedProfile("convertible-laptop");
  Row(machine, "compiler")["Name"] = kBadText;
  simulation::UseMachine(machine);
  Execute(50);
  std::vector<std::string> names;
  for (const auto& process : OnlySent().operating_system_info().resource_intensive_processes_info()) {
    names.push_back(process.executable_file_id());
  }
  EXPECT_THAT(names, Contains(kBadText));
}

TEST_F(HostileTextsTest, ADriveWhoseIdBreaksItsQueryCostsTheDrivesAlone) {
  simulation::Machine machine = simulation::ReadShippedProfile("convertible-laptop");
  simulation::UseMachine(machine);
  Execute(50);
  tests::PcLogPerformanceSamplesAsCDM expected = sink_->sent.at(0);
  expected.mutable_hw_info()->clear_storage_drives_info();
  for (simulation::WmiRow& row : machine.wmi.classes["Win32_DiskDrive"]) row["DeviceID"] = kBadText;
  simulation::UseMachine(machine);
  EXPECT_THAT(Execute(50), HasSubstr(R"("code":0)"));
  EXPECT_EQ(sink_->sent.at(1).hw_info().SerializeAsString(), expected.hw_info().SerializeAsString());
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
