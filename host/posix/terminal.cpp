#include "host/terminal.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "host/failure.h"

namespace zt::telemetry::host {
namespace {

constexpr char kEscape = '\x1b';
constexpr char kSuspendKey = '\x1a';  // Ctrl-Z
constexpr unsigned char kWakeMark = 0;

constexpr std::array kEndingSignals = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};
constexpr std::array kOtherSignals = {SIGWINCH, SIGTSTP, SIGCONT};
constexpr std::array kCrashSignals = {SIGABRT, SIGSEGV, SIGBUS, SIGILL, SIGFPE};

// What signal handlers may look at.
std::atomic<int> signal_pipe{-1};
std::atomic<bool> is_entered{false};
termios modes_before{};

void WriteAll(std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = ::write(STDOUT_FILENO, text.data(), text.size());
    if (written >= 0) {
      text.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno != EINTR) {
      throw std::system_error(errno, std::generic_category(), "the terminal");
    }
  }
}

// Calls nothing that a signal handler may not.
void GiveBack() noexcept {
  if (!is_entered.exchange(false)) return;
  [[maybe_unused]] const ssize_t written = ::write(STDOUT_FILENO, kLeaveScreen.data(), kLeaveScreen.size());
  ::tcsetattr(STDIN_FILENO, TCSADRAIN, &modes_before);
}

void SendThroughPipe(unsigned char mark) noexcept {
  const int error = errno;
  // A full pipe wakes as well as one byte more.
  [[maybe_unused]] const ssize_t written = ::write(signal_pipe.load(), &mark, 1);
  errno = error;
}

void OnSignal(int signal) {
  SendThroughPipe(static_cast<unsigned char>(signal));
}

void OnCrash(int signal) {
  GiveBack();
  ::raise(signal);  // its own action, which ends the program, is in place again
}

// Keys that send more than one byte, by what follows the escape.
TerminalEvent EventOfSequence(std::string_view sequence) {
  constexpr auto kSequences = std::to_array<std::pair<std::string_view, TerminalEvent>>({
      {"[A", TerminalEvent::kUp},
      {"OA", TerminalEvent::kUp},
      {"[B", TerminalEvent::kDown},
      {"OB", TerminalEvent::kDown},
      {"[C", TerminalEvent::kRight},
      {"OC", TerminalEvent::kRight},
      {"[D", TerminalEvent::kLeft},
      {"OD", TerminalEvent::kLeft},
      {"[H", TerminalEvent::kFirst},
      {"OH", TerminalEvent::kFirst},
      {"[1~", TerminalEvent::kFirst},
      {"[7~", TerminalEvent::kFirst},
      {"[F", TerminalEvent::kLast},
      {"OF", TerminalEvent::kLast},
      {"[4~", TerminalEvent::kLast},
      {"[8~", TerminalEvent::kLast},
      {"[5~", TerminalEvent::kPageUp},
      {"[6~", TerminalEvent::kPageDown},
  });
  for (const auto& [text, event] : kSequences) {
    if (sequence == text) return event;
  }
  return TerminalEvent::kOther;
}

// How many bytes of `bytes` the sequence behind an escape has; 0 while its end has not come.
std::size_t SequenceLength(std::string_view bytes) {
  if (bytes.empty()) return 0;
  if (bytes[0] == 'O') return bytes.size() < 2 ? 0 : 2;
  if (bytes[0] != '[') return 1;
  for (std::size_t i = 1; i < bytes.size(); ++i) {
    if (bytes[i] >= '@' && bytes[i] <= '~') return i + 1;
  }
  return 0;
}

void RequireTerminal(std::string_view command) {
  const auto refuse = [command](const std::string& text) { return WrongUsage(std::string(command) + ": " + text); };
  if (::isatty(STDOUT_FILENO) != 1) {
    throw refuse("standard output is no terminal, on which it could draw; look writes for files and programs");
  }
  if (::isatty(STDIN_FILENO) != 1) throw refuse("standard input is no terminal, from which keys could come");
  const char* const kind = std::getenv("TERM");  // NOLINT(concurrency-mt-unsafe): nobody changes it
  if (kind == nullptr || std::string_view(kind).empty() || std::string_view(kind) == "dumb") {
    throw refuse("a terminal of the kind \"" + std::string(kind == nullptr ? "" : kind) +
                 "\" (TERM) cannot be drawn on; look writes line by line");
  }
}

void Enter() {
  if (!is_entered.exchange(true)) ::tcgetattr(STDIN_FILENO, &modes_before);
  termios modes = modes_before;
  modes.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO | ISIG | IEXTEN);
  modes.c_iflag &= ~static_cast<tcflag_t>(IXON | ICRNL);
  modes.c_cc[VMIN] = 1;
  modes.c_cc[VTIME] = 0;
  ::tcsetattr(STDIN_FILENO, TCSADRAIN, &modes);
  WriteAll(kEnterScreen);
}

}  // namespace

