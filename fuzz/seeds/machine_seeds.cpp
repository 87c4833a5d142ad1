#include <fstream>
#include <iterator>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "collector/performance_samples.h"
#include "messages/local_time.h"
#include "network/network_info_msg.h"
#include "seed_folder.h"
#include "simulation/machine.h"
#include "simulation/profile.h"
#include "zt/shared/telemetry_storage.h"
#include "zt/shared/wmi/wmi_client.h"
#include "zt/telemetry/common/telemetry_sink.h"
#include "zt/text/wide_text.h"

namespace zt::fuzz {
namespace {

using namespace telemetry::collector::performancesamples;
using Json = nlohmann::ordered_json;

// Takes everything and keeps nothing.
class AnySink : public telemetry::common::TelemetrySink {
 public:
  telemetry::common::Error Store(const google::protobuf::Message& /*record*/) override { return {}; }
  telemetry::common::Error Send(const google::protobuf::Message& /*record*/) override { return {}; }
  telemetry::common::Error Send(const std::string& /*text*/) override { return {}; }
};

std::string ReadText(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void AddProfile(const std::string& harness, const Json& profile, SeedFolder& seeds) {
  seeds.Add(harness, profile.dump());
}

// The whole profile, each of its keys alone, and each class of WMI's alone: short inputs change where it matters.
void AddProfiles(const std::string& harness, const Json& profile, SeedFolder& seeds) {
  AddProfile(harness, profile, seeds);
  for (const auto& [key, value] : profile.items()) AddProfile(harness, {{key, value}}, seeds);
  if (!profile.contains("wmi")) return;
  const Json classes = profile["wmi"].value("classes", Json::object());
  for (const auto& [key, rows] : classes.items()) {
    AddProfile(harness, {{"wmi", {{"classes", {{key, rows}}}}}}, seeds);
  }
}

void GatherTexts(const Json& value, std::set<std::string>& texts) {
  if (value.is_string()) texts.insert(value.get<std::string>());
  if (value.is_number()) texts.insert(value.dump());
  if (!value.is_structured()) return;
  for (const Json& member : value) GatherTexts(member, texts);
}

void AddTexts(const Json& profile, SeedFolder& seeds) {
  std::set<std::string> texts;
  GatherTexts(profile, texts);
  for (const std::string& text : texts) {
    seeds.Add("wmi_text", text);
    seeds.Add("adjusted_text", "\x40" + text);
    std::string units;
    for (const wchar_t unit : text::ToWide(text)) {
      units += static_cast<char>(unit & 0xFF);
      units += static_cast<char>(unit >> 8 & 0xFF);
    }
    seeds.Add("wide_text", units);
  }
}

void AddWifiProfiles(const simulation::Machine& machine, SeedFolder& seeds) {
  if (!machine.network.wlan) return;
  for (const simulation::WlanInterface& interface : machine.network.wlan->interfaces) {
    for (const simulation::WlanProfile& profile : interface.profiles) {
      if (!profile.xml) continue;
      const std::string* const xml = std::get_if<std::string>(&*profile.xml);
      if (xml != nullptr) seeds.Add("profile_xml", *xml);
    }
  }
}

// Each adapter of the registry with the identifiers that its name and the vendor's library tell.
void AddAdapters(const simulation::Machine& machine, SeedFolder& seeds) {
  for (const simulation::RegistryKey& root : machine.registry) {
    for (const simulation::RegistryKey& adapter : root.keys) {
      seeds.Add("registry_text", "1002\n744C\n" + adapter.name);
      seeds.Add("registry_text", "0x10DE\n0x26b1\n" + adapter.name);
      for (const simulation::RegistryKey& instance : adapter.keys) {
        for (const auto& [name, location] : instance.values) seeds.Add("location_text", location);
      }
    }
  }
}

void AddQueries(PerformanceSamples& collector, SeedFolder& seeds) {
  collector.Execute(R"({"eventType": 20})", nullptr);
  shared::wmi::WMIClient wmi(shared::wmi::kSystemNamespace);
  NetworkInfoMsg(&wmi, nullptr).PerformNetworkInterfaceQueries();
  for (const std::string& query : simulation::RecordedQueries()) seeds.Add("wql", query);
}

void AddTimes(SeedFolder& seeds) {
  for (const std::int64_t moment : {std::int64_t{0}, std::int64_t{1772893242}, std::int64_t{4102444799}}) {
    const std::string text = OffsetForm(moment);
    seeds.Add("local_time", text);
    seeds.Add("local_time", RecordForm(text));
  }
}

void AddMachine(const Json& profile, PerformanceSamples& collector, SeedFolder& seeds) {
  AddProfiles("machine_profile", profile, seeds);
  AddProfiles("cycle", profile, seeds);
  AddTexts(profile, seeds);
  const simulation::Machine machine = simulation::ParseProfile(profile.dump(), "profile");
  simulation::UseMachine(machine);
  if (!machine.npu_report.empty()) seeds.Add("npu_report", machine.npu_report);
  AddWifiProfiles(machine, seeds);
  AddAdapters(machine, seeds);
  AddTimes(seeds);
  AddQueries(collector, seeds);
}

void AddCalls(SeedFolder& seeds) {
  for (const char* number :
       {"0", "20", "50", "51", "-1", "4294967296", "\"20\"", "20.0", "null", "[20]", "{\"a\":1}"}) {
    seeds.Add("execute", std::string(R"({"eventType": )") + number + "}");
  }
  seeds.Add("execute",
            R"({"eventType":50,"collector":"PerformanceSamples","version":2,"requested":true,"ids":[1,2.5]})");
}

}  // namespace

void AddMachineSeeds(SeedFolder& seeds, const std::filesystem::path& profiles) {
  shared::TelemetryStorage::SetDefaultDBPath("/nonexistent");
  telemetry::common::RegisterTelemetrySink(std::make_shared<AnySink>());
  PerformanceSamples collector;
  for (const auto& file : std::filesystem::directory_iterator(profiles)) {
    AddMachine(Json::parse(ReadText(file.path())), collector, seeds);
  }
  AddCalls(seeds);
}

}  // namespace zt::fuzz
