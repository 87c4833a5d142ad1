#include "host/consent/record_places.h"

#include <algorithm>
#include <array>

namespace zt::telemetry::host {
namespace {

constexpr std::string_view kUpload = "zt.telemetry.contract.upload.log.PcLogPerformanceSamplesAsCDM";
constexpr std::string_view kPlatform = "zt.telemetry.contract.storage.device_performance.AmdPmfSamples";
constexpr std::string_view kFirmware = "zt.telemetry.contract.storage.device_performance.ThermalZTBiosSamples";
constexpr std::string_view kEnergy = "zt.telemetry.contract.storage.device_performance.EnergyEMISamples";
constexpr std::array kRecords = {kUpload, kPlatform, kFirmware, kEnergy};

constexpr std::array kSectionPlaces = std::to_array<SectionPlace>({
    {RecordSection::kProcessors, {kUpload, "hw_info.cpus_info"}},
    {RecordSection::kSystemBoard, {kUpload, "hw_info.system_board_info"}},
    {RecordSection::kFans, {kUpload, "hw_info.fans_info"}},
    {RecordSection::kBatteries, {kUpload, "hw_info.batteries_info"}},
    {RecordSection::kBatteries, {kPlatform, "battery_further_capacity_mwh"}},
    {RecordSection::kBatteries, {kPlatform, "battery_full_charge_capacity_mwh"}},
    {RecordSection::kBatteries, {kPlatform, "battery_charge_rate_mw"}},
    {RecordSection::kBatteries, {kPlatform, "battery_remaining_capacity_percent"}},
    {RecordSection::kBatteries, {kFirmware, "battery_temperature"}},
    {RecordSection::kDeviceState, {kUpload, "hw_info.device_state"}},
    {RecordSection::kDeviceState, {kPlatform, "device_mode"}},
    {RecordSection::kMemory, {kUpload, "hw_info.system_memory_info"}},
    {RecordSection::kMemory, {kPlatform, "memory_clock_mhz"}},
    {RecordSection::kGraphicsCards, {kUpload, "hw_info.gpus_info"}},
    {RecordSection::kGraphicsCards, {kFirmware, "gpu_temperature"}},
    {RecordSection::kNpus, {kUpload, "hw_info.npus_info"}},
    {RecordSection::kDrives, {kUpload, "hw_info.storage_drives_info"}},
    {RecordSection::kNetwork, {kUpload, "hw_info.network_info"}},
    {RecordSection::kProcesses, {kUpload, "operating_system_info.resource_intensive_processes_info"}},
    {RecordSection::kSession, {kUpload, "operating_system_info.operating_session_info"}},
});

constexpr std::array kIdentityPlaces = std::to_array<IdentityPlace>({
    {Identity::kSerialNumbers, {kUpload, "hw_info.batteries_info.battery_serial_number"}},
    {Identity::kSerialNumbers, {kUpload, "hw_info.batteries_info.battery_ct_number"}},
    {Identity::kSerialNumbers, {kUpload, "hw_info.gpus_info.graphics_card_serial_number"}},
    {Identity::kSerialNumbers, {kUpload, "hw_info.storage_drives_info.drive_serial_number"}},
    {Identity::kProcessNames, {kUpload, "operating_system_info.resource_intensive_processes_info.executable_file_id"}},
    {Identity::kProcessStartTimes, {kUpload, "operating_system_info.resource_intensive_processes_info.start_time"}},
    {Identity::kInterfaceIdentifiers, {kUpload, "hw_info.network_info.interfaces_info.device_id"}},
    {Identity::kInterfaceIdentifiers, {kUpload, "hw_info.network_info.interfaces_info.network_adapter_name"}},
    {Identity::kWifiProfiles, {kUpload, "hw_info.network_info.interfaces_info.w_lan_profiles.w_lan_profile_name"}},
    {Identity::kDeviceIdentifiers, {kUpload, "hw_info.npus_info.device_id"}},
    {Identity::kDeviceIdentifiers, {kUpload, "hw_info.cpus_info.device_id"}},
});

}  // namespace

std::span<const SectionPlace> SectionPlaces() {
  return kSectionPlaces;
}

std::span<const IdentityPlace> IdentityPlaces() {
  return kIdentityPlaces;
}

bool IsKnownRecord(std::string_view message) {
  return std::ranges::find(kRecords, message) != kRecords.end();
}

}  // namespace zt::telemetry::host
