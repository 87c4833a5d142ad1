#pragma once

#include <google/protobuf/message.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace zt::tests {

/// A part of what a cycle hands over that one source fills: a field of a record, or what a test puts in its place.
struct Section {
  std::string bytes;                                  // compared
  std::map<std::string, std::string> fields;          // where it is no record's: its fields by name, for telling
  const google::protobuf::Message* record = nullptr;  // where it is a record's; the record's owner keeps it
  const google::protobuf::FieldDescriptor* field = nullptr;
  const google::protobuf::Message* parent = nullptr;  // of the field: the record or a part of it
};

/// All that a host sees of a cycle.
struct Outcome {
  std::string result;
  std::map<std::string, Section> sections;                          // by name, "live 1 hw_info.gpus_info"
  std::vector<std::string> log;                                     // "error: text"
  std::vector<std::shared_ptr<google::protobuf::Message>> records;  // what sections point into
};

/// Adds the sections of a record that was handed over, as `name`.
void AddRecord(const std::string& name, std::shared_ptr<google::protobuf::Message> record, Outcome& outcome);

/// In what an outcome differs from that of an undisturbed cycle.
struct Effect {
  std::string result;                           // empty where it is the same
  std::map<std::string, std::string> sections;  // those that differ, and how
  std::vector<std::string> absent_records;      // whose sections are all among them, as absent
  std::vector<std::string> added_lines;         // of the log
  std::vector<std::string> missing_lines;

  bool operator==(const Effect&) const = default;
};

Effect Compare(const Outcome& undisturbed, const Outcome& outcome);

/// An effect in one line, for people.
std::string ToText(const Effect& effect);

/// A text with what never ends cut.
std::string Shortened(const std::string& text);

}  // namespace zt::tests
