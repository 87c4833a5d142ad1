#include "host/views/text_report.h"

#include <google/protobuf/util/json_util.h>

#include <optional>
#include <stdexcept>
#include <utility>

#include <nlohmann/json.hpp>

#include "host/views/figures.h"
#include "host/views/record_reader.h"
#include "host/views/text_table.h"
#include "performance_samples_upload.pb.h"

namespace zt::telemetry::host {
namespace {

using google::protobuf::Message;

constexpr std::string_view kStored = "STORED";
constexpr std::string_view kSent = "SENT";
constexpr char kOtherFields[] = "Other fields";
constexpr std::size_t kWidth = 120;
constexpr std::size_t kTitleIndent = 2;
constexpr std::size_t kTableIndent = 4;

const RecordLayout kUnknownRecord = {};

bool ToTheRight(Form form) {
  return form != Form::kText && form != Form::kList && form != Form::kYesNo;
}

std::string Titled(std::string_view title, const std::string& table) {
  return std::string(kTitleIndent, ' ').append(title).append("\n").append(table);
}

// "2026-03-07T12:20:42.000Z" carries local time: shown without the "T" and the "Z" that says otherwise.
std::string TimeText(std::string time) {
  constexpr std::size_t kDateLength = 10;
  if (const std::size_t end = time.find(".000Z"); end != std::string::npos) time.erase(end);
  if (time.size() > kDateLength && time[kDateLength] == 'T') time[kDateLength] = ' ';
  return time;
}

std::string Heading(std::string_view hand_over, const Message& record, const RecordLayout& layout) {
  std::string heading(hand_over);
  heading += " " + record.GetDescriptor()->name();
  if (const std::string id = TextAt(record, layout.id_path); !id.empty()) heading += "  " + id;
  if (const std::string time = TextAt(record, layout.time_path); !time.empty()) heading += "  " + TimeText(time);
  if (const std::string samples = TextAt(record, layout.samples_path); !samples.empty()) {
    heading += "  " + GroupDigits(samples) + (samples == "1" ? " sample" : " samples");
  }
  return Printable(heading) + "\n";
}

// One message: its figures below each other.
std::string SingleMessageTable(const Section& section, const Message& message) {
  std::vector<std::vector<Cell>> rows;
  for (const Figure& figure : section.figures) {
    const std::optional<std::string> text = FigureText(message, figure);
    if (text.has_value()) rows.push_back({{std::string(figure.label)}, {Printable(*text)}});
  }
  return TableText({"", ""}, rows, kTableIndent, kWidth);
}

// Several messages: a row for each, a column for each figure that one of them has.
std::string ListTable(const Section& section, const std::vector<const Message*>& messages) {
  std::vector<std::string> headings;
  std::vector<std::vector<Cell>> rows(messages.size());
  for (const Figure& figure : section.figures) {
    std::vector<Cell> column;
    bool any = false;
    for (const Message* message : messages) {
      const std::optional<std::string> text = FigureText(*message, figure);
      any = any || text.has_value();
      column.push_back({Printable(text.value_or("")), ToTheRight(figure.form)});
    }
    if (!any) continue;
    headings.emplace_back(figure.label);
    for (std::size_t i = 0; i < rows.size(); ++i) rows[i].push_back(column[i]);
  }
  return TableText(headings, rows, kTableIndent, kWidth);
}

bool IsRepeated(const Section& section, const Message& record) {
  const auto* descriptor = record.GetDescriptor();
  const google::protobuf::FieldDescriptor* field = nullptr;
  for (std::string_view path = section.path; !path.empty() && descriptor != nullptr;) {
    const std::size_t dot = path.find('.');
    field = descriptor->FindFieldByName(std::string(path.substr(0, dot)));
    descriptor = field != nullptr ? field->message_type() : nullptr;
    path = dot == std::string_view::npos ? std::string_view() : path.substr(dot + 1);
  }
  return field != nullptr && field->is_repeated();
}

std::string SectionText(const Section& section, const Message& record) {
  const std::vector<const Message*> messages = MessagesAt(record, section.path);
  if (messages.empty()) return {};
  const std::string table =
      IsRepeated(section, record) ? ListTable(section, messages) : SingleMessageTable(section, *messages.front());
  return table.empty() ? table : Titled(section.title, table);
}

std::string Joined(std::string_view path, std::string_view rest) {
  return path.empty() ? std::string(rest) : std::string(path).append(".").append(rest);
}

// What the record holds beyond its layout. The entries of a repeated section are looked into one by one.
std::string OtherFieldsText(const RecordLayout& layout, const Message& record) {
  std::vector<std::string> known = {std::string(layout.id_path), std::string(layout.time_path),
                                    std::string(layout.samples_path)};
  std::vector<std::vector<Cell>> rows;
  const auto add = [&rows](std::string_view where, const auto& others) {
    for (const auto& [path, text] : others) rows.push_back({{Joined(where, path)}, {Printable(text)}});
  };
  for (const Section& section : layout.sections) {
    std::vector<std::string_view> of_section;
    for (const Figure& figure : section.figures) of_section.push_back(figure.path);
    if (!IsRepeated(section, record)) {
      for (std::string_view path : of_section) known.push_back(Joined(section.path, path));
      continue;
    }
    known.emplace_back(section.path);
    for (const Message* entry : MessagesAt(record, section.path)) add(section.path, OtherFields(*entry, of_section));
  }
  add("", OtherFields(record, {known.begin(), known.end()}));
  return rows.empty() ? "" : Titled(kOtherFields, TableText({"", ""}, rows, kTableIndent, kWidth));
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
  const RecordLayout* const found = FindRecordLayout(record.GetTypeName());
  const RecordLayout& layout = found != nullptr ? *found : kUnknownRecord;
  std::string text = Heading(hand_over, record, layout);
  for (const Section& section : layout.sections) text += SectionText(section, record);
  text += OtherFieldsText(layout, record);
  Write(text + "\n");
}

void TextReport::Write(const std::string& text) {
  if (!(stream_ << text << std::flush)) throw std::runtime_error("the output cannot be written");
}

}  // namespace zt::telemetry::host
