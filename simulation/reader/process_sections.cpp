#include "simulation/reader/sections.h"
#include "simulation/reader/time_text.h"

namespace zt::simulation::reader {
namespace {

constexpr std::size_t kFractionDigits = 7;

}  // namespace

void Read(const Value& value, Session& session) {
  ReadObject(value, {{"tick_counts_ms", To(session.tick_counts_ms)},
                     {"maximum_touches", To(session.maximum_touches)},
                     {"last_input_tick_ms", To(session.last_input_tick_ms)},
                     {"number", To(session.number)}});
}

void Read(const Value& value, Window& window) {
  ReadObject(value,
             {{"visible", To(window.visible)}, {"has_owner", To(window.has_owner)}, {"title", To(window.title)}});
}

void Read(const Value& value, Process& process) {
  const auto read_created = [&](const Value& created) {
    process.created_100ns = ReadMoment(created, kFractionDigits).count();
  };
  ReadObject(value, {{"id", To(process.id)},
                     {"created", read_created},
                     {"user_100ns", To(process.user_100ns)},
                     {"kernel_100ns", To(process.kernel_100ns)},
                     {"peak_working_set_bytes", To(process.peak_working_set_bytes)},
                     {"working_set_bytes", To(process.working_set_bytes)},
                     {"exit_code", To(process.exit_code)},
                     {"wait", To(process.wait)},
                     {"elevated", To(process.elevated)},
                     {"open_for_reading", To(process.open_for_reading)},
                     {"open_for_query", To(process.open_for_query)},
                     {"times", To(process.times)},
                     {"memory", To(process.memory)},
                     {"token", To(process.token)},
                     {"windows", To(process.windows)}});
}

}  // namespace zt::simulation::reader
