#include "host/metrics/metric_plan.h"

#include <google/protobuf/descriptor.h>

#include <optional>
#include <utility>

#include "host/metrics/base_unit.h"
#include "host/metrics/figure_value.h"
#include "host/views/record_layout.h"
#include "host/views/record_reader.h"

namespace zt::telemetry::host {
namespace {

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;
using google::protobuf::Message;
using Entries = MetricPlan::Entries;

constexpr char kInfo[] = "info";

// The message type that lies at `path` of `message`, and whether something on the way is a list.
struct SectionPlace {
  const Descriptor* message = nullptr;
  bool repeated = false;
};

const FieldDescriptor* FieldAt(const Descriptor& message, std::string_view path) {
  const std::size_t dot = path.find('.');
  const FieldDescriptor* const field = message.FindFieldByName(std::string(path.substr(0, dot)));
  return dot == std::string_view::npos ? field : FieldAt(*field->message_type(), path.substr(dot + 1));
}

SectionPlace PlaceAt(const Descriptor& message, std::string_view path) {
  if (path.empty()) return {&message, false};
  const FieldDescriptor* const field = FieldAt(message, path);
  return {field->message_type(), field->is_repeated()};
}

bool IsText(const FieldDescriptor& field) {
  return field.cpp_type() == FieldDescriptor::CPPTYPE_STRING;
}

bool IsList(const FieldDescriptor& field) {
  return field.is_repeated() && field.message_type() != nullptr;
}

// "temperatures" are made of a "temperature": one word tells both.
std::string_view ListWord(std::string_view list, std::string_view label) {
  return list.starts_with(label) ? std::string_view() : list;
}

// Makes the plan of the sections of a record.
class Planner {
 public:
  Planner(const Descriptor& record, const ContractComments& comments) : record_(record), comments_(comments) {}

  Entries Plan(const Section& section) const {
    const SectionPlace place = PlaceAt(record_, section.path);
    Entries entries{section.path, {}, {}, {}, {}, {}};
    for (const Figure& figure : section.figures) {
      if (figure.form == Form::kOmitted) continue;
      const MetricPlan::Field field{figure.path, FieldAt(*place.message, figure.path)};
      if (place.repeated && &figure == &section.figures.front()) {
        entries.labels.push_back({field, MetricWord(figure.label)});
      } else {
        AddFigure(field, section.title, figure.label, entries);
      }
    }
    if (!entries.texts.empty()) entries.info = InfoOf({section.title}, section.title);
    return entries;
  }

 private:
  void AddFigure(const MetricPlan::Field& field, std::string_view title, std::string_view label,
                 Entries& entries) const {
    if (IsList(*field.field)) {
      entries.lists.push_back(List(field, title, label));
    } else if (IsText(*field.field)) {
      entries.texts.push_back({field, MetricWord(label)});
    } else {
      entries.numbers.push_back({field, FamilyOf(*field.field, {title, label})});
    }
  }

  Entries List(const MetricPlan::Field& list, std::string_view title, std::string_view label) const {
    Entries entries{list.path, {}, {}, {}, {}, {}};
    const Descriptor& message = *list.field->message_type();
    for (int i = 0; i < message.field_count(); ++i) {
      const FieldDescriptor& field = *message.field(i);
      const std::string_view name = LabelOf(field);
      if (IsText(field)) {
        entries.labels.push_back({{field.name(), &field}, MetricWord(name)});
      } else {
        entries.numbers.push_back({{field.name(), &field}, FamilyOf(field, {title, ListWord(label, name), name})});
      }
    }
    if (entries.labels.size() > 1) entries.info = InfoOf({title, label}, label);
    return entries;
  }

  MetricFamily FamilyOf(const FieldDescriptor& field, std::vector<std::string_view> words) const {
    const std::string unit(MetricUnitOf(field));
    words.push_back(unit);
    return {MetricName(words), unit, comments_.Of(field)};
  }

  static MetricFamily InfoOf(std::vector<std::string_view> words, std::string_view title) {
    words.push_back(kInfo);
    return {MetricName(words), "", std::string(title) + ": what is told in words, as labels; always 1."};
  }

  const Descriptor& record_;
  const ContractComments& comments_;
};

// Adds what an entry has, each with the labels of what is around it.
void AddEntry(const Entries& entries, const Message& entry, Labels labels, OpenMetrics& metrics) {
  const auto add_texts = [&entry](const std::vector<MetricPlan::Text>& texts, Labels& to) {
    const std::size_t before = to.size();
    for (const MetricPlan::Text& text : texts) {
      std::optional<std::string> value = FigureWords(entry, text.field.path);
      if (value.has_value()) to.emplace_back(text.label, *std::move(value));
    }
    return to.size() > before;
  };
  const bool has_labels = add_texts(entries.labels, labels);
  for (const MetricPlan::Number& number : entries.numbers) {
    const std::optional<double> value = FigureValue(entry, number.field.path);
    if (value.has_value()) metrics.Add(number.family, labels, *value);
  }
  for (const Entries& list : entries.lists) {
    for (const Message* const inner : MessagesAt(entry, list.path)) AddEntry(list, *inner, labels, metrics);
  }
  if (entries.info.name.empty()) return;
  const bool has_texts = add_texts(entries.texts, labels);
  if (has_texts || (entries.texts.empty() && has_labels)) metrics.Add(entries.info, labels, 1);
}

void AddFamilies(const Entries& entries, std::vector<MetricFamily>& families) {
  for (const MetricPlan::Number& number : entries.numbers) families.push_back(number.family);
  for (const Entries& list : entries.lists) AddFamilies(list, families);
  if (!entries.info.name.empty()) families.push_back(entries.info);
}

}  // namespace

MetricPlan::MetricPlan(const Descriptor& record, const ContractComments& comments) {
  const Planner planner(record, comments);
  for (const Section& section : LayoutOf(record).sections) sections_.push_back(planner.Plan(section));
}

void MetricPlan::Add(const Message& record, OpenMetrics& metrics) const {
  for (const Entries& section : sections_) {
    for (const Message* const entry : MessagesAt(record, section.path)) AddEntry(section, *entry, {}, metrics);
  }
}

std::vector<MetricFamily> MetricPlan::Families() const {
  std::vector<MetricFamily> families;
  for (const Entries& section : sections_) AddFamilies(section, families);
  return families;
}

}  // namespace zt::telemetry::host
