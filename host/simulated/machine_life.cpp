#include "host/machine_life.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include <nlohmann/json.hpp>

#include "host/seed/day_pattern.h"
#include "host/seed/random_numbers.h"
#include "host/seed/rounding.h"
#include "simulation/machine.h"
#include "simulation/profile.h"

namespace zt::telemetry::host {
namespace {

namespace chrono = std::chrono;

constexpr char kLaptop[] = "convertible-laptop";
constexpr double kHoursOfMonth = 720;
constexpr int kHoursOfWeek = 168;
constexpr int kRestartHours = 2;
constexpr double kIdleLoad = 0.1;  // below it nobody is there

constexpr double kFirstHealth = 0.815;
constexpr double kHealthLostInAMonth = 0.03;
constexpr int kHoursOfACycle = 28;
constexpr int kFirstCycles = 412;
constexpr double kEmptyShare = 0.07;  // the laptop is plugged in before its battery is empty
constexpr double kChargingMilliwatts = 24'000;
constexpr double kIdleMilliwatts = 3'500;
constexpr double kBusyMilliwatts = 11'000;
constexpr double kFullShare = 0.985;

constexpr double kFirstUsedShareOfDrive = 0.865;
constexpr double kFilledInAMonth = 0.05;
constexpr std::int64_t kFreeKibibytesAtRest = 10'400'000;
constexpr std::int64_t kFreeVirtualKibibytesAtRest = 14'000'000;
constexpr std::int64_t kKibibytesOfFullLoad = 8'000'000;

constexpr std::int64_t kNpuBytesAtRest = 180'000'000;
constexpr double kNpuBytesOfFullLoad = 2'400'000'000;

constexpr std::uint64_t kClocksIdle = 0x1;
constexpr std::uint64_t kClocksHeldByPower = 0x4;
constexpr std::uint64_t kClocksHeldByHeat = 0x40;

// What a process does: its share of a processor at full load of the machine, and its memory.
struct Program {
  std::uint32_t id;
  const char* name;
  double at_load;  // percent
  double always;   // percent
  std::uint64_t memory_at_rest;
  std::uint64_t memory_of_load;
};

constexpr std::uint64_t kMebibyte = std::uint64_t{1024} * 1024;
constexpr std::array kPrograms = std::to_array<Program>({
    {4312, "video-call", 38, 0, 300 * kMebibyte, 420 * kMebibyte},
    {7820, "compiler", 160, 0, 90 * kMebibyte, 1400 * kMebibyte},
    {1596, "updater", 0, 2, 30 * kMebibyte, 20 * kMebibyte},
    {9004, "editor", 12, 0, 150 * kMebibyte, 200 * kMebibyte},
    {5120, "browser", 45, 1, 700 * kMebibyte, 1800 * kMebibyte},
    {2200, "backup", 3, 4, 120 * kMebibyte, 60 * kMebibyte},
});

bool OnBattery(chrono::sys_seconds utc) {
  constexpr std::array kHours = {8, 9, 10, 11, 12, 16, 17, 19};
  const int hour = MinuteOfDay(utc) / kMinutesPerHour;
  return std::find(kHours.begin(), kHours.end(), hour) != kHours.end();
}

class LaptopLife : public MachineLife {
 public:
  LaptopLife(chrono::sys_seconds begin, std::uint64_t random_seed)
      : begin_(begin),
        started_(begin - chrono::hours(5)),
        random_(random_seed),
        laptop_(simulation::ReadShippedProfile(kLaptop)) {
    AddPrograms();
  }

  bool GoOn(chrono::sys_seconds utc) override {
    const auto hours = chrono::duration_cast<chrono::hours>(utc - begin_).count();
    const auto of_week = hours % kHoursOfWeek;
    if (hours >= kHoursOfWeek && of_week < kRestartHours) {
      started_ = utc + chrono::minutes(35);
      return false;
    }
    const double load = std::clamp(LoadAt(utc) + random_.Between(-0.06, 0.06), 0.01, 1.0);
    const double month = static_cast<double>(hours) / kHoursOfMonth;
    SetClock(utc, load);
    SetBattery(utc, static_cast<int>(hours), load, month);
    SetMemory(load);
    SetDrive(month);
    SetCard(load);
    SetNpu(load);
    SetProcesses(load);
    simulation::UseMachine(laptop_);
    return true;
  }

