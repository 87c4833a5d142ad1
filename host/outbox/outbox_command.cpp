#include "host/outbox/outbox_command.h"

#include <google/protobuf/util/delimited_message_util.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "host/doctor/doctor.h"
#include "host/doctor/source_metrics.h"
#include "host/failure.h"
#include "host/metrics/newest_records.h"
#include "host/outbox/kept_record.h"
#include "host/outbox/outbox.h"
#include "host/program_environment.h"
#include "host/progress.h"
#include "host/utc_time.h"
#include "host/views/figures.h"
#include "host/views/json_lines.h"
#include "host/views/text_report.h"
#include "host/views/text_table.h"
#include "host/whole_file.h"

namespace zt::telemetry::host {
namespace {

constexpr std::size_t kNoIndent = 0;

std::string LastWord(const std::string& name) {
  return name.substr(name.rfind('.') + 1);
}

// "2026-03-07 14:00:30".
std::string ArrivalText(const KeptHandOver& kept) {
  constexpr std::size_t kDate = 10;
  constexpr std::size_t kTimeOfDay = 8;
  const std::string time = FormatUtcTime(std::chrono::floor<std::chrono::seconds>(kept.arrived));
  return time.substr(0, kDate) + " " + time.substr(kDate + 1, kTimeOfDay);
}

// Shows one hand-over on a view; a record that this program cannot read is a failure that names it.
void Show(const KeptHandOver& kept, HandOverView& view) {
  if (kept.hand_over.message == kTextMessage) return view.ShowSentText(kept.hand_over.bytes);
  const auto record = RecordOf(kept.hand_over);
  if (record == nullptr) {
    throw Failure(kExitFailed,
                  "hand-over " + std::to_string(kept.id) + " cannot be read as a " + kept.hand_over.message);
  }
  if (kept.hand_over.kind == kStoreKind) return view.ShowStored(*record);
  view.ShowSent(*record);
}

void List(const Outbox& outbox, const OutboxCommand& command, std::ostream& out) {
  std::vector<std::vector<Cell>> rows;
  outbox.ForEach(
      command.all,
      [&](const KeptHandOver& kept) {
        rows.push_back({{std::to_string(kept.id), true},
                        {ArrivalText(kept)},
                        {kept.hand_over.kind},
                        {LastWord(kept.hand_over.message)},
                        {Printable(kept.hand_over.collection_id)},
                        {GroupDigits(std::to_string(kept.hand_over.bytes.size())), true},
                        {std::to_string(kept.deliveries), true},
                        {StandingText(kept.standing)}});
      },
      command.after, command.count);
  if (rows.empty()) {
    out << "nothing is kept" << std::endl;
    return;
  }
  out << TableText({"id", "arrived (UTC)", "kind", "message", "collection", "bytes", "delivered", "standing"}, rows,
                   kNoIndent, kTextWidth)
      << std::flush;
}

void ShowOne(const Outbox& outbox, std::int64_t id, std::ostream& out) {
  const std::optional<KeptHandOver> kept = outbox.Find(id);
  if (!kept.has_value()) throw WrongUsage("there is no hand-over " + std::to_string(id) + " in this outbox");
  TextReport report(out);
  Show(*kept, report);
}

// Calls `write` with each hand-over to export, and shows how far it is.
void ForEachShown(const Outbox& outbox, bool all, std::ostream* terminal,
                  const std::function<void(const KeptHandOver&)>& write) {
  Progress progress(terminal, "outbox export");
  const auto last = static_cast<std::uint64_t>(outbox.LastId());
  outbox.ForEach(all, [&](const KeptHandOver& kept) {
    progress.Show(static_cast<std::uint64_t>(kept.id), last, "hand-overs");
    write(kept);
  });
}

void ExportJson(const Outbox& outbox, const OutboxCommand& command, std::ostream& out, std::ostream* terminal) {
  JsonLines lines(out);
  ForEachShown(outbox, command.all, terminal, [&](const KeptHandOver& kept) { Show(kept, lines); });
}

void ExportProtobuf(const Outbox& outbox, const OutboxCommand& command, std::ostream& out, std::ostream* terminal) {
  ForEachShown(outbox, command.all, terminal, [&](const KeptHandOver& kept) {
    const std::string& message = kept.hand_over.message;
    if (message != command.message && LastWord(message) != command.message) return;
    const auto record = RecordOf(kept.hand_over);
    if (record == nullptr || !google::protobuf::util::SerializeDelimitedToOstream(*record, &out)) {
      throw Failure(kExitFailed, "hand-over " + std::to_string(kept.id) + " cannot be written");
    }
  });
}

void ExportMetrics(const Outbox& outbox, const OutboxCommand& command, std::ostream& out, const Streams& streams) {
  OpenMetrics metrics;
  Progress progress(streams.terminal, "outbox export");
  AddNewestRecords(outbox, metrics, progress);
  if (command.asks_sources) {
    SourceMetrics view(metrics);
    AskSources(command.doctor, view, streams.err);
  }
  out << metrics.Text();
}

void Write(const Outbox& outbox, const OutboxCommand& command, std::ostream& out, const Streams& streams) {
  switch (command.form) {
    case OutboxCommand::Form::kJson:
      return ExportJson(outbox, command, out, streams.terminal);
    case OutboxCommand::Form::kProtobuf:
      return ExportProtobuf(outbox, command, out, streams.terminal);
    case OutboxCommand::Form::kOpenMetrics:
      return ExportMetrics(outbox, command, out, streams);
  }
}

void Export(const Outbox& outbox, const OutboxCommand& command, const Streams& streams) {
  if (command.output.has_value()) {
    WholeFile file(*command.output, "--output");
    Write(outbox, command, file.Stream(), streams);
    file.Finish();
  } else {
    // Where a person sees the hand-overs themselves, that is progress enough.
    Write(outbox, command, streams.out,
          {streams.out, streams.err, OutputGoesToTerminal() ? nullptr : streams.terminal});
    if (!streams.out.flush()) throw Failure(kExitFailed, "the output cannot be written");
  }
}

void Prune(Outbox& outbox, const OutboxCommand& command, const Streams& streams) {
  Progress progress(streams.terminal, "outbox prune");
  const Pruned pruned = outbox.Prune(command.limits, [&progress](const Pruned& so_far) {
    progress.Show(so_far.delivered + so_far.undelivered, "hand-overs deleted");
  });
  streams.out << PrunedText(pruned) << std::endl;
}

void ShowStatus(const Outbox& outbox, std::ostream& out) {
  const OutboxFigures figures = outbox.Figures();
  const auto number = [](std::int64_t count) { return Cell{GroupDigits(std::to_string(count)), true}; };
  out << TableText({"", ""},
                   {{{"hand-overs"}, number(figures.current)},
                    {{"not delivered"}, number(figures.undelivered)},
                    {{"replaced"}, number(figures.replaced)},
                    {{"sent again"}, number(figures.again)},
                    {{"dropped for the size"}, number(figures.dropped)},
                    {{"bytes"}, number(figures.bytes)}},
                   kNoIndent, kTextWidth)
      << std::flush;
}

}  // namespace

int ShowOutbox(const OutboxCommand& command, const Streams& streams) {
  Outbox outbox = Outbox::Existing(command.folder);
  using Action = OutboxCommand::Action;
  switch (command.action) {
    case Action::kList:
      List(outbox, command, streams.out);
      break;
    case Action::kShow:
      ShowOne(outbox, command.id, streams.out);
      break;
    case Action::kExport:
      Export(outbox, command, streams);
      break;
    case Action::kPrune:
      Prune(outbox, command, streams);
      break;
    case Action::kStatus:
      ShowStatus(outbox, streams.out);
      break;
  }
  return kExitDone;
}

}  // namespace zt::telemetry::host
