// A number, once given, stays: records of other versions are read by it.
#include "field_numbers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "contracts/descriptors.h"

namespace zt::tests {
namespace {

std::vector<std::string> NumbersOnRecord() {
  std::vector<std::string> lines;
  std::istringstream text(kFieldNumbers);
  for (std::string line; std::getline(text, line);) lines.push_back(line);
  return lines;
}

std::vector<std::string> NumbersInUse() {
  std::vector<std::string> lines;
  for (const google::protobuf::FileDescriptor* file : {&UploadFile(), &StorageFile()}) {
    for (const google::protobuf::Descriptor* message : Messages(*file)) {
      for (int i = 0; i < message->field_count(); ++i) {
        const google::protobuf::FieldDescriptor& field = *message->field(i);
        lines.push_back(NameInPackage(*message) + "." + std::string(field.name()) + " = " +
                        std::to_string(field.number()) + " " + TypeName(field));
      }
    }
  }
  return lines;
}

/// The lines of `lines` that are not among `others`.
std::string Without(const std::vector<std::string>& lines, const std::vector<std::string>& others) {
  std::string rest;
  for (const std::string& line : lines) {
    if (std::find(others.begin(), others.end(), line) == others.end()) rest += line + "\n";
  }
  return rest;
}

TEST(FieldNumbersTest, EveryNumberOnRecordIsInUseAsItWasGiven) {
  ASSERT_FALSE(NumbersOnRecord().empty());
  EXPECT_EQ(Without(NumbersOnRecord(), NumbersInUse()), "")
      << "removed, renumbered or given another type: put it back, older records are read by it";
}

TEST(FieldNumbersTest, EveryNumberInUseIsOnRecord) {
  EXPECT_EQ(Without(NumbersInUse(), NumbersOnRecord()), "") << "new fields: add their lines to field_numbers.txt";
}

}  // namespace
}  // namespace zt::tests
