#pragma once

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
  std::string_view label;
  /// Names of fields joined by dots, from the section's message on.
  std::string_view path;
  Form form = Form::kText;
  /// Written behind the number.
  std::string_view unit = {};
};

/// A message of a record, or the entries of a repeated one, as a table.
struct Section {
  std::string_view title;
  /// From the record on; empty for the record itself.
  std::string_view path;
  std::vector<Figure> figures;
};

/// A record: the fields of its heading, and its sections in the order in which they are shown.
struct RecordLayout {
  std::string_view message;
  /// Empty where the record has none.
  std::string_view id_path;
  std::string_view time_path;
  std::string_view samples_path;
  std::vector<Section> sections;
};

/// The layout of a record type by its full message name, null for a type that is not known here. A new field needs one
/// line in the layout; until then it is shown by its name.
const RecordLayout* FindRecordLayout(std::string_view message);

}  // namespace zt::telemetry::host
