#include "host/simulate/simulate.h"

#include <fstream>
#include <memory>
#include <optional>

#include "host/collect/hand_over_sink.h"
#include "host/collect/loaded_plugin.h"
#include "host/consent/consented_texts.h"
#include "host/consent/consented_view.h"
#include "host/failure.h"
#include "host/files.h"
#include "host/log_appender.h"
#include "host/log_output.h"
#include "host/machine_life.h"
#include "host/no_stored_samples.h"
#include "host/outbox/keeping_view.h"
#include "host/outbox/outbox.h"
#include "host/program_environment.h"
#include "host/utc_time.h"
#include "host/views/figures.h"
#include "host/views/json_lines.h"

namespace zt::telemetry::host {
namespace {

namespace chrono = std::chrono;

constexpr std::int32_t kFullCollection = 50;
constexpr chrono::sys_days kEarliestBegin = chrono::year{1} / chrono::January / 2;
constexpr int kLockPatienceMs = 1000;

chrono::sys_seconds Begin(const SimulateCommand& command) {
  const auto until = command.until.value_or(chrono::floor<chrono::hours>(chrono::system_clock::now()));
  const auto begin = until - chrono::hours(command.hours);
  if (begin >= kEarliestBegin) return begin;
  throw WrongUsage("--until " + FormatUtcTime(until) + ": " + std::to_string(command.hours) +
                   " hours would begin before the year 1");
}

// Hours of a life, each collected once; how many were.
std::int64_t Collect(const SimulateCommand& command, MachineLife& life, HandOverView& view, std::ostream& err,
                     bool& all_done) {
  const Consent& consent = command.settings.consent;
  LogOutput log(command.settings, err);
  const LogAppender::Target log_target([&log](const plog::Record& record) { log.Write(record); });
  LoadedPlugin plugin(command.plugin.value_or(DefaultPluginFile()), command.log_level, LogAppender::Instance());
  const NoStoredSamples no_samples;
  ConsentedView consented(consent, view);
  const auto sink = std::make_shared<HandOverSink>(consented);
  const SinkRegistration registration(sink);
  const chrono::sys_seconds begin = Begin(command);
  std::int64_t collected = 0;
  for (std::uint32_t hour = 0; hour < command.hours; ++hour) {
    if (!life.GoOn(begin + chrono::hours(hour))) continue;
    const common::Error outcome = plugin.Execute(kFullCollection);
    if (outcome.Failed()) {
      err << "simulate: hour " << hour << " failed: " << ConsentedMessage(consent, outcome.description) << std::endl;
    }
    all_done = all_done && !outcome.Failed();
    ++collected;
  }
  if (sink->FirstFailure().Failed()) {
    throw Failure(kExitFailed, "a hand-over could not be written: " + sink->FirstFailure().description);
  }
  if (consented.HeldBack() > 0) {
    err << "held back as the configuration says: " << consented.HeldBack() << " hand-overs" << std::endl;
  }
  return collected;
}

}  // namespace

int Simulate(const SimulateCommand& command, std::ostream& out, std::ostream& err) {
  if (command.outbox.has_value() && command.output.has_value()) {
    throw WrongUsage("--outbox and --output are both given; expected one of them");
  }
  const std::unique_ptr<MachineLife> life = NewMachineLife(Begin(command), command.random_seed);
  bool all_done = true;
  std::int64_t collected = 0;
  if (command.outbox.has_value()) {
    Outbox outbox(*command.outbox);
    const CollectingLock lock(*command.outbox, kLockPatienceMs);
    KeepingView kept;
    collected = Collect(command, *life, kept, err, all_done);
    outbox.Keep(kept.HandOvers(), std::nullopt);
  } else {
    std::ofstream file;
    if (command.output.has_value()) file = OpenForWriting(*command.output, "--output");
    std::ostream& stream = command.output.has_value() ? file : out;
    JsonLines lines(stream);
    collected = Collect(command, *life, lines, err, all_done);
    if (!stream.flush()) throw Failure(kExitFailed, "the output cannot be written");
  }
  err << "simulate: " << GroupDigits(std::to_string(collected)) << " collections in "
      << GroupDigits(std::to_string(command.hours)) << " hours" << std::endl;
  return all_done ? kExitDone : kExitFailed;
}

}  // namespace zt::telemetry::host
