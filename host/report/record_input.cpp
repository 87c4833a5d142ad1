#include "host/report/record_input.h"

#include <google/protobuf/util/json_util.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <fstream>
#include <iterator>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include <nlohmann/json.hpp>

#include "host/failure.h"
#include "host/outbox/kept_record.h"
#include "host/outbox/outbox.h"
#include "host/program_environment.h"
#include "host/report/record_bytes.h"
#include "performance_samples_upload.pb.h"

namespace zt::telemetry::host {
namespace {

using google::protobuf::Message;
using Upload = contract::upload::log::PcLogPerformanceSamplesAsCDM;

constexpr char kUtf8Mark[] = "\xEF\xBB\xBF";
constexpr int kDeepestJson = 64;  // a record's own is 8 deep
constexpr std::size_t kLongestQuote = 60;
constexpr char kExpectedLine[] = R"(expected a hand-over as one line of JSON: {"handover":…,"type":…,"record":{…}})";
constexpr char kExpectedRecord[] =
    "expected PcLogPerformanceSamplesAsCDM records, each behind its length, as outbox export --format protobuf writes";

std::string ReadWhole(const std::filesystem::path& file) {
  const auto cannot = [&file](const std::string& reason) {
    return WrongUsage("--records " + PathText(file) + ": " + reason);
  };
  std::error_code error;
  if (!std::filesystem::exists(file, error)) throw cannot("there is no such file");
  if (std::filesystem::is_directory(file, error)) throw cannot("this is a folder, not a file");
  errno = 0;
  std::ifstream stream(file, std::ios::binary);
  std::string bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  if (!stream.is_open() || stream.bad()) {
    throw cannot("the file cannot be read: " + std::generic_category().message(errno));
  }
  return bytes;
}

// The beginning of what somebody else wrote, for a message.
std::string QuotedStart(std::string_view text) {
  const bool is_long = text.size() > kLongestQuote;
  return nlohmann::json(std::string(text.substr(0, kLongestQuote)))
             .dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) +
         (is_long ? "…" : "");
}

// A problem of one line, as an exception within this file.
struct BadLine {
  std::string reason;
};

nlohmann::json ParseLine(const std::string& line) {
  bool too_deep = false;
  const auto shallow = [&too_deep](int depth, nlohmann::json::parse_event_t, const nlohmann::json&) {
    too_deep = too_deep || depth > kDeepestJson;
    return depth <= kDeepestJson;
  };
  try {
    nlohmann::json json = nlohmann::json::parse(line, shallow);
    if (too_deep) throw BadLine{"JSON that is nested deeper than " + std::to_string(kDeepestJson) + " levels"};
    return json;
  } catch (const nlohmann::json::exception&) {
    throw BadLine{"this is no JSON: " + QuotedStart(line)};
  }
}

std::string TextMember(const nlohmann::json& json, const char* name) {
  const auto found = json.find(name);
  if (found == json.end() || !found->is_string()) {
    throw BadLine{std::string("\"") + name + "\" is missing, or no text"};
  }
  return found->get<std::string>();
}

// Fields that are not known are those of a newer collector: the rest of the record is read all the same.
std::unique_ptr<Message> RecordOfJson(const std::string& type, const std::string& json, bool& newer) {
  std::unique_ptr<Message> record = NewRecord(type);
  if (record == nullptr) throw BadLine{"the record type " + QuotedStart(type) + " is unknown"};
  google::protobuf::util::JsonParseOptions options;
  if (google::protobuf::util::JsonStringToMessage(json, record.get(), options).ok()) return record;
  record->Clear();
  options.ignore_unknown_fields = true;
  const auto status = google::protobuf::util::JsonStringToMessage(json, record.get(), options);
  if (!status.ok()) {
    throw BadLine{"the record cannot be read as a " + type + ": " +
                  ValidUtf8(std::string(status.message()).substr(0, 2 * kLongestQuote))};
  }
  newer = true;
  return record;
}

void ReadLine(const std::string& line, const std::string& where, RecordInput& input) {
  const nlohmann::json json = ParseLine(line);
  if (!json.is_object()) throw BadLine{"this is no JSON object: " + QuotedStart(line)};
  const std::string type = TextMember(json, "type");
  if (type == kTextMessage) {
    ++input.texts;
    return;
  }
  const auto record = json.find("record");
  if (record == json.end() || !record->is_object()) throw BadLine{"\"record\" is missing, or no object"};
  bool newer = false;
  input.records.push_back(RecordOfJson(type, record->dump(), newer));
  if (newer) {
    input.problems.push_back(where + ": the record has fields that this program does not know; they are left out");
  }
}

void ReadLines(const std::string& text, const std::string& file, RecordInput& input) {
  std::size_t number = 0;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    std::string line = text.substr(begin, end - begin);
    begin = end + 1;
    ++number;
    if (line.ends_with('\r')) line.pop_back();
    if (line.find_first_not_of(" \t") == std::string::npos) continue;
    const std::string where = file + ", line " + std::to_string(number);
    try {
      ReadLine(ValidUtf8(line), where, input);
    } catch (const BadLine& bad) {
      input.problems.push_back(where + ": " + bad.reason + "; " + kExpectedLine);
    }
  }
}

