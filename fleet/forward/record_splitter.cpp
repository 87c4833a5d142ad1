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

}  // namespace

void RecordSplitter::Add(std::string_view chunk) {
  buffer_.erase(0, taken_);
  taken_ = 0;
  buffer_.append(chunk);
}

std::optional<Piece> RecordSplitter::Next() {
  if (form_ == InputForm::kUnknown) Recognise();
  if (form_ == InputForm::kUnknown) return std::nullopt;
  return form_ == InputForm::kLines ? NextLine() : NextRecord();
}

// A record begins with its first field, the identity: its length of 123 bytes looks like the brace of JSON, but no
// record goes on with a quotation mark.
void RecordSplitter::Recognise() {
  constexpr std::size_t kEnough = 4;
  const std::string_view rest = Rest();
  if (rest.size() < kEnough && !ended_) return;
  if (rest.empty()) return;
  const std::size_t text = rest.starts_with(kUtf8Mark) ? kUtf8Mark.size() : 0;
  const std::size_t first = rest.find_first_not_of(" \t\r\n", text);
  const bool is_json = first != std::string_view::npos && rest[first] == '{' &&
                       (first + 1 == rest.size() || rest[first + 1] == '"' || rest[first + 1] == ' ');
  form_ = text > 0 || is_json || first == std::string_view::npos ? InputForm::kLines : InputForm::kDelimited;
  taken_ += text;
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
  return Piece{rest, problem, /*is_last=*/true};
}

}  // namespace zt::telemetry::fleet
