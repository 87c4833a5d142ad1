#include "fleet/forward/record_splitter.h"

#include <algorithm>
#include <cstdint>

namespace zt::telemetry::fleet {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kBlanks = " \t\r";
constexpr std::size_t kLongestLength = 5;  // bytes of a length of 32 bits

// A length, protobuf's variable number, and the bytes that it takes itself; nothing while it is not whole.
struct Length {
  std::size_t value = 0;
  std::size_t bytes = 0;
};

std::optional<Length> LengthOf(std::string_view bytes) {
  constexpr unsigned kBits = 7;
  constexpr unsigned kMore = 0x80;
  std::uint64_t value = 0;
  for (std::size_t i = 0; i < std::min(bytes.size(), kLongestLength); ++i) {
    const auto byte = static_cast<unsigned char>(bytes[i]);
    value |= std::uint64_t{byte & (kMore - 1)} << (i * kBits);
    if (byte < kMore) return Length{static_cast<std::size_t>(value), i + 1};
  }
  return std::nullopt;
}

// A record begins with its identity, or without one with its time, each a text that ends before the record does. Its
// length may look like the brace of JSON, but no record goes on with a quotation mark.
bool BeginsLikeRecord(std::string_view bytes) {
  constexpr char kIdentity = 0x0A;
  constexpr char kTime = 0x12;
  const std::optional<Length> length = LengthOf(bytes);
  if (!length.has_value() || bytes.size() < length->bytes + 2) return false;
  const char field = bytes[length->bytes];
  const auto text = static_cast<unsigned char>(bytes[length->bytes + 1]);
  return (field == kIdentity || field == kTime) && text + std::size_t{2} <= length->value;
}

}  // namespace

void RecordSplitter::Add(std::string_view chunk) {
  if (is_lost_) return;
  buffer_.erase(0, taken_);
  taken_ = 0;
  buffer_.append(chunk);
}

std::optional<Piece> RecordSplitter::Next() {
  if (form_ == InputForm::kUnknown) Recognise();
  if (form_ == InputForm::kUnknown || is_lost_) return std::nullopt;
  return form_ == InputForm::kLines ? NextLine() : NextRecord();
}

// What does not begin like a record is lines, of which each is read by itself.
void RecordSplitter::Recognise() {
  constexpr std::size_t kEnough = 8;
  const std::string_view rest = Rest();
  if (rest.empty() || (rest.size() < kEnough && !ended_)) return;
  form_ = BeginsLikeRecord(rest) ? InputForm::kDelimited : InputForm::kLines;
  if (rest.starts_with(kUtf8Mark)) taken_ += kUtf8Mark.size();
}

std::optional<Piece> RecordSplitter::NextLine() {
  while (true) {
    const std::string_view rest = Rest();
    const std::size_t end = rest.find('\n');
    const bool is_whole = end != std::string_view::npos;
    if (!is_whole && rest.size() > kLongest) {
      taken_ = buffer_.size();
      if (skips_line_) return std::nullopt;
      skips_line_ = true;
      return Piece{rest, "a line of more than " + std::to_string(kLongest) + " bytes; expected a hand-over"};
    }
    if (!is_whole && (!ended_ || rest.empty())) return std::nullopt;
    std::string_view line = rest.substr(0, end);
    taken_ += line.size() + (is_whole ? 1 : 0);
    if (skips_line_) {
      skips_line_ = false;
      continue;
    }
    while (!line.empty() && kBlanks.find(line.back()) != std::string_view::npos) line.remove_suffix(1);
    if (!line.empty()) return Piece{line, {}};
  }
}

std::optional<Piece> RecordSplitter::NextRecord() {
  const std::string_view rest = Rest();
  if (rest.empty()) return std::nullopt;
  const std::optional<Length> length = LengthOf(rest);
  if (!length.has_value()) {
    if (rest.size() < kLongestLength && !ended_) return std::nullopt;
    return Unreadable("expected the length of a record in protobuf's form");
  }
  if (length->value > kLongest) {
    return Unreadable("a record of " + std::to_string(length->value) + " bytes; expected at most " +
                      std::to_string(kLongest));
  }
  if (rest.size() - length->bytes < length->value) {
    if (!ended_) return std::nullopt;
    return Unreadable("the input ends " + std::to_string(length->value - (rest.size() - length->bytes)) +
                      " bytes before its last record does");
  }
  taken_ += length->bytes + length->value;
  return Piece{rest.substr(length->bytes, length->value), {}};
}

std::optional<Piece> RecordSplitter::Unreadable(const std::string& problem) {
  const std::string_view rest = Rest();
  taken_ = buffer_.size();
  is_lost_ = true;
  return Piece{rest, problem};
}

}  // namespace zt::telemetry::fleet
