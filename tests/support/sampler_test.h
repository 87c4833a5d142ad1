#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "messages/perf_messages.h"
#include "simulation/machine.h"
#include "support/wmi_namespace.h"
#include "zt/shared/wmi/wmi_client.h"
#include "zt/telemetry/common/error.h"

namespace zt::telemetry::collector::performancesamples {

using common::Error;

/// A sampler over a simulated machine, by itself: without a collector, a host or a log.
class SamplerTest : public testing::Test {
 protected:
  using HwInfo = contract::upload::log::PcLogPerformanceSamplesAsCDM_HwInfo;

  /// Puts the machine in force as it is now. What is sampled then is added to the shared record.
  void UseMachine() {
    simulation::UseMachine(machine_);
    PerfMessages::Init(this, 50);
  }

  /// One pass of a sampler with these clients.
  template <typename Sampler, typename... Clients>
  void Populate(Clients*... clients) {
    UseMachine();
    Sampler(clients...).PopulateStorageAndUploadProtos();
  }

  /// The same into an empty record.
  template <typename Sampler, typename... Clients>
  void PopulateEmpty(Clients*... clients) {
    PerfMessages::static_cdm_.reset();
    Populate<Sampler>(clients...);
  }

  /// One pass of a copy of `original`, as of the class that all samplers have in common.
  template <typename Sampler>
  void PopulateByCopy(const Sampler& original) {
    UseMachine();
    const PerfMessages& base = original;
    Sampler(base).PopulateStorageAndUploadProtos();
  }

  /// The error that `pass` ends with.
  template <typename Pass>
  static Error FailureOf(const Pass& pass) {
    try {
      pass();
    } catch (const Error& error) {
      return error;
    }
    ADD_FAILURE() << "no error was thrown";
    return {};
  }

  /// The hardware's section of the shared record.
  static const HwInfo& Hardware() { return PerfMessages::static_cdm_->hw_info(); }

  simulation::Machine machine_;
  shared::wmi::WMIClient wmi_{tests::kWmiNamespace};
};

}  // namespace zt::telemetry::collector::performancesamples
