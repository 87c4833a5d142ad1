#include "host/watch/live_passes.h"

#include <exception>
#include <sstream>
#include <utility>

#include "host/collect/hand_over_sink.h"
#include "host/collect/loaded_plugin.h"
#include "host/consent/consented_texts.h"
#include "host/consent/consented_view.h"
#include "host/failure.h"
#include "host/log_appender.h"
#include "host/log_output.h"
#include "host/machine_choice.h"
#include "host/no_stored_samples.h"
#include "host/views/text_report.h"
#include "host/views/text_table.h"

namespace zt::telemetry::host {
namespace {

namespace chrono = std::chrono;
using Clock = chrono::steady_clock;

constexpr std::int32_t kFullCollection = 50;
constexpr chrono::seconds kLeastPause{1};  // for a machine that needs longer than from one collection to the next
constexpr chrono::seconds kPatience{1};
constexpr char kLogTitle[] = "LOG";

void AddLines(std::istream&& text, const std::string& before, std::vector<std::string>& lines) {
  for (std::string line; std::getline(text, line);) lines.push_back(line.empty() ? line : before + Printable(line));
}

}  // namespace

// The plugin, and what one collection of it shows.
class LivePasses::Collector {
 public:
  explicit Collector(const WatchCommand& command)
      : command_(command),
        log_(command_.settings, log_lines_),
        log_target_([this](const plog::Record& record) { log_.Write(record); }),
        plugin_(PluginOf(command_), command_.log_level, LogAppender::Instance()) {}

  void Collect(LivePass& pass) {
    std::ostringstream text;
    TextReport report(text);
    ConsentedView consented(command_.settings.consent, report);
    try {
      ChooseMachine(command_.machine);  // its profile may have been changed
      Execute(consented, pass);
    } catch (const std::exception& failure) {
      pass.failure = Printable(failure.what());
    }
    AddLines(std::istringstream(text.str()), "", pass.lines);
    if (consented.HeldBack() > 0) {
      pass.lines.push_back("held back as the configuration says: " + std::to_string(consented.HeldBack()) +
                           " hand-overs");
    }
    AddLog(pass);
  }

 private:
  static std::filesystem::path PluginOf(const WatchCommand& command) {
    ChooseMachine(command.machine);
    return command.plugin.value_or(DefaultPluginFile());
  }

  void Execute(ConsentedView& view, LivePass& pass) {
    const auto sink = std::make_shared<HandOverSink>(view);
    const SinkRegistration registration(sink);
    const common::Error outcome = plugin_.Execute(kFullCollection);
    if (!outcome.Failed()) return;
    pass.failure =
        "the collection failed: " + Printable(ConsentedMessage(command_.settings.consent, outcome.description)) +
        " (kind " + std::to_string(outcome.kind) + ", code " + std::to_string(outcome.code) + ")";
  }

  void AddLog(LivePass& pass) {
    const std::string text = log_lines_.str();
    log_lines_.str({});
    if (text.empty()) return;
    pass.lines.emplace_back(kLogTitle);
    AddLines(std::istringstream(text), "  ", pass.lines);
  }

  WatchCommand command_;
  std::ostringstream log_lines_;
  LogOutput log_;
  LogAppender::Target log_target_;
  NoStoredSamples no_samples_;
  LoadedPlugin plugin_;
};

LivePasses::LivePasses(const WatchCommand& command, std::function<void()> on_pass)
    : every_(command.every),
      on_pass_(std::move(on_pass)),
      collector_(std::make_unique<Collector>(command)),
      thread_([this] { Run(); }) {}

LivePasses::~LivePasses() {
  {
    const std::lock_guard lock(mutex_);
    stops_ = true;
  }
  changed_.notify_all();
  thread_.join();
}

LivePass LivePasses::Newest() const {
  const std::lock_guard lock(mutex_);
  return newest_;
}

void LivePasses::Stop(std::ostream& err) {
  std::unique_lock lock(mutex_);
  stops_ = true;
  changed_.notify_all();
  if (changed_.wait_for(lock, kPatience, [this] { return ended_; })) return;
  err << "watch: waiting for the collection that is running" << std::endl;
}

void LivePasses::Run() {
  for (std::uint64_t number = 1;; ++number) {
    const Clock::time_point begin = Clock::now();
    LivePass pass;
    pass.number = number;
    collector_->Collect(pass);
    pass.took = chrono::duration_cast<chrono::milliseconds>(Clock::now() - begin);
    {
      const std::lock_guard lock(mutex_);
      newest_ = std::move(pass);
    }
    on_pass_();
    if (WaitForNext(begin)) return;
  }
}

// True when there is to be no next one.
bool LivePasses::WaitForNext(Clock::time_point begin) {
  const Clock::time_point next = std::max(begin + every_, Clock::now() + kLeastPause);
  std::unique_lock lock(mutex_);
  ended_ = changed_.wait_until(lock, next, [this] { return stops_; });
  if (ended_) changed_.notify_all();
  return ended_;
}

}  // namespace zt::telemetry::host