class Terminal::State {
 public:
  explicit State(std::string_view command) {
    RequireTerminal(command);
    if (::pipe2(pipe_.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
      throw std::system_error(errno, std::generic_category(), "pipe2");
    }
    signal_pipe = pipe_[1];
    for (const int signal : kEndingSignals) Handle(signal, OnSignal, SA_RESTART);
    for (const int signal : kOtherSignals) Handle(signal, OnSignal, SA_RESTART);
    for (const int signal : kCrashSignals) Handle(signal, OnCrash, static_cast<int>(SA_RESETHAND | SA_NODEFER));
    try {
      Enter();
    } catch (...) {
      GiveBack();
      Release();
      throw;
    }
  }

  ~State() {
    GiveBack();
    Release();
    if (ended_by_ != 0) ::raise(ended_by_);
  }

  State(const State&) = delete;
  State& operator=(const State&) = delete;

  TerminalEvent Wait() {
    for (;;) {
      if (const auto event = NextKey(); event != TerminalEvent::kOther) return event;
      std::array<pollfd, 2> sources = {{{STDIN_FILENO, POLLIN, 0}, {pipe_[0], POLLIN, 0}}};
      if (::poll(sources.data(), sources.size(), -1) < 0) {
        if (errno == EINTR) continue;
        throw std::system_error(errno, std::generic_category(), "poll");
      }
      if (sources[1].revents != 0) return NextSignal();
      if (sources[0].revents != 0 && !ReadKeys()) return TerminalEvent::kEnd;
    }
  }

 private:
  void Handle(int signal, void (*handler)(int), int flags) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = flags;
    struct sigaction before {};
    ::sigaction(signal, &action, &before);
    if (before.sa_handler == SIG_IGN) ::sigaction(signal, &before, nullptr);  // as nohup has it
    before_.emplace_back(signal, before);
  }

  void Release() {
    for (const auto& [signal, action] : before_) ::sigaction(signal, &action, nullptr);
    signal_pipe = -1;
    for (const int end : pipe_) ::close(end);
  }

  // False when nothing will come any more.
  bool ReadKeys() {
    std::array<char, 256> bytes{};
    const ssize_t count = ::read(STDIN_FILENO, bytes.data(), bytes.size());
    if (count < 0 && (errno == EINTR || errno == EAGAIN)) return true;
    if (count <= 0) return false;
    keys_.append(bytes.data(), static_cast<std::size_t>(count));
    return true;
  }

  // The first key that means something of those that have come.
  TerminalEvent NextKey() {
    while (!keys_.empty()) {
      const char first = keys_.front();
      std::size_t length = 1;
      TerminalEvent event = EventOfLetter(static_cast<unsigned char>(first));
      if (first == kEscape) {
        const std::size_t behind = SequenceLength(std::string_view(keys_).substr(1));
        if (behind == 0) return TerminalEvent::kOther;
        event = EventOfSequence(std::string_view(keys_).substr(1, behind));
        length = behind == 1 ? 1 : 1 + behind;  // an escape by itself, and another key behind it
      }
      keys_.erase(0, length);
      if (first == kSuspendKey) event = Suspend();
      if (event != TerminalEvent::kOther) return event;
    }
    return TerminalEvent::kOther;
  }

  TerminalEvent NextSignal() {
    unsigned char mark = kWakeMark;
    if (::read(pipe_[0], &mark, 1) != 1 || mark == kWakeMark) return TerminalEvent::kWoken;
    switch (mark) {
      case SIGWINCH:
        return TerminalEvent::kRedraw;
      case SIGTSTP:
        return Suspend();
      case SIGCONT:
        Enter();  // whoever had it meanwhile has set it as they like
        return TerminalEvent::kRedraw;
      default:
        ended_by_ = mark;
        return TerminalEvent::kEnd;
    }
  }

  // The shell gets the terminal until it lets the program go on.
  static TerminalEvent Suspend() {
    GiveBack();
    ::kill(::getpid(), SIGSTOP);
    Enter();
    return TerminalEvent::kRedraw;
  }

  std::array<int, 2> pipe_{-1, -1};
  std::vector<std::pair<int, struct sigaction>> before_;
  std::string keys_;
  int ended_by_ = 0;
};

Terminal::Terminal(std::string_view command) : state_(std::make_unique<State>(command)) {}

Terminal::~Terminal() = default;

TerminalSize Terminal::Size() const {
  constexpr TerminalSize kUsual = {24, 80};
  winsize size{};
  if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_row == 0 || size.ws_col == 0) return kUsual;
  return {size.ws_row, size.ws_col};
}

void Terminal::Write(std::string_view text) {
  WriteAll(text);
}

TerminalEvent Terminal::Wait() {
  return state_->Wait();
}

void Terminal::Wake() {
  SendThroughPipe(kWakeMark);
}

void Terminal::Leave() {
  GiveBack();
}

}  // namespace zt::telemetry::host
