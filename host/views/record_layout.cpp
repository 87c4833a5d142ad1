#include "host/views/record_layout.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include "contract_annotations.pb.h"

namespace zt::telemetry::host {
namespace {

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;

// Numbers in these units are easier to read in larger ones.
constexpr std::array kScaledUnits = std::to_array<std::pair<std::string_view, Form>>({
    {"min", Form::kMinutes},
    {"KiB", Form::kKibibytes},
    {"B", Form::kBytes},
});

const contract::Shown& ShownAs(const FieldDescriptor& field) {
  return field.options().GetExtension(contract::shown);
}

const contract::Section& SectionOf(const Descriptor& message) {
  return message.options().GetExtension(contract::section);
}

bool IsSection(const FieldDescriptor& field) {
  return field.message_type() != nullptr && !SectionOf(*field.message_type()).title().empty();
}

// What has no place of its own comes last.
std::uint32_t Rank(std::uint32_t place) {
  return place != 0 ? place : std::numeric_limits<std::uint32_t>::max();
}

std::vector<const FieldDescriptor*> FieldsByPlace(const Descriptor& message) {
  std::vector<const FieldDescriptor*> fields;
  fields.reserve(static_cast<std::size_t>(message.field_count()));
  for (int i = 0; i < message.field_count(); ++i) fields.push_back(message.field(i));
  std::stable_sort(fields.begin(), fields.end(), [](const FieldDescriptor* one, const FieldDescriptor* two) {
    return Rank(ShownAs(*one).place()) < Rank(ShownAs(*two).place());
  });
  return fields;
}

Form NumberForm(const contract::Shown& shown) {
  if (shown.signed_bits()) return Form::kSigned;
  const auto scaled = std::find_if(kScaledUnits.begin(), kScaledUnits.end(),
                                   [&shown](const auto& unit) { return unit.first == shown.unit(); });
  return scaled != kScaledUnits.end() ? scaled->second : Form::kNumber;
}

Form FormOf(const FieldDescriptor& field) {
  if (ShownAs(field).hidden()) return Form::kOmitted;
  if (field.is_repeated()) return Form::kList;
  if (field.cpp_type() == FieldDescriptor::CPPTYPE_BOOL) return Form::kYesNo;
  return field.cpp_type() == FieldDescriptor::CPPTYPE_STRING ? Form::kText : NumberForm(ShownAs(field));
}

std::string Joined(const std::string& path, std::string_view rest) {
  return path.empty() ? std::string(rest) : path + "." + std::string(rest);
}

// Walks through the message types of a record.
class LayoutReader {
 public:
  RecordLayout Read(const Descriptor& record) {
    AddSection(record, "");
    std::stable_sort(ranked_.begin(), ranked_.end(),
                     [](const Ranked& one, const Ranked& two) { return one.rank < two.rank; });
    for (Ranked& ranked : ranked_) layout_.sections.push_back(std::move(ranked.section));
    return std::move(layout_);
  }

 private:
  struct Ranked {
    Section section;
    std::uint32_t rank;
  };

  // The section of `message`, which lies at `path` of the record, and those below it.
  void AddSection(const Descriptor& message, const std::string& path) {
    Section section{SectionOf(message).title(), path, {}};
    AddFields(message, "", section);
    if (!section.title.empty()) ranked_.push_back({std::move(section), Rank(SectionOf(message).place())});
  }

  // The fields of `message`, which lies at `path` of the section.
  void AddFields(const Descriptor& message, const std::string& path, Section& section) {
    if (std::find(around_.begin(), around_.end(), &message) != around_.end()) return;  // a type that holds itself
    around_.push_back(&message);
    for (const FieldDescriptor* field : FieldsByPlace(message)) {
      AddField(*field, Joined(path, field->name()), section);
    }
    around_.pop_back();
  }

  void AddField(const FieldDescriptor& field, const std::string& path, Section& section) {
    if (IsSection(field)) return AddSection(*field.message_type(), Joined(section.path, path));
    if (field.message_type() != nullptr && !field.is_repeated()) {
      return AddFields(*field.message_type(), path, section);
    }
    if (std::string* const heading = HeadingPath(ShownAs(field).heading()); heading != nullptr) {
      *heading = Joined(section.path, path);
    } else if (!LabelOf(field).empty()) {
      section.figures.push_back({LabelOf(field), path, FormOf(field), UnitText(field)});
    }
  }

  // Where the path of such a field belongs, null for one that is in no heading.
  std::string* HeadingPath(contract::Heading heading) {
    switch (heading) {
      case contract::IDENTITY:
        return &layout_.id_path;
      case contract::TIME:
        return &layout_.time_path;
      case contract::NUMBER_OF_SAMPLES:
        return &layout_.samples_path;
      default:
        return nullptr;
    }
  }

  RecordLayout layout_;
  std::vector<Ranked> ranked_;
  std::vector<const Descriptor*> around_;
};

}  // namespace

RecordLayout LayoutOf(const Descriptor& record) {
  return LayoutReader().Read(record);
}

std::string UnitText(const FieldDescriptor& field) {
  const std::string& unit = ShownAs(field).unit();
  return unit.empty() ? unit : " " + unit;
}

std::string_view LabelOf(const FieldDescriptor& field) {
  return ShownAs(field).label();
}

}  // namespace zt::telemetry::host
