#include "samplers/operating_system/session_figures.h"

#include <cstdint>
#include <optional>

#include "platform/session_clock.h"
#include "samplers/operating_system/failure.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

constexpr char kNoLastInput[] = "Unable to get last input information.";

std::uint64_t WholeMinutes(std::uint64_t milliseconds) {
  constexpr std::uint64_t kMillisecondsPerMinute = 60'000;
  return milliseconds / kMillisecondsPerMinute;
}

}  // namespace

void FillSession(
    contract::upload::log::PcLogPerformanceSamplesAsCDM_OperatingSystemInfo_OperatingSystemSession& session) {
  const std::uint64_t since_boot = platform::TickCountMs();
  // What the field has always carried: analyses tell machines with a touch screen by it.
  session.set_max_user_input_delay_ms(platform::MaximumTouches());
  const std::optional<std::uint32_t> last_input = platform::LastInputTickMs();
  if (!last_input) FailWith(kNoLastInput);
  // The tick of the last input has 32 bits; the difference holds across their wrap, every 49.7 days.
  const std::uint32_t since_input = static_cast<std::uint32_t>(platform::TickCountMs()) - *last_input;
  session.set_time_since_last_boot_minutes(static_cast<float>(WholeMinutes(since_boot)));
  session.set_time_since_last_logon_minutes(static_cast<float>(WholeMinutes(since_input)));
}

}  // namespace zt::telemetry::collector::performancesamples
