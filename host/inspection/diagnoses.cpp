#include "host/inspection/diagnoses.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/inspection/graphics_vendors.h"
#include "platform/power_status.h"
#include "platform/session_clock.h"
#include "platform/session_number.h"
#include "zt/shared/battery/zt_batteries.h"
#include "zt/shared/npu/npu_info.h"

namespace zt::telemetry::host::inspection {
namespace {

namespace platform = samples::platform;

// A collection leaves a battery out whose driver does not answer.
Answer LookBehindBatteries(Answer answer) {
  if (answer.state == SourceState::kFailed) return answer;
  if (!platform::BatteryFlag()) return {SourceState::kFailed, "the system does not tell its power status"};
  const std::uint32_t error = shared::battery::ZTBatteries(true, true, nullptr, nullptr).GetReadError();
  return error != 0 ? FailedWith("a battery does not answer", error) : answer;
}

// A collection takes NPUs that cannot be asked for as none.
Answer LookBehindNpus(Answer answer) {
  if (answer.state == SourceState::kFailed) return answer;
  const std::int32_t status = shared::npu::NPUInfo().GetStatus();
  return status != 0 ? FailedWith("the system does not tell all its NPUs", static_cast<std::uint32_t>(status)) : answer;
}

// The figures of a session are its own: a host that runs as a service sees nothing of the user's.
Answer TellSession() {
  const std::optional<std::uint32_t> number = platform::SessionNumber();
  if (!number) return {SourceState::kFailed, "the system does not tell the number of this session"};
  const std::string text = "session " + std::to_string(*number);
  if (*number != platform::kSessionOfServices) return {SourceState::kPresent, text};
  return {SourceState::kPresent, text + ", that of the services: input and windows are not the user's"};
}

// The clock is asked behind the builder, so that the builder reads it as in a collection.
Answer LookBehindSession(Answer answer) {
  if (answer.state == SourceState::kPresent) return TellSession();
  if (answer.state == SourceState::kAbsent || platform::TickCountMs() != 0) return answer;
  return {SourceState::kAbsent, "no session: the clock of the system's start stands still"};
}

}  // namespace

std::span<const Diagnosis> Diagnoses() {
  static const std::vector<Diagnosis> diagnoses = {
      {"Batteries", "no battery", LookBehindBatteries, {}},
      {"Posture", "no posture", nullptr, {}},
      {"Graphics cards", "no card that a vendor's library tells of", nullptr, GraphicsVendors()},
      {"NPUs", "no NPU", LookBehindNpus, {}},
      {"Storage drives", "no drive with an identity", nullptr, {}},
      {"Processes and session", "no figures", LookBehindSession, {}},
  };
  return diagnoses;
}

Diagnosis DiagnosisOf(std::string_view source) {
  const std::span<const Diagnosis> all = Diagnoses();
  const auto found = std::ranges::find(all, source, &Diagnosis::source);
  return found != all.end() ? *found : Diagnosis{source};
}

}  // namespace zt::telemetry::host::inspection
