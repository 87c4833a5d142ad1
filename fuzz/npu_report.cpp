// The JSON of the NPU library.
#include <exception>
#include <memory>

#include "checked_record.h"
#include "json_mutation.h"
#include "samplers/npu_msg.h"
#include "simulation/machine.h"
#include "zt/telemetry/common/error.h"

namespace {

using zt::telemetry::collector::performancesamples::NPUMsg;
using zt::telemetry::collector::performancesamples::PcLogPerformanceSamplesAsCDM;
using zt::telemetry::collector::performancesamples::PerfMessages;

constexpr int kMostNpus = 32;

// As the cycle does, where a builder's exception costs its own section.
void Populate(NPUMsg& builder) {
  try {
    builder.PopulateStorageAndUploadProtos();
  } catch (const zt::telemetry::common::Error&) {
  } catch (const std::exception&) {
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static NPUMsg builder;
  zt::simulation::Machine machine;
  machine.npu_report = zt::fuzz::TextOf(data, size);
  zt::simulation::UseMachine(std::move(machine));
  PerfMessages::static_cdm_ = std::make_shared<PcLogPerformanceSamplesAsCDM>();
  Populate(builder);
  zt::fuzz::Require(PerfMessages::static_cdm_->hw_info().npus_info_size() <= kMostNpus, "there are at most 32 NPUs");
  zt::fuzz::CheckRecord(*PerfMessages::static_cdm_);
  return 0;
}