// Takes a length, protobuf's variable number, off the front of `bytes`.
std::optional<std::size_t> TakeLength(std::string_view& bytes) {
  constexpr unsigned kBits = 7;
  constexpr unsigned kMostBits = 35;
  std::uint64_t length = 0;
  for (unsigned shift = 0; shift < kMostBits && !bytes.empty(); shift += kBits) {
    const auto byte = static_cast<unsigned char>(bytes.front());
    bytes.remove_prefix(1);
    length |= std::uint64_t{byte & 0x7FU} << shift;
    if (byte < 0x80U) return static_cast<std::size_t>(length);
  }
  return std::nullopt;
}

bool HasFigures(const Message& record) {
  const auto& upload = dynamic_cast<const Upload&>(record);
  return upload.has_local_time() || upload.has_hw_info() || upload.has_operating_system_info();
}

// Nothing when the bytes are no upload record.
std::unique_ptr<Message> UploadOf(std::string_view bytes) {
  auto record = RecordFromBytes(std::string(Upload::descriptor()->full_name()), std::string(bytes));
  return record != nullptr && HasFigures(*record) ? std::move(record) : nullptr;
}

void ReadDelimited(std::string_view bytes, const std::string& file, RecordInput& input) {
  const std::size_t size = bytes.size();
  for (std::size_t number = 1; !bytes.empty(); ++number) {
    const std::string where =
        file + ", record " + std::to_string(number) + " at byte " + std::to_string(size - bytes.size());
    const std::optional<std::size_t> length = TakeLength(bytes);
    if (!length.has_value() || *length > bytes.size()) {
      input.problems.push_back(where + ": the file ends before the record does, or this is no length; " +
                               kExpectedRecord);
      return;
    }
    auto record = UploadOf(bytes.substr(0, *length));
    bytes.remove_prefix(*length);
    if (record != nullptr) {
      input.records.push_back(std::move(record));
    } else {
      input.problems.push_back(where + ": these bytes are no such record; " + kExpectedRecord);
    }
  }
}

// A length of 123 bytes looks like the brace of JSON, but no record goes on with a quotation mark.
bool IsDelimited(std::string_view bytes) {
  if (bytes.starts_with(R"({")")) return false;
  const std::optional<std::size_t> length = TakeLength(bytes);
  return length.has_value() && *length > 0 && *length <= bytes.size() && UploadOf(bytes.substr(0, *length)) != nullptr;
}

}  // namespace

void ReadRecordFile(const std::filesystem::path& file, RecordInput& input) {
  std::string bytes = ReadWhole(file);
  if (IsDelimited(bytes)) return ReadDelimited(bytes, PathText(file), input);
  if (bytes.starts_with(kUtf8Mark)) bytes.erase(0, std::string_view(kUtf8Mark).size());
  ReadLines(bytes, PathText(file), input);
}

void ReadOutbox(const std::filesystem::path& folder, RecordInput& input) {
  const Outbox outbox = Outbox::Existing(folder);
  outbox.ForEach(/*all=*/false, [&](const KeptHandOver& kept) {
    if (kept.hand_over.message == kTextMessage) {
      ++input.texts;
      return;
    }
    auto record = RecordFromBytes(kept.hand_over.message, kept.hand_over.bytes);
    if (record != nullptr) {
      input.records.push_back(std::move(record));
      return;
    }
    input.problems.push_back(PathText(folder) + ", hand-over " + std::to_string(kept.id) + ": it cannot be read as a " +
                             ValidUtf8(kept.hand_over.message) + "; expected a record of the contract");
  });
}

}  // namespace zt::telemetry::host
