#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "gpu_machine.h"
#include "samplers/gpu/gpu_info_msg.h"
#include "simulation/vendor_record.h"
#include "support/sampler_test.h"
#include "types/graphic_card_info.h"

namespace zt::telemetry::collector::performancesamples {

using contract::upload::log::PcLogPerformanceSamplesAsCDM_HwInfo_GraphicsCardInfo;
using simulation::CurrentVendorRecord;
using types::GraphicCardInfo;

/// One pass of the sampler over a simulated machine.
class GpuSamplerTest : public SamplerTest {
 protected:
  /// Samples the machine into an empty record.
  const HwInfo& Sample(tests::Machine machine) {
    shared::ztbios::PrivateBiosWmi bios;
    return SampleWith(std::move(machine), &wmi_, &bios);
  }

  /// The same with these clients, which may be null.
  const HwInfo& SampleWith(tests::Machine machine, shared::wmi::WMIClient* wmi, shared::ztbios::PrivateBiosWmi* bios) {
    machine_ = std::move(machine);
    PopulateEmpty<GPUInfoMsg>(wmi, bios);
    return Hardware();
  }

  /// The same for a machine that gives one entry.
  const PcLogPerformanceSamplesAsCDM_HwInfo_GraphicsCardInfo& SampleOne(tests::Machine machine) {
    const auto& hardware = Sample(std::move(machine));
    EXPECT_EQ(hardware.gpus_info_size(), 1);
    return hardware.gpus_info(0);
  }

  /// Serial numbers of the entries of the last pass.
  std::vector<std::string> Serials() const {
    std::vector<std::string> serials;
    for (const auto& entry : Hardware().gpus_info()) {
      serials.push_back(entry.graphics_card_serial_number());
    }
    return serials;
  }
};

/// What a back-end gave.
struct Answer {
  Error error;
  std::vector<GraphicCardInfo> cards;
};

/// Asks a back-end of its own once.
template <typename Vendor>
Answer Ask(tests::Machine machine) {
  simulation::UseMachine(std::move(machine));
  Answer answer;
  Vendor vendor;
  answer.error = vendor.QueryValues(&answer.cards);
  return answer;
}

/// All fields of a card in words, for comparing.
inline std::string Describe(const GraphicCardInfo& card) {
  const auto number = [](float value) { return std::isnan(value) ? "NaN" : std::to_string(value); };
  return "serial " + card.serial_number + "\nbus " + std::to_string(card.bus_number) + "\ntemperature " +
         std::to_string(card.temperature_celsius) + "\nclock " + number(card.gpu_clock_mhz) + "\nload " +
         number(card.gpu_utilization_percent) + "\nvideo " + number(card.video_engine_utilization_percent) +
         "\nmemory clock " + number(card.memory_clock_mhz) + "\nmemory used " + number(card.memory_used_mb) +
         "\nmemory share " + number(card.memory_controller_utilization_percent) + "\nbandwidth " +
         number(card.memory_bandwidth_gb) + "\ndecoder " + number(card.decoder_utilization_percent) + "\nencoder " +
         number(card.encoder_utilization_percent) + "\nstatus " + card.status_text;
}

/// How often a function of a vendor's library was called on the current machine.
inline std::uint64_t Calls(const std::string& function) {
  return CurrentVendorRecord().calls[function];
}

/// The calls of the vendors' libraries on the current machine, in their order.
inline const std::vector<std::string>& CallsInOrder() {
  return CurrentVendorRecord().first_calls;
}

/// That every interface was released once, before the library was stopped.
inline void ExpectNoReferenceLeft() {
  EXPECT_EQ(CurrentVendorRecord().live_references, 0);
  EXPECT_THAT(CurrentVendorRecord().faults, testing::IsEmpty());
}

}  // namespace zt::telemetry::collector::performancesamples
