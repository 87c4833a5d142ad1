#include "fleet/forward/forward.h"

#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <memory>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "fleet/forward/counters.h"
#include "fleet/forward/input_forwarder.h"
#include "fleet/forward/kafka_sink.h"
#include "fleet/forward/settings.h"
#include "fleet/forward/spool_forwarder.h"
#include "host/failure.h"
#include "host/outbox/kept_record.h"
#include "host/outbox/outbox.h"
#include "host/program_environment.h"

namespace zt::telemetry::fleet {
namespace {

constexpr std::size_t kChunk = std::size_t{1} << 16;
constexpr int kTickMs = 100;
constexpr std::int64_t kOutboxBatch = 500;  // hand-overs

std::unique_ptr<RecordSink> SinkOf(const Settings& settings, bool dry_run, Counters& counters, std::ostream& err) {
  if (dry_run) return std::make_unique<CountingSink>(err);
  return std::make_unique<KafkaSink>(settings, counters, err);
}

void Tell(const Counters& counters, bool dry_run, std::ostream& err) {
  err << "zt-telemetry-forward: " << counters.records_read << " records read";
  if (!dry_run) err << ", " << counters.delivered << " delivered";
  err << "; " << counters.bad_records << " that are none";
  if (!dry_run) err << ", " << counters.dead_letters << " dead letters, " << counters.failed << " not delivered";
  if (counters.texts_read > 0) err << "; " << counters.texts_read << " texts, which go nowhere";
  err << std::endl;
}

// Waits for all reports; false when the program shall end before.
bool Drain(const Delivery& delivery, RecordSink& sink) {
  while (!delivery.IsDone()) {
    if (sink.Stops()) return false;
    sink.Tick(kTickMs);
  }
  return true;
}

// Chunks of standard input to the forwarder; delivery reports are taken while none comes.
bool ForwardChunks(InputForwarder& input, RecordSink& sink) {
  std::array<char, kChunk> chunk{};
  while (!sink.Stops()) {
    pollfd waited{STDIN_FILENO, POLLIN, 0};
    const int ready = ::poll(&waited, 1, kTickMs);
    if (ready == 0 || (ready < 0 && errno == EINTR)) {
      sink.Tick(0);
      continue;
    }
    const ssize_t count = ::read(STDIN_FILENO, chunk.data(), chunk.size());
    if (count == 0) return input.End();
    if (count < 0) {
      throw host::Failure(host::kExitFailed,
                          "standard input cannot be read: " + std::generic_category().message(errno));
    }
    if (!input.Add({chunk.data(), static_cast<std::size_t>(count)})) return false;
  }
  return false;
}

// The records of an outbox that count and were never delivered, some at a time.
class OutboxForwarder {
 public:
  OutboxForwarder(const std::filesystem::path& folder, bool dry_run, RecordMaker& maker, RecordSink& sink,
                  Counters& counters)
      : name_("outbox " + host::PathText(folder)),
        outbox_(host::Outbox::Existing(folder)),
        dry_run_(dry_run),
        maker_(maker),
        sink_(sink),
        counters_(counters) {
    FindMachine();
  }

  // False when not all of it was delivered.
  bool Run() {
    while (const std::int64_t count = ForwardBatch()) {
      if (count < 0) return false;
    }
    return true;
  }

 private:
  // An outbox is one machine's: a record that names none is of the one that the newest of the others names.
  void FindMachine() {
    outbox_.ForEachNewestFirst([this](const host::KeptHandOver& kept) {
      const MadeRecord made = maker_.OfBytes(kept.hand_over.message, kept.hand_over.bytes);
      if (const auto* const record = std::get_if<Record>(&made)) machine_ = record->machine;
      return machine_.empty();
    });
  }

