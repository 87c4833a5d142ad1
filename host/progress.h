#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <ostream>
#include <string>

namespace zt::telemetry::host {

/// Shows on a terminal how far long work is, in one line that is written over and is gone in the end: from a second on,
/// ten times a second at most. Without a terminal it shows nothing.
class Progress {
 public:
  using Clock = std::function<std::chrono::steady_clock::time_point()>;

  /// `terminal` may be null and must outlive the progress; `work` stands before all that is shown.
  Progress(std::ostream* terminal, std::string work, Clock clock = std::chrono::steady_clock::now);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// "seed: 45 %, 12,345 of 27,000 minutes"
  void Show(std::uint64_t done, std::uint64_t total, const char* what);
  /// "outbox prune: 12,345 hand-overs deleted, 8 s"
  void Show(std::int64_t done, const char* what);

 private:
  bool IsDue();
  void Write(const std::string& text);

  std::ostream* terminal_;
  std::string work_;
  Clock clock_;
  std::chrono::steady_clock::time_point begin_;
  std::chrono::steady_clock::time_point next_;
  std::size_t width_ = 0;  // of the line that is shown
};

}  // namespace zt::telemetry::host
