#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "fleet/forward/record.h"

namespace zt::telemetry::fleet {

/// The form of an input: hand-overs as lines of JSON, or records in protobuf's form, each behind its length.
enum class InputForm { kUnknown, kLines, kDelimited };

/// A piece of the input: a line or a record's bytes, or why there is none.
struct Piece {
  std::string_view bytes;  // valid until the splitter is used again
  std::string problem;     // empty where `bytes` are a line or a record
};

/// Cuts an input that comes in chunks of any size into lines or records, and holds no more of it than one of them.
/// Which form it has is seen from its beginning unless it is told. Behind a length that is none there is nothing more:
/// where the next record begins cannot be told.
class RecordSplitter {
 public:
  /// A line or a record of more bytes is none: what is smaller fits into a message of Kafka with its headers.
  static constexpr std::size_t kLongest = 900'000;

  explicit RecordSplitter(InputForm form = InputForm::kUnknown) : form_(form) {}

  void Add(std::string_view chunk);
  /// No more is coming.
  void End() { ended_ = true; }

  /// The next piece; nothing when more must be added first, or, behind the end, when there is none.
  std::optional<Piece> Next();

  InputForm Form() const { return form_; }

 private:
  std::string_view Rest() const { return std::string_view(buffer_).substr(taken_); }
  void Recognise();
  std::optional<Piece> NextLine();
  std::optional<Piece> NextRecord();
  std::optional<Piece> Unreadable(const std::string& problem);

  InputForm form_;
  std::string buffer_;
  std::size_t taken_ = 0;
  bool ended_ = false;
  bool is_lost_ = false;     // where the next record begins cannot be told
  bool skips_line_ = false;  // of a line that is too long, up to its end
};

}  // namespace zt::telemetry::fleet
