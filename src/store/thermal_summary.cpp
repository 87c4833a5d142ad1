#include "store/thermal_summary.h"

#include <cmath>
#include <cstdint>
#include <new>
#include <optional>
#include <string>

#include "messages/record_parts.h"
#include "types/conversions.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using contract::upload::log::PcLogPerformanceSamplesAsCDM_HwInfo;
using contract::upload::log::PcLogPerformanceSamplesAsCDM_HwInfo_Fans;
using contract::upload::log::TemperatureSensor;
using shared::wmi::WMIClient;

constexpr wchar_t kProcessorQuery[] = L"SELECT DeviceID, LoadPercentage FROM Win32_Processor";
constexpr std::size_t kMaxProcessors = 32;
constexpr char kThermalIdSuffix[] = "-TH";

struct Processor {
  std::string device_id;
  float load_percent = 0;
};

// The average tachometer speeds and the duty cycle of one fan over an hour.
struct FanAverages {
  float current = 0;
  float target = 0;
  float step = 0;
};

// The processors that WMI lists; absent when the query fails.
std::optional<std::vector<Processor>> QueryProcessors(WMIClient& wmi) {
  const std::int32_t status = wmi.ExecQuery(kProcessorQuery);
  std::vector<Processor> processors;
  while (processors.size() < kMaxProcessors && wmi.Next()) {
    Processor& processor = processors.emplace_back();
    wmi.GetValue(L"DeviceID", processor.device_id);
    wmi.GetValue(L"LoadPercentage", processor.load_percent);
  }
  if (status != shared::wmi::kSuccess) return std::nullopt;
  return processors;
}

// The same where the client gives up: that costs the processors' section like a query that fails, and not the cycle.
std::optional<std::vector<Processor>> ListProcessors(WMIClient& wmi) {
  try {
    return QueryProcessors(wmi);
  } catch (const std::bad_alloc&) {
    throw;  // keeps the samples for a cycle with memory
  } catch (...) {
    return std::nullopt;
  }
}

// One entry stands for the whole machine: the last processor's id, and the last load that is a number.
void AddProcessorEntry(const std::vector<Processor>& processors, PcLogPerformanceSamplesAsCDM_HwInfo& hw_info) {
  auto& entry = AddEntry(*hw_info.mutable_cpus_info());
  for (const Processor& processor : processors) {
    entry.set_device_id(processor.device_id);
    if (!std::isnan(processor.load_percent)) entry.set_utilization_percent(processor.load_percent);
  }
}

float Average(const SummaryRow& row, const char* column) {
  return std::stof(row.at(column));
}

void SetSensor(TemperatureSensor& sensor, const char* name, float celsius) {
  sensor.set_sensor_name(name);
  sensor.set_temperature_celsius(TruncateToUint32(celsius));
}

void AddProcessorTemperature(const SummaryRow& row, PcLogPerformanceSamplesAsCDM_HwInfo& hw_info) {
  if (hw_info.cpus_info().empty()) return;
  const float celsius = Average(row, "cpu_temp_avg");
  SetSensor(AddEntry(*hw_info.mutable_cpus_info(0)->mutable_temperature_sensors_info()), "cpu_temp", celsius);
}

// Both readings are parsed before anything is added: one alone is not reported.
void AddBoardTemperatures(const SummaryRow& row, PcLogPerformanceSamplesAsCDM_HwInfo& hw_info) {
  const float external = Average(row, "ext_sensor_avg");
  const float local = Average(row, "loc_sensor_avg");
  using Hardware = PcLogPerformanceSamplesAsCDM_HwInfo;
  auto& board = OpenSection(hw_info, &Hardware::mutable_system_board_info, &Hardware::clear_system_board_info);
  SetSensor(AddEntry(*board.mutable_temperature_sensors_info()), "ext_sensor", external);
  SetSensor(AddEntry(*board.mutable_temperature_sensors_info()), "loc_sensor", local);
}

void AddStatistic(PcLogPerformanceSamplesAsCDM_HwInfo_Fans& fan, const char* name, float value) {
  auto& statistic = AddEntry(*fan.mutable_fan_statistics_info());
  statistic.set_fan_stat_name(name);
  statistic.set_fan_stat_value(value);
}

// A fan whose figures are all 0 is not there, or stood still all hour: it is not reported. The tachometer speeds lose
// their fraction, the duty cycle keeps it.
void AddFan(std::uint32_t number, const FanAverages& averages, PcLogPerformanceSamplesAsCDM_HwInfo& hw_info) {
  if (averages.step == 0 && averages.current == 0 && averages.target == 0) return;
  auto& fan = AddEntry(*hw_info.mutable_fans_info());
  fan.set_fan_id(number);
  if (averages.step != 0) AddStatistic(fan, "duty_cycle", averages.step);
  if (averages.current != 0) AddStatistic(fan, "tach_current", static_cast<float>(TruncateToUint32(averages.current)));
  if (averages.target != 0) AddStatistic(fan, "tach_target", static_cast<float>(TruncateToUint32(averages.target)));
}

// All readings are parsed before a fan is added: one that is missing drops both fans.
void AddFans(const SummaryRow& row, PcLogPerformanceSamplesAsCDM_HwInfo& hw_info) {
  FanAverages first;
  FanAverages second;
  first.current = Average(row, "fan1_current_tach_speed_avg");
  first.target = Average(row, "fan1_target_tach_speed_avg");
  second.current = Average(row, "fan2_current_tach_speed_avg");
  second.target = Average(row, "fan2_target_tach_speed_avg");
  first.step = Average(row, "fan1_speed_step_avg");
  second.step = Average(row, "fan2_speed_step_avg");
  AddFan(1, first, hw_info);
  AddFan(2, second, hw_info);
}

std::uint32_t NumberOfSamples(const SummaryRow& row) {
  return static_cast<std::uint32_t>(std::stoull(row.at("num_samples")));
}

// The processor entry keeps its id and load for the next hour; everything that belongs to the hour goes.
void ResetThermalHour(PcLogPerformanceSamplesAsCDM& record) {
  ClearStamps(record);
  auto& hw_info = OpenHardware(record);
  if (!hw_info.cpus_info().empty()) hw_info.mutable_cpus_info(0)->clear_temperature_sensors_info();
  hw_info.clear_system_board_info();
  hw_info.clear_fans_info();
}

// Runs one block of an hour. A reading that is missing or no number abandons the rest of its block, without a word.
// That there is no memory is no fault of the reading.
template <typename Block>
void Guarded(const Block& block) {
  try {
    block();
  } catch (const std::bad_alloc&) {
    throw;
  } catch (...) {
    return;
  }
}

}  // namespace

void SendThermalHours(const std::vector<SummaryRow>& hours, shared::wmi::WMIClient& wmi, const SendRecord& send) {
  if (hours.empty()) return;
  const auto processors = ListProcessors(wmi);

  PcLogPerformanceSamplesAsCDM record;
  auto& hw_info = OpenHardware(record);
  if (processors.has_value()) AddProcessorEntry(*processors, hw_info);
  for (const SummaryRow& hour : hours) {
    Guarded([&] { AddProcessorTemperature(hour, hw_info); });
    Guarded([&] { AddBoardTemperatures(hour, hw_info); });
    Guarded([&] { AddFans(hour, hw_info); });
    Guarded([&] {
      StampHour(hour, kThermalIdSuffix, NumberOfSamples(hour), record);
      send(record);
    });
    ResetThermalHour(record);
  }
}

}  // namespace zt::telemetry::collector::performancesamples
