#pragma once

#include <google/protobuf/message.h>

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "host/contract_comments.h"
#include "host/views/record_layout.h"

namespace zt::telemetry::host {

/// A figure of a section over all rows of its table.
struct TableColumn {
  enum class Kind { kNumber, kFlag, kText };

  std::string path;  // from the section on; of a named figure with its name: "temperature_sensors_info[cpu_temp]"
  std::string label;
  std::string unit;
  std::string meaning;
  Kind kind = Kind::kText;
  std::vector<std::string> values;           // JSON: null, a number, true, false; of a text its place in `texts`
  std::vector<std::string> texts;            // each once
  std::map<std::string, std::size_t> known;  // where each of them stands
};

/// One section of a record's layout over many records: a row for each entry, a column for each figure. Figures that the
/// tables of people do not show have columns too, and an entry of a list of named figures (temperatures, averages of
/// fans) has one for its name.
class RecordTable {
 public:
  /// `record` is the type of the records; the section's layout is theirs.
  RecordTable(const google::protobuf::Descriptor& record, const Section& section, const ContractComments& comments);

  /// Records are added in order, and each of them, whether it has the section or not.
  void Add(const google::protobuf::Message& record);
  /// A record of another type stands here.
  void AddOther();

  bool IsEmpty() const { return rows_ == 0; }
  /// Names of figures for which there was no room.
  std::size_t LeftOut() const { return left_out_; }
  const std::string& Title() const { return title_; }
  /// The table as JSON for the page.
  std::string Json() const;

 private:
  void AddRow(const google::protobuf::Message& entry);
  void AddFigure(const google::protobuf::Message& entry, const Figure& figure);
  void AddNamed(const google::protobuf::Message& entry, const Figure& figure,
                const google::protobuf::FieldDescriptor& list);
  TableColumn* ColumnOf(const std::string& path);
  TableColumn& NewColumn(const std::string& path, const google::protobuf::FieldDescriptor& field);
  void SetText(TableColumn& column, const std::string& text);
  void Set(TableColumn& column, std::string json);

  const ContractComments& comments_;
  std::string title_;
  std::string path_;
  std::string full_path_;
  std::string meaning_;
  std::vector<Figure> figures_;
  std::vector<std::string> entries_;  // of each record, how many; JSON
  std::vector<TableColumn> columns_;
  std::map<std::string, std::size_t> column_of_path_;
  std::size_t rows_ = 0;
  std::size_t named_ = 0;
  std::size_t left_out_ = 0;
};

}  // namespace zt::telemetry::host
