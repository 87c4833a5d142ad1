#include "record_listing.h"

#include <google/protobuf/descriptor.pb.h>

#include <algorithm>
#include <sstream>

#include "descriptors.h"

namespace zt::tests {
namespace {

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;
using google::protobuf::FileDescriptor;

constexpr char kHeading[] =
    "# The records as agreed with their readers. Made by scripts/contract. What stands here stays, since records of\n"
    "# older and newer collectors are read by it: fields are added, never changed, taken away or given another "
    "number.\n";

const std::string kFile = "file ";
const std::string kMessage = "message ";
const std::string kField = "  ";

std::string Cardinality(const FieldDescriptor& field) {
  if (field.is_repeated()) return "repeated";
  return field.has_presence() ? "optional" : "without presence";
}

std::string LineOf(const FieldDescriptor& field) {
  return kField + std::to_string(field.number()) + " " + std::string(field.name()) + ": " + Cardinality(field) + " " +
         TypeName(field) + ", JSON " + std::string(field.json_name()) + "\n";
}

std::vector<const FieldDescriptor*> ByNumber(const Descriptor& message) {
  std::vector<const FieldDescriptor*> fields;
  for (int i = 0; i < message.field_count(); ++i) fields.push_back(message.field(i));
  std::sort(fields.begin(), fields.end(),
            [](const FieldDescriptor* one, const FieldDescriptor* two) { return one->number() < two->number(); });
  return fields;
}

std::string LineOf(const FileDescriptor& file) {
  google::protobuf::FileDescriptorProto proto;
  file.CopyTo(&proto);
  return kFile + proto.name() + ": " + proto.syntax() + ", package " + proto.package() + "\n";
}

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (!line.empty() && line.front() != '#') lines.push_back(line);
  }
  return lines;
}

}  // namespace

std::string ListingOf(const FileDescriptor& file) {
  std::string listing = LineOf(file);
  for (const Descriptor* message : Messages(file)) {
    listing += "\n" + kMessage + NameInPackage(*message) + "\n";
    for (const FieldDescriptor* field : ByNumber(*message)) listing += LineOf(*field);
  }
  return listing;
}

std::string ListingOfTheContract() {
  return kHeading + ("\n" + ListingOf(UploadFile())) + "\n" + ListingOf(StorageFile());
}

std::string PartOf(const std::string& listing, const std::string& name) {
  std::string part;
  bool within = false;
  for (const std::string& line : LinesOf(listing)) {
    if (line.starts_with(kFile)) within = line.starts_with(kFile + name + ":");
    if (within) part += line + "\n";
  }
  return part;
}

std::vector<std::string> LinesOf(const std::string& listing, const std::string& kind) {
  std::vector<std::string> lines = LinesOf(listing);
  std::erase_if(lines, [&kind](const std::string& line) { return !line.starts_with(kind + " "); });
  return lines;
}

std::vector<std::string> FieldsOf(const std::string& listing) {
  std::vector<std::string> fields;
  std::string message;
  for (const std::string& line : LinesOf(listing)) {
    if (line.starts_with(kMessage)) message = line.substr(kMessage.size());
    if (line.starts_with(kField)) fields.push_back(message + line.substr(kField.size() - 1));
  }
  return fields;
}

std::vector<std::string> StatementsOf(const std::string& listing) {
  std::vector<std::string> statements = FieldsOf(listing);
  for (const char* kind : {"file", "message"}) {
    for (std::string& line : LinesOf(listing, kind)) statements.push_back(std::move(line));
  }
  return statements;
}

std::string Without(const std::vector<std::string>& lines, const std::vector<std::string>& others) {
  std::string rest;
  for (const std::string& line : lines) {
    if (std::find(others.begin(), others.end(), line) == others.end()) rest += line + "\n";
  }
  return rest;
}

}  // namespace zt::tests
