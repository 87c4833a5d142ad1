#include "fleet/forward/input_forwarder.h"

#include <optional>
#include <utility>
#include <variant>

namespace zt::telemetry::fleet {

bool InputForwarder::Add(std::string_view chunk) {
  splitter_.Add(chunk);
  return ForwardWhole();
}

bool InputForwarder::End() {
  splitter_.End();
  return ForwardWhole();
}

bool InputForwarder::ForwardWhole() {
  while (const std::optional<Piece> piece = splitter_.Next()) {
    if (!Forward(*piece)) return false;
  }
  return true;
}

std::string InputForwarder::Place() const {
  return name_ + (splitter_.Form() == InputForm::kLines ? ", line " : ", record ") + std::to_string(pieces_);
}

bool InputForwarder::Forward(const Piece& piece) {
  ++pieces_;
  if (!piece.problem.empty()) {
    ++counters_.bad_records;
    lost_ = true;
    return sink_.SendDead({std::string(piece.bytes), piece.problem}, Place(), delivery_);
  }
  const MadeRecord made =
      splitter_.Form() == InputForm::kLines ? maker_.OfLine(piece.bytes) : maker_.OfBytes(UploadType(), piece.bytes);
  if (const auto* const record = std::get_if<Record>(&made)) {
    ++counters_.records_read;
    counters_.bytes_read += static_cast<std::int64_t>(record->bytes.size());
    return sink_.Send(*record, delivery_);
  }
  if (const auto* const bad = std::get_if<BadRecord>(&made)) {
    ++counters_.bad_records;
    return sink_.SendDead(*bad, Place(), delivery_);
  }
  ++counters_.texts_read;
  return true;
}

}  // namespace zt::telemetry::fleet
