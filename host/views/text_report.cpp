#include "host/views/text_report.h"

#include <google/protobuf/util/json_util.h>

#include <optional>
#include <stdexcept>
#include <utility>

#include <nlohmann/json.hpp>

#include "host/views/figures.h"
#include "host/views/record_reader.h"
#include "host/views/record_text.h"
#include "host/views/text_table.h"
#include "performance_samples_upload.pb.h"

namespace zt::telemetry::host {
namespace {

using google::protobuf::Message;

constexpr std::string_view kStored = "STORED";
constexpr std::string_view kSent = "SENT";

// "2026-03-07T12:20:42.000Z" carries local time: shown without the "T" and the "Z" that says otherwise.
std::string TimeText(std::string time) {
  constexpr std::size_t kDateLength = 10;
  if (const std::size_t end = time.find(".000Z"); end != std::string::npos) time.erase(end);
  if (time.size() > kDateLength && time[kDateLength] == 'T') time[kDateLength] = ' ';
  return time;
}

std::string Heading(std::string_view hand_over, const Message& record) {
  const RecordLayout layout = LayoutOf(*record.GetDescriptor());
  std::string heading(hand_over);
  heading.append(" ").append(record.GetDescriptor()->name());
  if (const std::string id = TextAt(record, layout.id_path); !id.empty()) heading += "  " + id;
  if (const std::string time = TextAt(record, layout.time_path); !time.empty()) heading += "  " + TimeText(time);
  if (const std::string samples = TextAt(record, layout.samples_path); !samples.empty()) {
    heading += "  " + GroupDigits(samples) + (samples == "1" ? " sample" : " samples");
  }
  return Printable(heading) + "\n";
}

// The upload inside of a text in the form of the example upload: an object whose "data" is the record.
std::optional<contract::upload::log::PcLogPerformanceSamplesAsCDM> ReadUpload(const std::string& text) {
  const nlohmann::json parsed = nlohmann::json::parse(text, nullptr, /*allow_exceptions=*/false);
  if (!parsed.is_object() || !parsed.contains("data")) return std::nullopt;
  google::protobuf::util::JsonParseOptions options;
  options.ignore_unknown_fields = true;
  contract::upload::log::PcLogPerformanceSamplesAsCDM upload;
  if (!google::protobuf::util::JsonStringToMessage(parsed["data"].dump(), &upload, options).ok()) return std::nullopt;
  return upload;
}

}  // namespace

void TextReport::ShowStored(const Message& record) {
  ShowRecord(kStored, record);
}

void TextReport::ShowSent(const Message& record) {
  ShowRecord(kSent, record);
}

void TextReport::ShowSentText(const std::string& text) {
  const std::string heading =
      std::string(kSent) + " text of " + GroupDigits(std::to_string(text.size())) + " characters";
  if (const auto upload = ReadUpload(text); upload.has_value()) {
    Write(heading + " (--format json shows it whole); the upload in it:\n");
    return ShowRecord(kSent, *upload);
  }
  Write(heading + ":\n" + Printable(text) + "\n\n");
}

void TextReport::ShowRecord(std::string_view hand_over, const Message& record) {
  Write(Heading(hand_over, record) + SectionsText(record) + "\n");
}

void TextReport::Write(const std::string& text) {
  if (!(stream_ << text << std::flush)) throw std::runtime_error("the output cannot be written");
}

}  // namespace zt::telemetry::host
