#include "host/progress.h"

#include <utility>

#include "host/views/figures.h"

namespace zt::telemetry::host {
namespace {

constexpr std::chrono::seconds kShort{1};  // work that needs no words
constexpr std::chrono::milliseconds kBetween{100};
constexpr std::uint64_t kWholeInPercent = 100;

}  // namespace

Progress::Progress(std::ostream* terminal, std::string work, Clock clock)
    : terminal_(terminal), work_(std::move(work)), clock_(std::move(clock)), begin_(clock_()), next_(begin_ + kShort) {}

Progress::~Progress() {
  if (width_ > 0) *terminal_ << '\r' << std::string(width_, ' ') << '\r' << std::flush;
}

void Progress::Show(std::uint64_t done, std::uint64_t total, const char* what) {
  if (!IsDue()) return;
  const std::uint64_t percent = total == 0 ? kWholeInPercent : done * kWholeInPercent / total;
  Write(std::to_string(percent) + " %, " + GroupDigits(std::to_string(done)) + " of " +
        GroupDigits(std::to_string(total)) + " " + what);
}

void Progress::Show(std::int64_t done, const char* what) {
  if (!IsDue()) return;
  const auto lasting = std::chrono::duration_cast<std::chrono::seconds>(clock_() - begin_);
  Write(GroupDigits(std::to_string(done)) + " " + what + ", " + std::to_string(lasting.count()) + " s");
}

bool Progress::IsDue() {
  return terminal_ != nullptr && clock_() >= next_;
}

void Progress::Write(const std::string& text) {
  next_ = clock_() + kBetween;
  const std::string line = work_ + ": " + text;
  const std::size_t before = width_;
  width_ = line.size();
  *terminal_ << '\r' << line << std::string(before > width_ ? before - width_ : 0, ' ') << std::flush;
}

}  // namespace zt::telemetry::host
