#include "host/views/record_text.h"

#include <optional>
#include <string_view>
#include <vector>

#include "host/views/record_layout.h"
#include "host/views/record_reader.h"
#include "host/views/text_table.h"

namespace zt::telemetry::host {
namespace {

using google::protobuf::Message;

constexpr char kOtherFields[] = "Other fields";
constexpr std::size_t kTitleIndent = 2;
constexpr std::size_t kTableIndent = 4;

bool ToTheRight(Form form) {
  return form != Form::kText && form != Form::kList && form != Form::kYesNo;
}

std::string Titled(std::string_view title, const std::string& table) {
  return std::string(kTitleIndent, ' ').append(title).append("\n").append(table);
}

// One message: its figures below each other.
std::string SingleMessageTable(const Section& section, const Message& message) {
  std::vector<std::vector<Cell>> rows;
  for (const Figure& figure : section.figures) {
    const std::optional<std::string> text = FigureText(message, figure);
    if (text.has_value()) rows.push_back({{std::string(figure.label)}, {Printable(*text)}});
  }
  return TableText({"", ""}, rows, kTableIndent, kTextWidth);
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
  return TableText(headings, rows, kTableIndent, kTextWidth);
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
  std::vector<std::string> known = {layout.id_path, layout.time_path, layout.samples_path};
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
  return rows.empty() ? "" : Titled(kOtherFields, TableText({"", ""}, rows, kTableIndent, kTextWidth));
}

}  // namespace

std::string SectionsText(const Message& record) {
  const RecordLayout layout = LayoutOf(*record.GetDescriptor());
  std::string text;
  for (const Section& section : layout.sections) text += SectionText(section, record);
  return text + OtherFieldsText(layout, record);
}

}  // namespace zt::telemetry::host
