#include "fleet/simulate/live_record.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <string>

#include "fleet/simulate/record_texts.h"
#include "host/seed/rounding.h"

namespace zt::telemetry::fleet {
namespace {

namespace chrono = std::chrono;
using host::LaptopHour;
using host::Whole;
using Upload = contract::upload::log::PcLogPerformanceSamplesAsCDM;
using Hardware = contract::upload::log::PcLogPerformanceSamplesAsCDM_HwInfo;
using System = contract::upload::log::PcLogPerformanceSamplesAsCDM_OperatingSystemInfo;

// The figures of the shipped profile that do not change from hour to hour.
constexpr std::uint64_t kMebibyte = host::kBytesOfMebibyte;
constexpr float kPercent = 100;
constexpr std::uint64_t kCardMemoryBytes = 8'585'740'288;
constexpr char kPosture[] = "positionPullForward";
constexpr char kBatterySerial[] = "00042";
constexpr char kBatteryTrackingNumber[] = "6LBTC0A1B2C3D4";
constexpr char kBatteryStatus[] = "192";
constexpr std::uint32_t kBatteryCurrent = 1820;
constexpr double kDesignMillivolts = 11'550;
constexpr std::uint32_t kOwnGraphicsCelsius = 76;
constexpr char kCardIdentity[] = R"(PCI\VEN_8086&DEV_7D55&SUBSYS_00000001&REV_08\3&11583659&0&10)";
constexpr float kCardBusBits = 128;
constexpr char kNpu[] = R"(PCI\VEN_8086&DEV_7D1D&SUBSYS_00000001&REV_04\3&11583659&0&58)";
constexpr float kNpuGibibytes = 16.9033203F;
constexpr float kNpuMemoryHertz = 3'200'000'000;
constexpr float kNpuHertz = 1'400'000'000;
constexpr char kDrive[] = "NVME0000000001";
constexpr char kSecondDrive[] = "MEDIA0000002";
constexpr float kSecondDrivePercent = 25;
constexpr std::uint64_t kPhysicalBytes = 17'179'869'184;
constexpr std::uint32_t kVirtualKibibytes = 19'924'000;
constexpr std::uint32_t kTouchContacts = 10;

// What a program has of the profile.
struct ProgramFacts {
  std::uint32_t reads;
  std::uint32_t writes;
  std::uint32_t priority;
  bool has_window;
  bool is_elevated;
  std::uint64_t first_seconds;  // of a processor
  std::uint64_t first_peak;
};
constexpr std::array<ProgramFacts, host::kLaptopPrograms.size()> kProgramFacts = {{
    {40'960, 20'480, 8, true, false, 345, 700 * kMebibyte},
    {125'000, 3'000, 6, false, false, 98, 384 * kMebibyte},
    {1'536, 700, 8, false, true, 5, 60 * kMebibyte},
    {340, 12, 8, true, false, 65, 200 * kMebibyte},
    {5'000, 1'000, 8, false, false, 0, 0},
    {5'000, 1'000, 8, false, false, 0, 0},
}};

float TwoDecimals(float value) {
  constexpr float kFactor = 100;
  return std::round(value * kFactor) / kFactor;
}

const char* ChargeState(const LaptopHour::Battery& battery) {
  if (battery.rests_on_mains) return "onACNotCharging";
  return battery.discharges ? "discharging" : "charging";
}

void AddBattery(const LaptopHour::Battery& battery, Hardware& hardware) {
  auto& entry = *hardware.add_batteries_info();
  entry.add_battery_status(kBatteryStatus);
  entry.set_charge_rate_mw(static_cast<std::uint32_t>(battery.charge_mw));
  entry.set_cycle_count(battery.cycles);
  entry.set_discharge_rate_mw(battery.discharge_mw);
  entry.set_electric_current(kBatteryCurrent);
  entry.set_full_charge_capacity(static_cast<std::uint32_t>(Whole(battery.full_mwh)));
  entry.set_max_error_percent(1);
  entry.set_remaining_charge_capacity(static_cast<std::uint32_t>(Whole(battery.charge * battery.full_mwh)));
  entry.set_voltage(static_cast<std::uint32_t>(battery.millivolts));
  entry.set_full_charge_capacity_percent(TwoDecimals(static_cast<float>(battery.health * 100)));
  entry.set_remaining_charge_capacity_percent(TwoDecimals(static_cast<float>(battery.charge * 100)));
  entry.set_voltage_percent(
      TwoDecimals(static_cast<float>(battery.millivolts) / static_cast<float>(kDesignMillivolts)));
  entry.set_battery_ct_number(kBatteryTrackingNumber);
  entry.set_battery_serial_number(kBatterySerial);
  entry.set_charge_state(ChargeState(battery));
}

const char* HeldBy(host::HeldClocks held) {
  switch (held) {
    case host::HeldClocks::kIdle:
      return "Clocks are dropping because the GPU is in Idle state";
    case host::HeldClocks::kByPower:
      return "Clocks have been optimized to not exceed set power limits";
    case host::HeldClocks::kByHeat:
      break;
  }
  return "Hardware Thermal Slowdown";
}

void AddCard(const LaptopHour::Card& card, const MachineFacts& facts, Hardware& hardware) {
  auto& entry = *hardware.add_gpus_info();
  entry.set_decoder_utilization_percent(static_cast<float>(card.decoder_percent));
  entry.set_encoder_utilization_percent(static_cast<float>(card.encoder_percent));
  entry.set_gpus_clock_mhz(static_cast<float>(card.clock_mhz));
  entry.set_gpus_utilization_percent(static_cast<float>(card.percent));
  entry.set_memory_bandwidth_gb(kCardBusBits);
  entry.set_memory_clock_mhz(static_cast<float>(card.memory_clock_mhz));
  entry.set_memory_controller_utilization_percent(static_cast<float>(card.memory_bytes) /
                                                  static_cast<float>(kCardMemoryBytes) * kPercent);
  entry.set_memory_used_mb(static_cast<float>(static_cast<double>(card.memory_bytes) / 1'000'000));
  entry.set_video_engine_utilization_percent(0);
  entry.set_temperature_celsius(card.celsius);
  entry.set_bus_id("1");
  entry.set_graphics_card_serial_number(kCardIdentity);
  if (!facts.is_of_older_contract) entry.set_performance_capped_reason(HeldBy(card.held));
}

void AddOwnGraphics(const MachineFacts& facts, Hardware& hardware) {
  auto& entry = *hardware.add_gpus_info();
  entry.set_decoder_utilization_percent(0);
  entry.set_encoder_utilization_percent(0);
  entry.set_gpus_clock_mhz(0);
  entry.set_gpus_utilization_percent(0);
  entry.set_memory_bandwidth_gb(0);
  entry.set_memory_clock_mhz(0);
  entry.set_memory_controller_utilization_percent(0);
  entry.set_memory_used_mb(0);
  entry.set_video_engine_utilization_percent(0);
  entry.set_temperature_celsius(kOwnGraphicsCelsius);
  entry.set_bus_id("0");
  entry.set_graphics_card_serial_number(facts.serial);
  if (!facts.is_of_older_contract) entry.set_performance_capped_reason("unknown");
}

// The list of the cards is walked again after each vendor that answers: the card stands twice in it.
void AddCards(const LaptopHour& hour, const MachineFacts& facts, Hardware& hardware) {
  if (facts.has_card) {
    AddCard(hour.card, facts, hardware);
    AddCard(hour.card, facts, hardware);
  }
  AddOwnGraphics(facts, hardware);
}

void AddNpu(const LaptopHour& hour, Hardware& hardware) {
  auto& entry = *hardware.add_npus_info();
  entry.set_memory_bandwidth_gb(kNpuGibibytes);
  entry.set_memory_clock_mhz(kNpuMemoryHertz);
  entry.set_memory_controller_utilization_percent(0);
  // Shared memory in use wraps from 2 GiB on.
  const auto shared = static_cast<std::int32_t>(static_cast<std::uint32_t>(hour.npu_bytes));
  entry.set_memory_used_mb(static_cast<float>(static_cast<double>(shared) / static_cast<double>(kMebibyte)));
  entry.set_npus_clock_mhz(kNpuHertz);
  auto& sensor = *entry.add_temperature_sensors_info();
  sensor.set_temperature_celsius(static_cast<std::uint32_t>(hour.npu_celsius));
  sensor.set_sensor_name("Temp_0");
  entry.set_device_id(kNpu);
}

void AddDrives(const LaptopHour& hour, const host::LaptopNature& nature, Hardware& hardware) {
  auto& drive = *hardware.add_storage_drives_info();
  const auto size = static_cast<double>(Whole(nature.drive_bytes));
  const auto free = static_cast<double>(Whole(nature.drive_bytes * (1 - hour.drive_used)));
  // In the collector's order of steps, which shows in the last digits.
  drive.set_utilization_percent(std::abs(static_cast<float>(free / size) * kPercent - kPercent));
  drive.set_drive_serial_number(kDrive);
  auto& second = *hardware.add_storage_drives_info();
  second.set_utilization_percent(kSecondDrivePercent);
  second.set_drive_serial_number(kSecondDrive);
}

void AddMemory(const LaptopHour& hour, Hardware& hardware) {
  auto& entry = *hardware.mutable_system_memory_info();
  constexpr std::uint64_t kTotal = kPhysicalBytes / 1000;
  const std::uint64_t used = kTotal - static_cast<std::uint64_t>(hour.free_physical_kib);
  entry.set_total_virtual_memory_kb(kVirtualKibibytes);
  entry.set_used_physical_memory_kb(static_cast<std::uint32_t>(used));
  entry.set_used_virtual_memory_kb(kVirtualKibibytes - static_cast<std::uint32_t>(hour.free_virtual_kib));
  const double percent = static_cast<double>(static_cast<float>(used)) * 100.0 / static_cast<double>(kTotal);
  entry.set_utilization_physical_percent(TwoDecimals(static_cast<float>(percent)));
}

void AddSession(const LaptopHour& hour, System& system) {
  constexpr float kSecondsOfMinute = 60;
  auto& entry = *system.mutable_operating_session_info();
  entry.set_max_user_input_delay_ms(kTouchContacts);
  const auto minutes = [](chrono::seconds time) {
    return std::trunc(static_cast<float>(time.count()) / kSecondsOfMinute);
  };
  entry.set_time_since_last_boot_minutes(minutes(hour.now - hour.started));
  entry.set_time_since_last_logon_minutes(minutes(hour.idle));
}

void AddProgram(std::size_t index, const LaptopHour::Program& hour, const LiveState& state,
                const std::string& start_time, System& system) {
  const ProgramFacts& facts = kProgramFacts[index];
  auto& entry = *system.add_resource_intensive_processes_info();
  entry.set_has_window_title(facts.has_window);
  entry.set_is_elevated(facts.is_elevated);
  auto& use = *entry.mutable_resource_utilization_info();
  constexpr std::uint32_t kDivisor = 1024;
  use.set_io_reads(facts.reads);
  use.set_io_reads_kb(facts.reads / kDivisor);
  use.set_io_writes(facts.writes);
  use.set_io_writes_kb(facts.writes / kDivisor);
  use.set_cpu_utilization_percent(static_cast<float>(hour.percent));
  // The collector keeps the working set as a float.
  const double mebibytes = static_cast<double>(static_cast<float>(hour.memory_bytes)) / static_cast<double>(kMebibyte);
  use.set_memory_utilization_mb(static_cast<float>(std::round(mebibytes * 100) / 100));
  use.set_memory_utilization_peak_mb(static_cast<std::uint32_t>(state.peak_bytes[index] / kMebibyte));
  use.set_total_cpu_time_seconds(static_cast<std::uint32_t>(state.processor_seconds[index]));
  entry.set_base_priority(facts.priority);
  entry.set_executable_file_id(host::kLaptopPrograms[index].name);
  entry.set_start_time(start_time);
  entry.set_status("running");
}

// With an offset that is the difference of the two clocks' hours and minutes without regard to the date.
std::string StartTimeText(chrono::sys_seconds started, chrono::minutes zone) {
  const auto of_day = [](chrono::sys_seconds time) { return time - chrono::floor<chrono::days>(time); };
  const chrono::sys_seconds local = started + zone;
  return WallClockText(local) +
         ZoneText(chrono::floor<chrono::minutes>(of_day(local)) - chrono::floor<chrono::minutes>(of_day(started)));
}

void AddPrograms(const LaptopHour& hour, const MachineFacts& facts, LiveState& state, System& system) {
  constexpr std::uint64_t kSecondsOfPercent = 36;  // of an hour
  const std::string start_time = StartTimeText(hour.started + chrono::minutes(3), facts.zone);
  for (std::size_t i = 0; i < hour.programs.size(); ++i) {
    if (state.is_new) {
      state.processor_seconds[i] = kProgramFacts[i].first_seconds;
      state.peak_bytes[i] = kProgramFacts[i].first_peak;
    }
    state.processor_seconds[i] += static_cast<std::uint64_t>(hour.programs[i].percent) * kSecondsOfPercent;
    state.peak_bytes[i] = std::max(state.peak_bytes[i], hour.programs[i].memory_bytes);
    // Programs that did nothing are not among the busiest.
    if (hour.programs[i].percent > 0) AddProgram(i, hour.programs[i], state, start_time, system);
  }
  state.is_new = false;
}

}  // namespace

void FillLiveRecord(const LaptopHour& hour, const MachineFacts& facts, LiveState& state, Upload& record) {
  record.Clear();
  const std::string local_time = WallClockText(hour.now + facts.zone + facts.clock_error);
  record.set_collection_id(LiveId(facts.serial, local_time));
  record.set_local_time(local_time + ".000Z");
  if (!state.has_sent) record.set_sample_points_actual(1);
  state.has_sent = true;
  Hardware& hardware = *record.mutable_hw_info();
  if (facts.has_battery) AddBattery(hour.battery, hardware);
  hardware.mutable_device_state()->set_device_mode(kPosture);
  AddCards(hour, facts, hardware);
  if (facts.has_npu) AddNpu(hour, hardware);
  AddDrives(hour, facts.nature, hardware);
  if (facts.has_memory) AddMemory(hour, hardware);
  System& system = *record.mutable_operating_system_info();
  AddSession(hour, system);
  AddPrograms(hour, facts, state, system);
}

}  // namespace zt::telemetry::fleet
