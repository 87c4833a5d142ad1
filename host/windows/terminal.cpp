#include "host/terminal.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <string>
#include <system_error>
#include <utility>

#include "base/windows/unique_handle.h"
#include "host/failure.h"
#include "zt/text/wide_text.h"

namespace zt::telemetry::host {
namespace {

std::system_error LastError(const char* call) {
  return {static_cast<int>(::GetLastError()), std::system_category(), call};
}

base::UniqueHandle NewEvent() {
  base::UniqueHandle event(::CreateEventW(nullptr, /*manual=*/FALSE, /*signalled=*/FALSE, nullptr));
  if (event == nullptr) throw LastError("CreateEventW");
  return event;
}

// Set when the system ends the program; it asks on a thread of its own.
HANDLE end_event = nullptr;

BOOL WINAPI OnControl(DWORD) {
  if (end_event == nullptr) return FALSE;
  ::SetEvent(end_event);
  return TRUE;
}

TerminalEvent EventOfKey(const KEY_EVENT_RECORD& key) {
  constexpr auto kKeys = std::to_array<std::pair<WORD, TerminalEvent>>({
      {VK_UP, TerminalEvent::kUp},
      {VK_DOWN, TerminalEvent::kDown},
      {VK_LEFT, TerminalEvent::kLeft},
      {VK_RIGHT, TerminalEvent::kRight},
      {VK_PRIOR, TerminalEvent::kPageUp},
      {VK_NEXT, TerminalEvent::kPageDown},
      {VK_HOME, TerminalEvent::kFirst},
      {VK_END, TerminalEvent::kLast},
  });
  if (key.bKeyDown == FALSE) return TerminalEvent::kOther;
  for (const auto& [code, event] : kKeys) {
    if (key.wVirtualKeyCode == code) return event;
  }
  return EventOfLetter(key.uChar.UnicodeChar);
}

TerminalEvent EventOfInput(const INPUT_RECORD& input) {
  switch (input.EventType) {
    case KEY_EVENT:
      return EventOfKey(input.Event.KeyEvent);
    case WINDOW_BUFFER_SIZE_EVENT:
      return TerminalEvent::kRedraw;
    default:
      return TerminalEvent::kOther;
  }
}

}  // namespace

class Terminal::State {
 public:
  explicit State(std::string_view command) {
    const auto refuse = [command](const std::string& text) { return WrongUsage(std::string(command) + ": " + text); };
    if (::GetConsoleMode(output_, &output_mode_) == FALSE) {
      throw refuse("standard output is no terminal, on which it could draw; look writes for files and programs");
    }
    if (::GetConsoleMode(input_, &input_mode_) == FALSE) {
      throw refuse("standard input is no terminal, from which keys could come");
    }
    if (::SetConsoleMode(output_, output_mode_ | ENABLE_PROCESSED_OUTPUT | ENABLE_VIRTUAL_TERMINAL_PROCESSING |
                                      DISABLE_NEWLINE_AUTO_RETURN) == FALSE) {
      throw refuse("this console knows no control sequences; expected that of Windows 10 or a later one");
    }
    constexpr DWORD kLines = ENABLE_LINE_INPUT | ENABLE_ECHO_INPUT | ENABLE_PROCESSED_INPUT;
    ::SetConsoleMode(input_, (input_mode_ & ~kLines) | ENABLE_WINDOW_INPUT);
    is_entered_ = true;
    end_event = end_.get();
    ::SetConsoleCtrlHandler(OnControl, TRUE);
    try {
      Write(kEnterScreen);
    } catch (...) {
      Leave();
      throw;
    }
  }

  ~State() {
    Leave();
    ::SetConsoleCtrlHandler(OnControl, FALSE);
    end_event = nullptr;
  }

  State(const State&) = delete;
  State& operator=(const State&) = delete;

  void Leave() noexcept {
    if (!std::exchange(is_entered_, false)) return;
    const std::wstring leave(kLeaveScreen.begin(), kLeaveScreen.end());
    DWORD written = 0;
    ::WriteConsoleW(output_, leave.data(), static_cast<DWORD>(leave.size()), &written, nullptr);
    ::SetConsoleMode(output_, output_mode_);
    ::SetConsoleMode(input_, input_mode_);
  }

  void Write(std::string_view text) const {
    constexpr std::size_t kMost = 8192;  // of older consoles, in one call
    const std::wstring wide = text::ToWide(text);
    for (std::size_t at = 0; at < wide.size();) {
      DWORD written = 0;
      const auto count = static_cast<DWORD>(std::min(kMost, wide.size() - at));
      if (::WriteConsoleW(output_, wide.data() + at, count, &written, nullptr) == FALSE || written == 0) {
        throw LastError("WriteConsoleW");
      }
      at += written;
    }
  }

  TerminalSize Size() const {
    CONSOLE_SCREEN_BUFFER_INFO info{};
    if (::GetConsoleScreenBufferInfo(output_, &info) == FALSE) throw LastError("GetConsoleScreenBufferInfo");
    return {static_cast<std::size_t>(info.srWindow.Bottom - info.srWindow.Top + 1),
            static_cast<std::size_t>(info.srWindow.Right - info.srWindow.Left + 1)};
  }

  TerminalEvent Wait() const {
    const std::array<HANDLE, 3> sources = {end_.get(), woken_.get(), input_};
    switch (::WaitForMultipleObjects(static_cast<DWORD>(sources.size()), sources.data(), FALSE, INFINITE)) {
      case WAIT_OBJECT_0:
        return TerminalEvent::kEnd;
      case WAIT_OBJECT_0 + 1:
        return TerminalEvent::kWoken;
      case WAIT_OBJECT_0 + 2:
        break;
      default:
        throw LastError("WaitForMultipleObjects");
    }
    INPUT_RECORD input{};
    DWORD count = 0;
    if (::ReadConsoleInputW(input_, &input, 1, &count) == FALSE) return TerminalEvent::kEnd;  // the console is gone
    return count == 1 ? EventOfInput(input) : TerminalEvent::kOther;
  }

  void Wake() const { ::SetEvent(woken_.get()); }

 private:
  HANDLE output_ = ::GetStdHandle(STD_OUTPUT_HANDLE);
  HANDLE input_ = ::GetStdHandle(STD_INPUT_HANDLE);
  DWORD output_mode_ = 0;
  DWORD input_mode_ = 0;
  bool is_entered_ = false;
  base::UniqueHandle end_ = NewEvent();
  base::UniqueHandle woken_ = NewEvent();
};

Terminal::Terminal(std::string_view command) : state_(std::make_unique<State>(command)) {}

Terminal::~Terminal() = default;

TerminalSize Terminal::Size() const {
  return state_->Size();
}

void Terminal::Write(std::string_view text) {
  state_->Write(text);
}

TerminalEvent Terminal::Wait() {
  return state_->Wait();
}

void Terminal::Wake() {
  state_->Wake();
}

void Terminal::Leave() {
  state_->Leave();
}

}  // namespace zt::telemetry::host
