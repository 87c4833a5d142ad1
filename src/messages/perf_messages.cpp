#include "messages/perf_messages.h"

#include <array>
#include <utility>

#include "messages/local_time.h"
#include "messages/thermal_reply.h"
#include "zt/shared/smbios/smbios_info.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

// The firmware's thermal query.
constexpr std::uint32_t kThermalCommand = 1;
constexpr std::uint32_t kThermalCommandType = 40;
constexpr auto kThermalReplySize = static_cast<std::uint32_t>(ThermalReply().size());

// What a firmware query without a client ends with: E_POINTER.
constexpr std::uint32_t kNoFirmwareClient = 0x80004003;

// Set when the collector that records are handed to was deleted and no other has taken its place.
bool handle_is_gone = false;

}  // namespace

void* PerfMessages::perf_handle_ = nullptr;
int PerfMessages::event_type_ = 0;
std::shared_ptr<PcLogPerformanceSamplesAsCDM> PerfMessages::static_cdm_;
std::shared_ptr<ThermalZTBiosSamples> PerfMessages::thermal_;
std::shared_ptr<EnergyEMISamples> PerfMessages::energy_;
std::shared_ptr<AmdPmfSamples> PerfMessages::amd_pmf_;

PerfMessages::PerfMessages() : PerfMessages(nullptr, nullptr) {}

PerfMessages::PerfMessages(shared::wmi::WMIClient* wmi_client) : PerfMessages(wmi_client, nullptr) {}

PerfMessages::PerfMessages(shared::ztbios::PrivateBiosWmi* private_bios_wmi)
    : PerfMessages(nullptr, private_bios_wmi) {}

PerfMessages::PerfMessages(shared::wmi::WMIClient* wmi_client, shared::ztbios::PrivateBiosWmi* private_bios_wmi)
    : cdm_(std::make_shared<PcLogPerformanceSamplesAsCDM>()),
      wmi_client_(wmi_client),
      private_bios_wmi_(private_bios_wmi) {}

PerfMessages::PerfMessages(const PerfMessages&) = default;
PerfMessages& PerfMessages::operator=(const PerfMessages&) = default;
PerfMessages::~PerfMessages() = default;

void PerfMessages::Init(void* handle, int event_type) {
  if (static_cdm_ != nullptr) {
    if (handle_is_gone) perf_handle_ = handle;
    handle_is_gone = false;
    return;
  }
  // All of them or none, should memory run out: that the record is there tells the next call that all are.
  auto record = std::make_shared<PcLogPerformanceSamplesAsCDM>();
  record->set_sample_points_actual(1);
  auto thermal = std::make_shared<ThermalZTBiosSamples>();
  auto amd_pmf = std::make_shared<AmdPmfSamples>();
  auto energy = std::make_shared<EnergyEMISamples>();
  static_cdm_ = std::move(record);
  thermal_ = std::move(thermal);
  amd_pmf_ = std::move(amd_pmf);
  energy_ = std::move(energy);
  event_type_ = event_type;
  perf_handle_ = handle;
  handle_is_gone = false;
}

void PerfMessages::ForgetHandle(const void* handle) {
  if (handle == nullptr || perf_handle_ != handle) return;
  perf_handle_ = nullptr;
  handle_is_gone = true;
}

std::string PerfMessages::GetSN() {
  const shared::smbios::SMBiosInfo smbios(nullptr);
  return smbios.GetTypeSysInfo().serial_number.value_or(kUnknownSerialNumber);
}

std::string PerfMessages::GetCurrentLocalTime(const std::string& local_time_with_offset) {
  return RecordForm(local_time_with_offset);
}

std::uint32_t PerfMessages::GetThermalDataFromPrivateBiosWmi(int selector, void* reply) {
  if (private_bios_wmi_ == nullptr) return kNoFirmwareClient;
  const std::array<std::uint8_t, 4> request = {static_cast<std::uint8_t>(selector), 0, 0, 0};
  std::uint32_t return_code = 0;
  const std::int32_t status = private_bios_wmi_->ExecuteCommand(
      kThermalCommand, kThermalCommandType, static_cast<std::uint32_t>(request.size()), request.data(),
      kThermalReplySize, static_cast<std::uint8_t*>(reply), &return_code);
  return status != 0 ? static_cast<std::uint32_t>(status) : return_code;
}

}  // namespace zt::telemetry::collector::performancesamples
