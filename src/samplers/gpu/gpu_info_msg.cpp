#include "samplers/gpu/gpu_info_msg.h"

#include <cstdint>
#include <map>
#include <memory>

#include "messages/record_parts.h"
#include "messages/thermal_reply.h"
#include "samplers/gpu/amd_card_info.h"
#include "samplers/gpu/gpu_entry.h"
#include "samplers/gpu/intel_card_info.h"
#include "samplers/gpu/nvidia_card_info.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using types::GraphicCardInfo;
using VendorTable = std::map<int, std::shared_ptr<AbstractGPUVendor>>;

constexpr int kMaximumCards = 32;
constexpr wchar_t kControllersQuery[] = L"SELECT PNPDeviceID FROM Win32_VideoController";

// Without a client (null) there is nobody to ask for Intel's graphics: not asked is as good as not found.
VendorTable MakeVendors(shared::wmi::WMIClient* wmi) {
  VendorTable vendors = {{0, std::make_shared<NvidiaCardInfo>()}, {1, std::make_shared<AmdCardInfo>()}};
  if (wmi != nullptr) vendors.emplace(2, std::make_shared<IntelCardInfo>(*wmi));
  return vendors;
}

}  // namespace

GPUInfoMsg::GPUInfoMsg(const PerfMessages& other) : PerfMessages(other) {}

GPUInfoMsg::GPUInfoMsg(shared::wmi::WMIClient* wmi_client, shared::ztbios::PrivateBiosWmi* private_bios_wmi)
    : PerfMessages(wmi_client, private_bios_wmi) {}

void GPUInfoMsg::PopulateStorageAndUploadProtos() {
  const VendorTable vendors = MakeVendors(wmi_client_);
  std::vector<GraphicCardInfo> cards;
  auto& hardware = OpenHardware(*static_cdm_);
  int written = 0;
  for (const auto& [key, vendor] : vendors) {
    if (vendor->QueryValues(&cards).Failed()) continue;
    // All cards so far, once more after each vendor: consumers of the record expect those of earlier vendors repeated.
    for (GraphicCardInfo& card : cards) {
      if (++written > kMaximumCards) return;
      // What is filled in stays in the list, and is not asked for again.
      if (card.serial_number.empty()) AlternativeSNRetrieval(card.serial_number);
      if (card.temperature_celsius == 0) AlternativeTempRetrieval(card.temperature_celsius, nullptr, nullptr);
      thermal_->set_gpu_temperature(card.temperature_celsius);
      FillEntry(card, AddEntry(*hardware.mutable_gpus_info()));
    }
  }
}

void GPUInfoMsg::AlternativeSNRetrieval(std::string& serial) {
  if (wmi_client_ == nullptr) return;
  try {
    wmi_client_->ExecQuery(kControllersQuery);
    wmi_client_->Next();
    wmi_client_->GetValue(L"PNPDeviceID", serial);
  } catch (...) {
    // A way round a figure that is missing has no errors of its own: it goes on missing.
  }
}

void GPUInfoMsg::AlternativeTempRetrieval(unsigned int& temperature, unsigned long* /*returnCode*/,
                                          std::vector<unsigned char>* /*output*/) {
  try {
    ThermalReply reply{};
    const std::uint32_t outcome = GetThermalDataFromPrivateBiosWmi(kThermalReadings, reply.data());
    if (outcome == 0 && reply[kReadingCount] > 0) temperature = reply[kGraphicsReading];
  } catch (...) {
    // As for the serial number.
  }
}

}  // namespace zt::telemetry::collector::performancesamples
