#include "host/report/record_table.h"

#include <cstdint>
#include <optional>

#include "host/report/page_json.h"
#include "host/views/field_place.h"
#include "host/views/record_reader.h"

namespace zt::telemetry::host {
namespace {

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;
using google::protobuf::Message;

constexpr char kNull[] = "null";
constexpr std::size_t kMostNamed = 64;  // of the collector's own there are six

// The type of the section's entries.
const Descriptor& TypeAt(const Descriptor& record, std::string_view path) {
  if (path.empty()) return record;
  const std::size_t dot = path.find('.');
  const FieldDescriptor* const field = record.FindFieldByName(std::string(path.substr(0, dot)));
  return TypeAt(*field->message_type(), dot == std::string_view::npos ? "" : path.substr(dot + 1));
}

// An entry that is a name and a number.
struct NamedFigure {
  const FieldDescriptor* name = nullptr;
  const FieldDescriptor* number = nullptr;
};

std::optional<NamedFigure> AsNamedFigure(const Descriptor& entry) {
  constexpr int kFields = 2;
  if (entry.field_count() != kFields) return std::nullopt;
  NamedFigure named;
  for (int i = 0; i < kFields; ++i) {
    const FieldDescriptor* const field = entry.field(i);
    (field->cpp_type() == FieldDescriptor::CPPTYPE_STRING ? named.name : named.number) = field;
  }
  if (named.name == nullptr || named.number == nullptr || !IsNumber(*named.number)) return std::nullopt;
  return named;
}

TableColumn::Kind KindOf(const FieldDescriptor& field) {
  if (field.is_repeated()) return TableColumn::Kind::kText;
  if (field.cpp_type() == FieldDescriptor::CPPTYPE_BOOL) return TableColumn::Kind::kFlag;
  return IsNumber(field) ? TableColumn::Kind::kNumber : TableColumn::Kind::kText;
}

std::string NumberJson(const FieldPlace& place, Form form) {
  const auto* const reflection = place.message->GetReflection();
  if (form == Form::kSigned && place.field->cpp_type() == FieldDescriptor::CPPTYPE_UINT32) {
    return std::to_string(static_cast<std::int32_t>(reflection->GetUInt32(*place.message, place.field)));
  }
  if (place.field->cpp_type() == FieldDescriptor::CPPTYPE_FLOAT) {
    return PageNumber(reflection->GetFloat(*place.message, place.field));
  }
  return PageNumber(NumberAt(place));
}

std::string_view KindText(TableColumn::Kind kind) {
  switch (kind) {
    case TableColumn::Kind::kNumber:
      return "number";
    case TableColumn::Kind::kFlag:
      return "flag";
    default:
      return "text";
  }
}

// Rows behind the last value have none.
std::string ColumnJson(TableColumn column, std::size_t rows) {
  column.values.resize(rows, kNull);
  std::string json = R"({"path":)" + PageText(column.path) + R"(,"label":)" + PageText(column.label) + R"(,"unit":)" +
                     PageText(column.unit) + R"(,"meaning":)" + PageText(column.meaning) + R"(,"kind":)" +
                     PageText(KindText(column.kind)) + R"(,"data":)" + PageValues(column.values);
  if (column.kind == TableColumn::Kind::kText) json += R"(,"texts":)" + PageTexts(column.texts);
  return json + "}";
}

}  // namespace

RecordTable::RecordTable(const Descriptor& record, const Section& section, const ContractComments& comments)
    : comments_(comments), title_(section.title), path_(section.path), figures_(section.figures) {
  full_path_ = std::string(record.name()) + (path_.empty() ? "" : "." + path_);
  const Descriptor& type = TypeAt(record, path_);
  meaning_ = comments_.Of(type);
}

void RecordTable::Add(const Message& record) {
  const std::size_t before = rows_;
  for (const Message* entry : MessagesAt(record, path_)) AddRow(*entry);
  entries_.push_back(std::to_string(rows_ - before));
}

void RecordTable::AddOther() {
  entries_.emplace_back("0");
}

void RecordTable::AddRow(const Message& entry) {
  ++rows_;
  for (const Figure& figure : figures_) AddFigure(entry, figure);
}

void RecordTable::AddFigure(const Message& entry, const Figure& figure) {
  const FieldPlace place = PlaceOf(entry, figure.path);
  if (place.field == nullptr) return;
  if (place.field->is_repeated() && place.field->message_type() != nullptr &&
      AsNamedFigure(*place.field->message_type())) {
    return AddNamed(*place.message, figure, *place.field);
  }
  TableColumn* column = ColumnOf(figure.path);
  if (column == nullptr) column = &NewColumn(figure.path, *place.field);
  if (!IsSet(place)) return;
  switch (column->kind) {
    case TableColumn::Kind::kNumber:
      return Set(*column, NumberJson(place, figure.form));
    case TableColumn::Kind::kFlag:
      return Set(*column, place.message->GetReflection()->GetBool(*place.message, place.field) ? "true" : "false");
    default:
      return SetText(*column,
                     place.field->is_repeated() ? FigureText(entry, figure).value_or("") : PlainText(place, -1));
  }
}

void RecordTable::AddNamed(const Message& entry, const Figure& figure, const FieldDescriptor& list) {
  const NamedFigure named = *AsNamedFigure(*list.message_type());
  const auto* const reflection = entry.GetReflection();
  for (int i = 0; i < reflection->FieldSize(entry, &list); ++i) {
    const Message& element = reflection->GetRepeatedMessage(entry, &list, i);
    const FieldPlace number{&element, named.number};
    if (!IsSet(number)) continue;
    const std::string name = PlainText({&element, named.name}, -1);
    const std::string path = figure.path + "[" + name + "]";
    TableColumn* column = ColumnOf(path);
    if (column == nullptr && named_ >= kMostNamed) {
      ++left_out_;
      continue;
    }
    if (column == nullptr) {
      ++named_;
      column = &NewColumn(path, *named.number);
      column->label = name;
      column->meaning = comments_.Of(list) + " " + column->meaning;
    }
    Set(*column, NumberJson(number, Form::kNumber));
  }
}

TableColumn* RecordTable::ColumnOf(const std::string& path) {
  const auto found = column_of_path_.find(path);
  return found != column_of_path_.end() ? &columns_[found->second] : nullptr;
}

TableColumn& RecordTable::NewColumn(const std::string& path, const FieldDescriptor& field) {
  column_of_path_[path] = columns_.size();
  const std::string unit = UnitText(field);
  columns_.push_back({path,
                      std::string(LabelOf(field)),
                      unit.empty() ? unit : unit.substr(1),
                      comments_.Of(field),
                      KindOf(field),
                      {},
                      {},
                      {}});
  return columns_.back();
}

void RecordTable::SetText(TableColumn& column, const std::string& text) {
  const auto [known, is_new] = column.known.try_emplace(text, column.texts.size());
  if (is_new) column.texts.push_back(text);
  Set(column, std::to_string(known->second));
}

// Of two entries of one name the later one stays.
void RecordTable::Set(TableColumn& column, std::string json) {
  column.values.resize(rows_ - 1, kNull);
  column.values.push_back(std::move(json));
}

std::string RecordTable::Json() const {
  std::string columns;
  for (const TableColumn& column : columns_)
    columns.append(columns.empty() ? "" : ",\n").append(ColumnJson(column, rows_));
  return R"({"path":)" + PageText(full_path_) + R"(,"title":)" + PageText(title_) + R"(,"meaning":)" +
         PageText(meaning_) + R"(,"entries":)" + PageValues(entries_) + R"(,"columns":[)" + columns + "]}";
}

}  // namespace zt::telemetry::host