  // How many were looked at; -1 when they were not delivered.
  std::int64_t ForwardBatch() {
    Delivery delivery;
    std::vector<std::int64_t> ids;
    std::int64_t looked_at = 0;
    bool goes_on = true;
    outbox_.ForEach(
        /*all=*/false,
        [&](const host::KeptHandOver& kept) {
          ++looked_at;
          last_id_ = kept.id;
          if (!goes_on || kept.deliveries > 0) return;
          goes_on = ForwardOne(kept, delivery);
          if (goes_on) ids.push_back(kept.id);
        },
        last_id_, kOutboxBatch);
    const bool is_delivered = Drain(delivery, sink_) && goes_on && delivery.IsComplete();
    if (!is_delivered) return -1;
    if (!dry_run_) outbox_.CountDeliveries(ids);
    return looked_at;
  }

  bool ForwardOne(const host::KeptHandOver& kept, Delivery& delivery) {
    if (kept.hand_over.message == host::kTextMessage) {
      ++counters_.texts_read;
      return true;
    }
    MadeRecord made = maker_.OfBytes(kept.hand_over.message, kept.hand_over.bytes, kept.contract_version);
    if (auto* const bad = std::get_if<BadRecord>(&made)) {
      ++counters_.bad_records;
      return sink_.SendDead(*bad, name_ + ", hand-over " + std::to_string(kept.id), delivery);
    }
    auto& record = std::get<Record>(made);
    if (record.machine.empty()) record.machine = machine_;
    ++counters_.records_read;
    counters_.bytes_read += static_cast<std::int64_t>(record.bytes.size());
    return sink_.Send(record, delivery);
  }

  std::string name_;
  host::Outbox outbox_;
  bool dry_run_;
  RecordMaker& maker_;
  RecordSink& sink_;
  Counters& counters_;
  std::int64_t last_id_ = 0;
  std::string machine_;
};

}  // namespace

int ForwardStdin(const StdinCommand& command, std::ostream& err) {
  const Settings settings = ReadSettingsFile(command.config);
  Counters counters;
  RecordMaker maker(settings.contract_version);
  const std::unique_ptr<RecordSink> sink = SinkOf(settings, command.dry_run, counters, err);
  InputForwarder input("standard input", command.form, maker, *sink, counters);
  const bool is_delivered =
      ForwardChunks(input, *sink) && Drain(input.Deliveries(), *sink) && input.Deliveries().IsComplete();
  Tell(counters, command.dry_run, err);
  const bool is_bad = command.dry_run ? counters.bad_records > 0 : input.HasLostItsPlace();
  return is_delivered && !is_bad ? host::kExitDone : host::kExitFailed;
}

int ForwardSpool(const SpoolCommand& command, std::ostream& err) {
  const Settings settings = ReadSettingsFile(command.config);
  if (!settings.spool.folder.has_value()) {
    throw host::WrongUsage("spool.folder is missing in " + host::PathText(command.config) +
                           "; expected the folder into which files of records are put");
  }
  Counters counters;
  RecordMaker maker(settings.contract_version);
  const std::unique_ptr<RecordSink> sink = SinkOf(settings, command.dry_run, counters, err);
  SpoolForwarder spool(settings.spool, command.dry_run, maker, *sink, counters, err);
  const bool is_done = spool.Run(command.once);
  Tell(counters, command.dry_run, err);
  const bool is_bad = command.dry_run && counters.bad_records > 0;
  return is_bad || (command.once && !is_done) ? host::kExitFailed : host::kExitDone;
}

int ForwardOutboxes(const OutboxCommand& command, std::ostream& err) {
  const Settings settings = ReadSettingsFile(command.config);
  Counters counters;
  RecordMaker maker(settings.contract_version);
  const std::unique_ptr<RecordSink> sink = SinkOf(settings, command.dry_run, counters, err);
  bool is_done = true;
  for (const std::filesystem::path& folder : command.folders) {
    if (sink->Stops()) break;
    is_done = OutboxForwarder(folder, command.dry_run, maker, *sink, counters).Run() && is_done;
  }
  Tell(counters, command.dry_run, err);
  const bool is_bad = command.dry_run && counters.bad_records > 0;
  return is_done && !is_bad && !sink->Stops() ? host::kExitDone : host::kExitFailed;
}

}  // namespace zt::telemetry::fleet
