// The parameters of a host's call, to both forms of it, on a machine on which nothing exists.
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "checking_sink.h"
#include "collector/performance_samples.h"
#include "forgetful_machine.h"
#include "json_mutation.h"
#include "zt/shared/telemetry_storage.h"

namespace {

using zt::fuzz::Require;
using zt::telemetry::collector::performancesamples::PerformanceSamples;

class InputAllocator : public zt::shared::plugin::PluginBufferAllocator {
 public:
  char* Allocate(std::size_t size) const override {
    buffer_.resize(size);
    return buffer_.data();
  }

 private:
  mutable std::vector<char> buffer_;
};

PerformanceSamples& Collector() {
  static PerformanceSamples* const collector = [] {
    zt::telemetry::common::RegisterTelemetrySink(std::make_shared<zt::fuzz::CheckingSink>());
    zt::shared::TelemetryStorage::SetDefaultDBPath("/nonexistent");
    return new PerformanceSamples();
  }();
  return *collector;
}

nlohmann::json Outcome(const char* text) {
  nlohmann::json outcome = nlohmann::json::parse(text, nullptr, /*allow_exceptions=*/false);
  Require(outcome.is_object() && outcome.contains("kind") && outcome.contains("code"),
          "an outcome tells kind and code");
  return outcome;
}

zt::simulation::Machine EmptyMachine() {
  zt::simulation::Machine machine;
  machine.clock = {1772893242, -180, -120};
  return machine;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static zt::fuzz::ForgetfulMachine machine(EmptyMachine());
  machine.Use();
  const std::string params(zt::fuzz::TextOf(data, size));
  // Of exactly the size that a host has to give.
  const auto fixed = std::make_unique<char[]>(PerformanceSamples::kResultCapacity);
  Collector().Execute(params.c_str(), fixed.get());
  const nlohmann::json in_fixed = Outcome(fixed.get());
  // A cycle is most of the time that an input takes, so that the other call has a part of them.
  if (size % 4 != 0) return 0;
  const InputAllocator allocator;
  char* made = nullptr;
  Collector().Execute(params.c_str(), made, allocator);
  const nlohmann::json in_made = Outcome(made);
  Require(in_fixed["kind"] == in_made["kind"] && in_fixed["code"] == in_made["code"], "both calls end alike");
  Require(in_fixed.size() == 2 || in_fixed == in_made, "an outcome that fits is the whole one");
  return 0;
}
