#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

namespace zt::telemetry::host {

/// What happens at a terminal.
enum class TerminalEvent {
  kOther,   // nothing that anybody waits for
  kWoken,   // somebody in the program has called `Wake`
  kRedraw,  // it has another size, or something else was drawn on it
  kEnd,     // q, Ctrl-C, or the system ends the program
  kUp,
  kDown,
  kLeft,
  kRight,
  kPageUp,
  kPageDown,
  kFirst,
  kLast,
};

/// What a key with a letter on it means.
constexpr TerminalEvent EventOfLetter(char32_t letter) {
  switch (letter) {
    case U'q':
    case U'Q':
    case U'\x03':  // Ctrl-C
      return TerminalEvent::kEnd;
    case U' ':
      return TerminalEvent::kPageDown;
    default:
      return TerminalEvent::kOther;
  }
}

struct TerminalSize {
  std::size_t rows = 0;
  std::size_t columns = 0;

  bool operator==(const TerminalSize&) const = default;
};

/// The terminal that the program runs on, its second screen in use: as long as it lives, keys arrive one by one and
/// nothing is echoed. However the program ends, but for being killed outright, the terminal is as it was before. There
/// is one at a time.
class Terminal {
 public:
  /// Throws `Failure` with wrong usage where standard input or standard output is no terminal, or none that can be
  /// drawn on; `command` stands before its text.
  explicit Terminal(std::string_view command);
  /// Where a signal has ended the program, it ends it now.
  ~Terminal();
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  TerminalSize Size() const;
  /// UTF-8 with control sequences. Throws `std::system_error`.
  void Write(std::string_view text);
  /// Waits for whatever happens next.
  TerminalEvent Wait();
  /// Ends a wait, the one that is on or the next one. For every thread.
  void Wake();
  /// Gives the terminal back before the end.
  void Leave();

 private:
  class State;
  std::unique_ptr<State> state_;
};

/// Second screen, cursor hidden, lines cut at the edge; and back.
inline constexpr std::string_view kEnterScreen = "\x1b[?1049h\x1b[?25l\x1b[?7l\x1b[H\x1b[2J";
inline constexpr std::string_view kLeaveScreen = "\x1b[0m\x1b[?7h\x1b[?25h\x1b[?1049l";

}  // namespace zt::telemetry::host
