#pragma once

#include <algorithm>
#include <limits>
#include <string>

#include "samplers/gpu/adlx_api.h"
#include "simulation/calls.h"
#include "simulation/machine.h"
#include "simulation/vendors/counted_interface.h"

namespace zt::simulation {

namespace adlx = telemetry::collector::performancesamples::adlx;
using namespace adlx;

inline ADLX_RESULT ToResult(std::uint32_t status) {
  return static_cast<ADLX_RESULT>(status);
}

/// Writes a fact, or gives its failure, or what a disturbed call gives.
template <typename T>
ADLX_RESULT Give(const std::string& call, const Answer<T>& answer, T& target) {
  const Disturbance met = Announce(call, {Disturbance::kFails, Disturbance::kAbsurd});
  if (met == Disturbance::kFails) return ADLX_FAIL;
  if (met == Disturbance::kAbsurd) target = std::numeric_limits<T>::max();
  if (met == Disturbance::kAbsurd) return ADLX_OK;
  if (const auto* failure = std::get_if<Failure>(&answer)) return static_cast<ADLX_RESULT>(failure->status);
  target = std::get<T>(answer);
  return ADLX_OK;
}

/// A card. Its facts are those of the moment in which it was handed out.
class Gpu final : public CountedInterface<IADLXGPU> {
 public:
  explicit Gpu(const AdlxGpu& facts) : CountedInterface("IADLXGPU"), facts_(facts) {}

  const AdlxGpu& Facts() const { return facts_; }

  ADLX_RESULT VendorId(const char** text) override { return Text("VendorId", facts_.vendor_id, text); }
  ADLX_RESULT DeviceId(const char** text) override { return Text("DeviceId", facts_.device_id, text); }
  ADLX_RESULT TotalVRAM(std::uint32_t* megabytes) override {
    return Called("TotalVRAM") ? Give("IADLXGPU::TotalVRAM", facts_.total_memory_mb, *megabytes) : ADLX_FAIL;
  }

 private:
  ADLX_RESULT Text(const char* method, const Answer<std::string>& answer, const char** text) {
    if (!Called(method)) return ADLX_FAIL;
    switch (Announce(std::string("IADLXGPU::") + method,
                     {Disturbance::kFails, Disturbance::kNull, Disturbance::kEmpty, Disturbance::kEndlessText})) {
      case Disturbance::kFails:
        return ADLX_FAIL;
      case Disturbance::kNull:
        *text = nullptr;
        return ADLX_OK;
      case Disturbance::kEmpty:
        *text = "";
        return ADLX_OK;
      case Disturbance::kEndlessText:
        *text = EndlessText().c_str();
        return ADLX_OK;
      default:
        break;
    }
    if (const auto* failure = std::get_if<Failure>(&answer)) return static_cast<ADLX_RESULT>(failure->status);
    *text = std::get<std::string>(answer).c_str();
    return ADLX_OK;
  }

  // In their place: a caller who kept one reads what cannot be taken for a text of the card.
  void SpoilTexts() override {
    for (Answer<std::string>* answer : {&facts_.vendor_id, &facts_.device_id}) {
      if (auto* text = std::get_if<std::string>(answer)) std::fill(text->begin(), text->end(), '#');
    }
  }

  AdlxGpu facts_;
};

/// Which metrics a card has.
class MetricsSupport final : public CountedInterface<IADLXGPUMetricsSupport> {
 public:
  explicit MetricsSupport(const AdlxGpu& facts) : CountedInterface("IADLXGPUMetricsSupport"), facts_(facts) {}

  ADLX_RESULT IsSupportedGPUUsage(bool* supported) override {
    return Tell("IsSupportedGPUUsage", facts_.usage_percent.has_value(), supported);
  }
  ADLX_RESULT IsSupportedGPUClockSpeed(bool* supported) override {
    return Tell("IsSupportedGPUClockSpeed", facts_.clock_mhz.has_value(), supported);
  }
  ADLX_RESULT IsSupportedGPUVRAMClockSpeed(bool* supported) override {
    return Tell("IsSupportedGPUVRAMClockSpeed", facts_.memory_clock_mhz.has_value(), supported);
  }
  ADLX_RESULT IsSupportedGPUTemperature(bool* supported) override {
    return Tell("IsSupportedGPUTemperature", facts_.temperature_celsius.has_value(), supported);
  }
  ADLX_RESULT IsSupportedGPUVRAM(bool* supported) override {
    return Tell("IsSupportedGPUVRAM", facts_.memory_used_mb.has_value(), supported);
  }

 private:
  ADLX_RESULT Tell(const char* method, bool is_supported, bool* supported) {
    if (!Called(method)) return ADLX_FAIL;
    if (Fails(std::string("IADLXGPUMetricsSupport::") + method)) return ADLX_FAIL;
    const ADLX_RESULT result = ToResult(facts_.support_questions);
    if (Succeeded(result)) *supported = is_supported;
    return result;
  }

  AdlxGpu facts_;
};

/// A card's figures.
class Metrics final : public CountedInterface<IADLXGPUMetrics> {
 public:
  explicit Metrics(const AdlxGpu& facts) : CountedInterface("IADLXGPUMetrics"), facts_(facts) {}

  ADLX_RESULT GPUUsage(double* percent) override { return Figure("GPUUsage", facts_.usage_percent, percent); }
  ADLX_RESULT GPUClockSpeed(std::int32_t* mhz) override { return Figure("GPUClockSpeed", facts_.clock_mhz, mhz); }
  ADLX_RESULT GPUVRAMClockSpeed(std::int32_t* mhz) override {
    return Figure("GPUVRAMClockSpeed", facts_.memory_clock_mhz, mhz);
  }
  ADLX_RESULT GPUTemperature(double* celsius) override {
    return Figure("GPUTemperature", facts_.temperature_celsius, celsius);
  }
  ADLX_RESULT GPUVRAM(std::int32_t* megabytes) override { return Figure("GPUVRAM", facts_.memory_used_mb, megabytes); }

 private:
  template <typename T>
  ADLX_RESULT Figure(const char* method, const OptionalAnswer<T>& answer, T* target) {
    if (!Called(method)) return ADLX_FAIL;
    if (!answer) return ADLX_NOT_SUPPORTED;
    return Give(std::string("IADLXGPUMetrics::") + method, *answer, *target);
  }

  AdlxGpu facts_;
};

}  // namespace zt::simulation
