#pragma once

#include <google/protobuf/descriptor.h>

#include <string>
#include <string_view>
#include <vector>

namespace zt::telemetry::host {

/// How a field's value is written for people.
enum class Form {
  kText,
  kNumber,
  kSigned,  // a signed 32-bit number in an unsigned field
  kYesNo,
  kMinutes,    // as days, hours and minutes
  kKibibytes,  // also in a larger unit
  kBytes,      // in the unit that fits
  kList,       // a repeated field: the values of each entry, its texts before its numbers
  kOmitted,    // not shown, since another figure tells the same
};

/// One figure of a section.
struct Figure {
  /// Lives as long as the descriptor from which the figure was read.
  std::string_view label;
  /// Names of fields joined by dots, from the section's message on.
  std::string path;
  Form form = Form::kText;
  /// Written behind the number, the blank before it included.
  std::string unit = {};
};

/// A message of a record, or the entries of a repeated one, as a table.
struct Section {
  std::string_view title;
  /// From the record on; empty for the record itself.
  std::string path;
  std::vector<Figure> figures;
};

/// A record: the fields of its heading, empty where it has none, and its sections in the order in which they are shown.
struct RecordLayout {
  std::string id_path;
  std::string time_path;
  std::string samples_path;
  std::vector<Section> sections;
};

/// The layout of a record type, read from the annotations of the contract (contracts/contract_annotations.proto). A
/// field without a label has no place in it and is shown by its name; a record type without annotations has an empty
/// layout.
RecordLayout LayoutOf(const google::protobuf::Descriptor& record);

/// Behind a number in the unit of `field`: the unit and a blank before it, empty where it has none.
std::string UnitText(const google::protobuf::FieldDescriptor& field);

/// What people call `field`, empty where it has no label.
std::string_view LabelOf(const google::protobuf::FieldDescriptor& field);

}  // namespace zt::telemetry::host
