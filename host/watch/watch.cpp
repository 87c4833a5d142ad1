#include "host/watch/watch.h"

#include <string>
#include <utility>

#include "host/failure.h"
#include "host/terminal.h"
#include "host/views/figures.h"
#include "host/views/text_table.h"
#include "host/watch/live_passes.h"
#include "host/watch/marked_lines.h"
#include "host/watch/picture.h"

namespace zt::telemetry::host {
namespace {

std::string CountText(std::size_t count, const char* what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

// What a terminal shows of the passes.
class WatchScreen {
 public:
  WatchScreen(const WatchCommand& command, Terminal& terminal) : terminal_(terminal) {
    contents_.title = "zt-telemetry-host watch  " + Printable(command.machine.value_or("this machine")) + ", every " +
                      GroupDigits(std::to_string(command.every.count())) + " s";
    contents_.pass = "the first collection is running";
  }

  // Each pass is compared with the one before.
  void Take(LivePass pass) {
    if (pass.number == 0 || pass.number == newest_.number) return;
    // Where nothing could be collected, what was collected before stays.
    if (pass.lines.empty() && !pass.failure.empty()) pass.lines = newest_.lines;
    const bool is_first = newest_.lines.empty();
    contents_.lines = MarkChanges(pass.lines, is_first ? pass.lines : newest_.lines);
    contents_.failure = pass.failure;
    newest_ = std::move(pass);
    contents_.pass = "collection " + GroupDigits(std::to_string(newest_.number)) + " took " +
                     GroupDigits(std::to_string(newest_.took.count())) + " ms";
    if (!is_first) contents_.pass += ", " + CountText(contents_.lines.Changed(), "line") + " changed (*)";
    if (contents_.lines.gone > 0) contents_.pass += ", " + std::to_string(contents_.lines.gone) + " gone";
  }

  void Obey(TerminalEvent event) {
    if (event == TerminalEvent::kRedraw) drawn_.Forget();
    MoveWindow(event, contents_, terminal_.Size(), place_);
  }

  void Draw() {
    const std::string update = drawn_.Update(Picture(contents_, terminal_.Size(), place_));
    if (!update.empty()) terminal_.Write(update);
  }

  const LivePass& Newest() const { return newest_; }

 private:
  Terminal& terminal_;
  PictureContents contents_;
  LivePass newest_;
  WindowPlace place_;
  DrawnRows drawn_;
};

}  // namespace

int Watch(const WatchCommand& command, std::ostream& err) {
  Terminal terminal("watch");
  LivePasses passes(command, [&terminal] { terminal.Wake(); });
  WatchScreen screen(command, terminal);
  for (TerminalEvent event = TerminalEvent::kRedraw; event != TerminalEvent::kEnd; event = terminal.Wait()) {
    screen.Take(passes.Newest());
    screen.Obey(event);
    screen.Draw();
  }
  terminal.Leave();
  passes.Stop(err);
  return screen.Newest().failure.empty() ? kExitDone : kExitFailed;
}

}  // namespace zt::telemetry::host
