// What a gateway gives to the forwarder: lines or records in protobuf's form, however they are cut.
#include <algorithm>
#include <string>
#include <variant>
#include <vector>

#include "fleet/forward/record_maker.h"
#include "fleet/forward/record_splitter.h"
#include "harness.h"
#include "host/report/record_bytes.h"

namespace {

using namespace zt::telemetry;

struct OwnPiece {
  std::string bytes;
  std::string problem;
  bool operator==(const OwnPiece&) const = default;
};

struct Pieces {
  std::vector<OwnPiece> all;
  fleet::InputForm form = fleet::InputForm::kUnknown;
};

Pieces Split(std::string_view input, std::size_t chunk) {
  fleet::RecordSplitter splitter;
  Pieces pieces;
  const auto take = [&] {
    while (const auto piece = splitter.Next()) pieces.all.push_back({std::string(piece->bytes), piece->problem});
  };
  for (; !input.empty(); input.remove_prefix(std::min(chunk, input.size()))) {
    splitter.Add(input.substr(0, chunk));
    take();
  }
  splitter.End();
  take();
  pieces.form = splitter.Form();
  return pieces;
}

bool CanBeRead(const fleet::Record& record) {
  return host::RecordFromBytes(record.type, record.bytes) != nullptr;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static fleet::RecordMaker maker("1.0");
  static const std::string upload = fleet::UploadType();
  const std::string_view input = zt::fuzz::TextOf(data, size);
  const Pieces pieces = Split(input, input.size() + 1);
  const Pieces in_bits = Split(input, 3);
  zt::fuzz::Require(pieces.form == in_bits.form, "how an input is cut makes no difference to its form");
  // Of what lies behind a length that is none, as much is told as has come by then.
  zt::fuzz::Require(pieces.all.size() == in_bits.all.size(), "how an input is cut makes no difference to its pieces");
  for (std::size_t i = 0; i < pieces.all.size(); ++i) {
    if (!pieces.all[i].problem.empty()) continue;
    zt::fuzz::Require(pieces.all[i] == in_bits.all[i], "how an input is cut makes no difference to a piece");
  }
  for (const OwnPiece& piece : pieces.all) {
    if (!piece.problem.empty()) continue;
    const auto made =
        pieces.form == fleet::InputForm::kLines ? maker.OfLine(piece.bytes) : maker.OfBytes(upload, piece.bytes);
    if (const auto* const record = std::get_if<fleet::Record>(&made)) {
      zt::fuzz::Require(CanBeRead(*record), "what is forwarded as a record can be read as one");
      zt::fuzz::Require(record->machine.size() <= 15, "a key has at most 15 bytes");
      zt::fuzz::Require(record->part.size() == 16, "a part has 16 digits");
    } else if (const auto* const bad = std::get_if<fleet::BadRecord>(&made)) {
      zt::fuzz::Require(bad->bytes == piece.bytes && !bad->reason.empty(),
                        "what is no record stays as it came, with a reason");
    }
  }
  return 0;
}
