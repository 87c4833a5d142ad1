#include "host/machine_life.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

#include <nlohmann/json.hpp>

#include "host/seed/laptop_hours.h"
#include "host/seed/rounding.h"
#include "simulation/machine.h"
#include "simulation/profile.h"

namespace zt::telemetry::host {
namespace {

namespace chrono = std::chrono;

constexpr char kLaptop[] = "convertible-laptop";

constexpr std::uint64_t kClocksIdle = 0x1;
constexpr std::uint64_t kClocksHeldByPower = 0x4;
constexpr std::uint64_t kClocksHeldByHeat = 0x40;

std::uint64_t ThrottleReasons(HeldClocks held) {
  if (held == HeldClocks::kIdle) return kClocksIdle;
  return held == HeldClocks::kByHeat ? kClocksHeldByHeat : kClocksHeldByPower;
}

class LaptopLife : public MachineLife {
 public:
  LaptopLife(chrono::sys_seconds begin, std::uint64_t random_seed)
      : hours_(begin, random_seed), laptop_(simulation::ReadShippedProfile(kLaptop)) {
    AddPrograms();
  }

  bool GoOn(chrono::sys_seconds utc) override {
    const std::optional<LaptopHour> hour = hours_.Next(utc);
    if (!hour.has_value()) return false;
    SetClock(*hour);
    SetBattery(hour->battery);
    SetMemory(*hour);
    SetDrive(hour->drive_used);
    SetCard(hour->card);
    SetNpu(*hour);
    SetProcesses(*hour);
    simulation::UseMachine(laptop_);
    return true;
  }

 private:
  void AddPrograms() {
    auto& loads = laptop_.wmi.classes["Win32_PerfFormattedData_PerfProc_Process"];
    auto& processes = laptop_.wmi.classes["Win32_Process"];
    for (const LaptopProgram& program : kLaptopPrograms) {
      const auto id = static_cast<std::int32_t>(program.id);
      const auto is_it = [&program](const simulation::Process& process) { return process.id == program.id; };
      if (std::any_of(laptop_.processes.begin(), laptop_.processes.end(), is_it)) continue;
      loads.push_back({{"Name", std::string(program.name)},
                       {"IDProcess", id},
                       {"PercentProcessorTime", std::string("0")},
                       {"PriorityBase", 8}});
      processes.push_back({{"ProcessId", id},
                           {"Name", std::string(program.name)},
                           {"WriteOperationCount", std::string("1000")},
                           {"ReadOperationCount", std::string("5000")}});
      simulation::Process process;
      process.id = program.id;
      laptop_.processes.push_back(process);
    }
  }

  void SetClock(const LaptopHour& hour) {
    laptop_.clock->utc_seconds = hour.now.time_since_epoch().count();
    const auto ticks = static_cast<std::uint64_t>(chrono::milliseconds(hour.now - hour.started).count());
    laptop_.session.tick_counts_ms = {ticks};
    laptop_.session.last_input_tick_ms = simulation::Answer<std::uint32_t>(
        static_cast<std::uint32_t>(ticks - static_cast<std::uint64_t>(chrono::milliseconds(hour.idle).count())));
  }

  void SetBattery(const LaptopHour::Battery& hour) {
    simulation::Battery& battery = *laptop_.batteries.front();
    battery.full_charge_capacity_mwh = static_cast<std::int32_t>(Whole(hour.full_mwh));
    battery.full_charge_percent = static_cast<float>(hour.health * 100);
    battery.remaining_capacity_mwh = static_cast<std::uint32_t>(Whole(hour.charge * hour.full_mwh));
    battery.remaining_percent = static_cast<float>(hour.charge * 100);
    battery.cycle_count = hour.cycles;
    battery.temperature_celsius = hour.celsius;
    battery.voltage_mv = hour.millivolts;
    battery.discharging = hour.discharges;
    battery.on_ac_not_charging = hour.rests_on_mains;
    battery.discharge_rate_mw = hour.discharge_mw;
    battery.charge_rate_mw = hour.charge_mw;
  }