 private:
  void AddPrograms() {
    auto& loads = laptop_.wmi.classes["Win32_PerfFormattedData_PerfProc_Process"];
    auto& processes = laptop_.wmi.classes["Win32_Process"];
    for (const Program& program : kPrograms) {
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

  void SetClock(chrono::sys_seconds utc, double load) {
    // A collection takes its time, so that records do not stand on the hour.
    const chrono::sys_seconds now = utc + chrono::seconds(Whole(random_.Between(60, 200)));
    laptop_.clock->utc_seconds = now.time_since_epoch().count();
    const auto up = chrono::milliseconds(now - started_);
    idle_ = load < kIdleLoad ? idle_ + chrono::hours(1) : chrono::seconds(Whole(random_.Between(0, 240)));
    idle_ = std::min(idle_, chrono::duration_cast<chrono::seconds>(up));
    const auto ticks = static_cast<std::uint64_t>(up.count());
    laptop_.session.tick_counts_ms = {ticks};
    laptop_.session.last_input_tick_ms = simulation::Answer<std::uint32_t>(
        static_cast<std::uint32_t>(ticks - static_cast<std::uint64_t>(chrono::milliseconds(idle_).count())));
  }

  void SetBattery(chrono::sys_seconds utc, int hours, double load, double month) {
    simulation::Battery& battery = *laptop_.batteries.front();
    const double full = battery.further_capacity_mwh * (kFirstHealth - kHealthLostInAMonth * month);
    const bool on_battery = OnBattery(utc) && charge_ > kEmptyShare;
    const double used = kIdleMilliwatts + kBusyMilliwatts * load;
    const double taken = charge_ < kFullShare ? std::min(kChargingMilliwatts, (1 - charge_) * full) : 0;
    charge_ = std::clamp(charge_ + (on_battery ? -used : taken) / full, kEmptyShare, 1.0);
    battery.full_charge_capacity_mwh = static_cast<std::int32_t>(Whole(full));
    battery.full_charge_percent = static_cast<float>(full / battery.further_capacity_mwh * 100);
    battery.remaining_capacity_mwh = static_cast<std::uint32_t>(Whole(charge_ * full));
    battery.remaining_percent = static_cast<float>(charge_ * 100);
    battery.cycle_count = static_cast<std::uint32_t>(kFirstCycles + hours / kHoursOfACycle);
    battery.temperature_celsius = static_cast<std::int32_t>(Whole(27 + 14 * load));
    battery.voltage_mv = static_cast<std::int32_t>(Whole(10'900 + 1'700 * charge_));
    battery.discharging = on_battery;
    battery.on_ac_not_charging = !on_battery && taken == 0;
    battery.discharge_rate_mw = on_battery ? static_cast<std::uint32_t>(Whole(used)) : 0;
    battery.charge_rate_mw = on_battery ? 0 : static_cast<std::int32_t>(Whole(taken));
  }

  void SetMemory(double load) {
    simulation::WmiRow& system = laptop_.wmi.classes["Win32_OperatingSystem"].front();
    const auto used = Whole(load * static_cast<double>(kKibibytesOfFullLoad));
    system["FreePhysicalMemory"] = std::to_string(kFreeKibibytesAtRest - used);
    system["FreeVirtualMemory"] = std::to_string(kFreeVirtualKibibytesAtRest - used);
    laptop_.wmi.classes["Win32_Processor"].front()["LoadPercentage"] = static_cast<std::int32_t>(Whole(load * 100));
  }

  void SetDrive(double month) {
    for (simulation::WmiAssociation& association : laptop_.wmi.associations) {
      for (simulation::WmiRow& row : association.rows) {
        const auto letter = row.find("DeviceID");
        if (letter == row.end() || letter->second != simulation::WmiProperty(std::string("C:"))) continue;
        constexpr double kSize = 510'000'000'000;
        row["Size"] = std::to_string(Whole(kSize));
        row["FreeSpace"] = std::to_string(Whole(kSize * (1 - kFirstUsedShareOfDrive - kFilledInAMonth * month)));
      }
    }
  }

  void SetCard(double load) {
    simulation::NvmlDevice& card = laptop_.nvml->devices.front();
    const double busy = std::clamp(load * 1.1 - 0.1 + random_.Between(-0.05, 0.05), 0.0, 1.0);
    const auto whole = [](double value) {
      return simulation::Answer<std::uint32_t>(static_cast<std::uint32_t>(Whole(value)));
    };
    card.gpu_percent = whole(busy * 92);
    card.encoder_percent = whole(busy > 0.4 ? 18 * busy : 0);
    card.decoder_percent = whole(busy > 0.2 ? 24 * busy : 2);
    card.temperature_celsius = whole(40 + 44 * busy);
    card.graphics_clock_mhz = whole(210 + 1'900 * busy);
    card.memory_clock_mhz = whole(busy > 0.15 ? 7'001 : 405);
    card.memory_used_bytes =
        simulation::Answer<std::uint64_t>((512 + static_cast<std::uint64_t>(Whole(4'200 * busy))) * kMebibyte);
    card.throttle_reasons = simulation::Answer<std::uint64_t>(busy < 0.1    ? kClocksIdle
                                                              : busy > 0.85 ? kClocksHeldByHeat
                                                                            : kClocksHeldByPower);
  }

  // Blurs the background of calls.
  void SetNpu(double load) {
    nlohmann::json report = nlohmann::json::parse(laptop_.npu_report);
    nlohmann::json& npu = report.at("npu_info").at(0);
    const std::int64_t used = kNpuBytesAtRest + Whole(load * kNpuBytesOfFullLoad);
    npu["adapter_temp_celsius"] = Whole(33 + 34 * load);
    npu["adapter_mem_usage"]["shared"] = used;
    npu["memory_used"] = used;
    laptop_.npu_report = report.dump();
  }

  void SetProcesses(double load) {
    for (const Program& program : kPrograms) {
      const double busy = random_.Between(0.3, 1.0);
      const auto percent = Whole((program.at_load * load + program.always) * busy);
      SetLoad(program.id, percent);
      for (simulation::Process& process : laptop_.processes) {
        if (process.id != program.id) continue;
        process.created_100ns = (started_ + chrono::minutes(3)).time_since_epoch().count() * 10'000'000;
        process.user_100ns += static_cast<std::uint64_t>(percent) * 360'000'000;
        process.working_set_bytes =
            program.memory_at_rest +
            static_cast<std::uint64_t>(Whole(static_cast<double>(program.memory_of_load) * load * busy));
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

  chrono::sys_seconds begin_;
  chrono::sys_seconds started_;
  chrono::seconds idle_{0};
  double charge_ = 0.9;
  RandomNumbers random_;
  simulation::Machine laptop_;
};

}  // namespace

std::unique_ptr<MachineLife> NewMachineLife(chrono::sys_seconds begin, std::uint64_t random_seed) {
  return std::make_unique<LaptopLife>(begin, random_seed);
}

}  // namespace zt::telemetry::host
