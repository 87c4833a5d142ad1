#include "swept_cycle.h"

#include <sqlite3.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "host/seed/sample_schema.h"
#include "network/network_info_msg.h"
#include "network/network_inspection.h"
#include "plugin/logger_export.h"
#include "simulation/bios_clients.h"
#include "simulation/handed_out.h"
#include "simulation/profile.h"
#include "simulation/vendor_record.h"
#include "support/sample_store_fixture.h"
#include "zt/shared/telemetry_storage.h"
#include "zt/telemetry/common/error.h"

namespace zt::tests {
namespace {

using telemetry::collector::performancesamples::NetworkInfoMsg;
using telemetry::collector::performancesamples::NetworkInspection;
using telemetry::collector::performancesamples::types::NetworkInterfaceInfo;

constexpr char kDatabase[] = "ssm.db";
constexpr int kScheduled = 50;

// Ten minutes apart, through two hours: one thermal sample and three network samples each.
void AddSamples(SampleStore& store) {
  for (const char* const hour : {"12", "13"}) {
    for (const char* const minute : {"00", "10", "20", "30", "40", "50"}) {
      const std::string time = std::string("2026-03-07T") + hour + ':' + minute + ":30.000Z";
      store.AddThermal(time);
      store.AddNetwork(time);
      store.AddNetwork(time, {{"interface_device_id", "'{B}'"}, {"is_managed", "0"}});
      store.AddNetwork(time, {{"interface_device_id", "'{C}'"}, {"is_vpn_connected", "1"}});
    }
  }
}

std::string MakeDatabase() {
  const TemporaryFolder folder;
  {
    SampleStore store = SampleStore::WithTables(folder.File(kDatabase));
    store.Execute("BEGIN");
    AddSamples(store);
    store.Execute("COMMIT");
  }
  std::ifstream file(folder.Path() / kDatabase, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

const char* SeverityName(plog::Severity severity) {
  return severity == plog::error ? "error" : severity == plog::warning ? "warning" : "info";
}

// A record by what it holds: its time and its identity may be disturbed.
std::string KindOf(const PcLogPerformanceSamplesAsCDM& record) {
  const auto& hardware = record.hw_info();
  const bool thermal = hardware.cpus_info_size() > 0 || hardware.fans_info_size() > 0;
  if (thermal) return "thermal hour";
  return hardware.has_network_info() ? "network hour" : "live";
}

template <typename T>
void Set(Section& section, const std::string& name, const T& value) {
  if constexpr (std::is_same_v<T, std::string>) {
    section.fields[name] = value;
  } else {
    section.fields[name] = std::to_string(value);
  }
}

Section SectionOf(const NetworkInterfaceInfo& info) {
  Section section;
  Set(section, "pnp_device_id", info.pnp_device_id);
  Set(section, "bytes_sent", info.bytes_sent);
  Set(section, "bytes_received", info.bytes_received);
  Set(section, "transmission_rate", info.transmission_rate);
  Set(section, "receive_rate", info.receive_rate);
  Set(section, "nominal_speed", info.nominal_speed);
  Set(section, "has_internet_access", info.has_internet_access);
  Set(section, "is_connected", info.is_connected);
  Set(section, "net_connection_id", info.net_connection_id);
  Set(section, "connection_status", info.connection_status);
  Set(section, "mac_address", info.mac_address);
  Set(section, "network_category", info.network_category);
  Set(section, "manufacturer", info.manufacturer);
  Set(section, "is_physical_adapter", info.is_physical_adapter);
  Set(section, "adapter_type", info.adapter_type);
  Set(section, "dhcp_enabled", info.dhcp_enabled);
  Set(section, "channel", info.channel);
  Set(section, "radio_type", info.radio_type);
  Set(section, "signal_strength", info.signal_strength);
  Set(section, "co_channel_interference_count", info.co_channel_interference_count);
  Set(section, "adjacent_channel_interference_count", info.adjacent_channel_interference_count);
  Set(section, "guid", info.guid);
  Set(section, "interface_index", info.interface_index);
  for (const auto& profile : info.w_lan_profiles) {
    section.fields["w_lan_profiles"] += profile.profile_name + '|' + profile.authentication + '|' + profile.encryption +
                                        (profile.is_current ? "|current;" : ";");
  }
  return section;
}

void Finish(Section& section) {
  for (const auto& [name, value] : section.fields) {
    section.bytes += name + '=' + std::to_string(value.size()) + ':' + value + ';';
  }
}

// Stops the count while what a test keeps is allocated.
class Uncounted {
 public:
  Uncounted() { CountAllocations(false); }
  ~Uncounted() { CountAllocations(true); }
  Uncounted(const Uncounted&) = delete;
  Uncounted& operator=(const Uncounted&) = delete;
};

}  // namespace

SweptCycle::SweptCycle(simulation::Machine machine) : machine_(std::move(machine)) {
  ztSharedInitializeLogger(plog::info, &log_);
  simulation::EndlessText();
}

Outcome SweptCycle::Run(const Plan& plan, std::vector<Call>* met, std::vector<Call>* calls) {
  simulation::UseMachine(machine_);
  Prepare();
  simulation::WatchCalls([&](const Call& call) {
    const Uncounted uncounted;
    if (calls != nullptr) calls->push_back(call);
    for (const auto& [number, kind] : plan) {
      if (number != call.number) continue;
      if (met != nullptr) met->push_back(call);
      return kind != Disturbance::kNone ? kind : call.kinds.front();
    }
    return Disturbance::kNone;
  });
  Outcome outcome;
  CountAllocations(true);
  std::string result = Execute();
  CountAllocations(false);
  simulation::WatchCalls({});
  outcome.result = std::move(result);
  Collect(outcome);
  for (const RecordingLog::Line& line : log_.lines) {
    outcome.log.push_back(std::string(SeverityName(line.severity)) + ": " + line.message);
  }
  log_.lines = {};
  for (const std::string& fault : simulation::CurrentVendorRecord().faults) ++vendor_faults_[fault];
  vendor_references_ += simulation::CurrentVendorRecord().live_references;
  simulation::UseMachine({});
  return outcome;
}

LiveThings SweptCycle::Live() const {
  LiveThings things;
  for (const auto& [kind, count] : simulation::HandedOut()) things[kind] = count;
  things["references of the vendors' interfaces"] = vendor_references_;
  for (const auto& [fault, times] : vendor_faults_) things["fault: " + fault] = times;
  things["firmware clients"] = static_cast<std::int64_t>(simulation::CurrentBiosClients().alive);
  things["bytes of SQLite"] = sqlite3_memory_used();
  things["allocations"] = LiveAllocations();
  CountSystemThings(things);
  return things;
}

CollectionCycle::CollectionCycle(const std::string& machine)
    : SweptCycle(simulation::ReadShippedProfile(machine)), database_(MakeDatabase()) {
  shared::TelemetryStorage::SetDefaultDBPath(folder_.Utf8());
}

void CollectionCycle::Prepare() {
  const std::filesystem::path file = folder_.Path() / kDatabase;
  std::error_code ignored;
  std::filesystem::remove(folder_.File(kDatabase) + "-journal", ignored);
  std::ofstream stream(file, std::ios::binary | std::ios::trunc);
  stream.write(database_.data(), static_cast<std::streamsize>(database_.size()));
}

std::string CollectionCycle::Execute() {
  std::string outcome(shared::plugin::IPluginModule::kResultCapacity, '\0');
  collector_.Execute(("{\"eventType\": " + std::to_string(kScheduled) + "}").c_str(), outcome.data());
  return outcome.c_str();
}

void CollectionCycle::Collect(Outcome& outcome) {
  for (std::size_t i = 0; i < sink_->stored.size(); ++i) {
    AddRecord("stored", std::make_shared<AmdPmfSamples>(sink_->stored[i]), outcome);
  }
  std::map<std::string, int> numbers;
  for (const PcLogPerformanceSamplesAsCDM& record : sink_->sent) {
    const std::string kind = KindOf(record);
    const std::string name = kind == "live" ? kind : kind + ' ' + std::to_string(++numbers[kind]);
    AddRecord(name, std::make_shared<PcLogPerformanceSamplesAsCDM>(record), outcome);
  }
  sink_->stored = {};
  sink_->sent = {};
  SampleStore store(folder_.File(kDatabase));
  Section rows;
  Set(rows, "thermal", store.Value("SELECT COUNT(*) FROM ThermalData"));
  Set(rows, "network", store.Value("SELECT COUNT(*) FROM NetworkData"));
  Finish(rows);
  outcome.sections["rows left"] = std::move(rows);
}

NetworkCycle::NetworkCycle(const std::string& machine) : SweptCycle(simulation::ReadShippedProfile(machine)) {}

std::string NetworkCycle::Execute() {
  std::string result;
  const auto safely = [&result](const char* what, const auto& part) {
    try {
      part();
    } catch (...) {
      const auto error = telemetry::common::Error::FromCurrentException();
      result += std::string(what) + " threw " + error.description + ' ' + error.message + ' ';
    }
  };
  safely("set-up", [&] {
    shared::wmi::WMIClient wmi(shared::wmi::kSystemNamespace);
    NetworkInfoMsg::SampleRows rows;
    NetworkInfoMsg network(&wmi, &rows);
    NetworkInspection inspection(network);
    telemetry::collector::performancesamples::types::NetworkInterfaces interfaces;
    Section machine;
    safely("inventory", [&] { interfaces = network.PerformNetworkInterfaceQueries(); });
    safely("general connections", [&] { network.HandleGeneralConnInfo(interfaces); });
    safely("WLAN", [&] { network.HandleWlanInfo(interfaces); });
    safely("TCP", [&] {
      const auto v4 = inspection.TcpIPv4();
      Set(machine, "tcp_ipv4",
          std::to_string(v4.current_connections) + '|' + std::to_string(v4.failed_connections) + '|' +
              std::to_string(v4.errors_received));
      Set(machine, "tcp_ipv6", inspection.TcpIPv6().failed_connections);
    });
    Set(machine, "is_vpn_connected", network.is_vpn_connected_);
    Set(machine, "has_network_access", network.has_network_access_);
    Set(machine, "has_internet_access", network.has_internet_access_);
    const Uncounted uncounted;
    found_["machine"] = machine;
    for (const auto& [name, info] : interfaces) found_["interface " + name] = SectionOf(info);
  });
  return result;
}

void NetworkCycle::Collect(Outcome& outcome) {
  for (auto& [name, section] : found_) Finish(section);
  outcome.sections = std::move(found_);
  found_ = {};
}

std::unique_ptr<SweptCycle> MakeCycle(const std::string& name) {
  if (name == "network") return std::make_unique<NetworkCycle>("everything");
  return std::make_unique<CollectionCycle>(name);
}

}  // namespace zt::tests