  void SetMemory(const LaptopHour& hour) {
    simulation::WmiRow& system = laptop_.wmi.classes["Win32_OperatingSystem"].front();
    system["FreePhysicalMemory"] = std::to_string(hour.free_physical_kib);
    system["FreeVirtualMemory"] = std::to_string(hour.free_virtual_kib);
    laptop_.wmi.classes["Win32_Processor"].front()["LoadPercentage"] = static_cast<std::int32_t>(hour.load_percent);
  }

  void SetDrive(double used) {
    for (simulation::WmiAssociation& association : laptop_.wmi.associations) {
      for (simulation::WmiRow& row : association.rows) {
        const auto letter = row.find("DeviceID");
        if (letter == row.end() || letter->second != simulation::WmiProperty(std::string("C:"))) continue;
        const double size = LaptopNature().drive_bytes;
        row["Size"] = std::to_string(Whole(size));
        row["FreeSpace"] = std::to_string(Whole(size * (1 - used)));
      }
    }
  }

  void SetCard(const LaptopHour::Card& hour) {
    simulation::NvmlDevice& card = laptop_.nvml->devices.front();
    const auto answer = [](std::uint32_t value) { return simulation::Answer<std::uint32_t>(value); };
    card.gpu_percent = answer(hour.percent);
    card.encoder_percent = answer(hour.encoder_percent);
    card.decoder_percent = answer(hour.decoder_percent);
    card.temperature_celsius = answer(hour.celsius);
    card.graphics_clock_mhz = answer(hour.clock_mhz);
    card.memory_clock_mhz = answer(hour.memory_clock_mhz);
    card.memory_used_bytes = simulation::Answer<std::uint64_t>(hour.memory_bytes);
    card.throttle_reasons = simulation::Answer<std::uint64_t>(ThrottleReasons(hour.held));
  }

  void SetNpu(const LaptopHour& hour) {
    nlohmann::json report = nlohmann::json::parse(laptop_.npu_report);
    nlohmann::json& npu = report.at("npu_info").at(0);
    npu["adapter_temp_celsius"] = hour.npu_celsius;
    npu["adapter_mem_usage"]["shared"] = hour.npu_bytes;
    npu["memory_used"] = hour.npu_bytes;
    laptop_.npu_report = report.dump();
  }

  void SetProcesses(const LaptopHour& hour) {
    for (std::size_t i = 0; i < kLaptopPrograms.size(); ++i) {
      const LaptopHour::Program& program = hour.programs[i];
      SetLoad(kLaptopPrograms[i].id, program.percent);
      for (simulation::Process& process : laptop_.processes) {
        if (process.id != kLaptopPrograms[i].id) continue;
        process.created_100ns = (hour.started + chrono::minutes(3)).time_since_epoch().count() * 10'000'000;
        process.user_100ns += static_cast<std::uint64_t>(program.percent) * 360'000'000;
        process.working_set_bytes = program.memory_bytes;
        process.peak_working_set_bytes = std::max(process.peak_working_set_bytes, process.working_set_bytes);
      }
    }
  }

  void SetLoad(std::uint32_t id, std::int64_t percent) {
    for (simulation::WmiRow& row : laptop_.wmi.classes["Win32_PerfFormattedData_PerfProc_Process"]) {
      if (row["IDProcess"] == simulation::WmiProperty(static_cast<std::int32_t>(id))) {
        row["PercentProcessorTime"] = std::to_string(percent);
      }
    }
  }

  LaptopHours hours_;
  simulation::Machine laptop_;
};

}  // namespace

std::unique_ptr<MachineLife> NewMachineLife(chrono::sys_seconds begin, std::uint64_t random_seed) {
  return std::make_unique<LaptopLife>(begin, random_seed);
}

}  // namespace zt::telemetry::host
