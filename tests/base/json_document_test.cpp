#include "base/json_document.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace zt::base {
namespace {

using Json = JsonDocument::Json;

// One of every kind of value, at every kind of place.
constexpr const char* kEveryKind =
    R"({"a": [1, -2, 2.5, "text", true, null, {}, [], [[], {"deep": [0]}]], "b": {"c": {"d": "e"}, "c2": []}, "b2": 7})";

bool Reads(std::string_view text) {
  JsonDocument document;
  return document.Read(text);
}

TEST(JsonDocumentTest, ReadsWhatTheLibraryReads) {
  for (const char* text : {kEveryKind, "[]", "{}", "17", "\"text\"", "null", R"([18446744073709551615, -1, 1e3])",
                           R"({"twice": 1, "twice": [2]})"}) {
    JsonDocument document;
    EXPECT_TRUE(document.Read(text)) << text;
    EXPECT_EQ(document.Root().dump(), Json::parse(text).dump());
  }
}

TEST(JsonDocumentTest, RefusesWhatIsNoJson) {
  for (const char* text : {"", "{", "[1,", "[1] 2", "{\"a\"}", "nul", "[1e999]", "\"\xFF\""}) EXPECT_FALSE(Reads(text));
}

TEST(JsonDocumentTest, ReadsTheFirstValueOfAStream) {
  std::istringstream stream(R"({"a": [1]} and more)");
  JsonDocument document;
  document.ReadFirst(stream);
  EXPECT_EQ(document.Root().dump(), R"({"a":[1]})");
}

TEST(JsonDocumentTest, ThrowsWhatTheLibraryThrowsAboutAStream) {
  JsonDocument document;
  std::istringstream no_json("{]");
  EXPECT_THROW(document.ReadFirst(no_json), Json::parse_error);
  std::istringstream too_large("[1e999]");
  EXPECT_THROW(document.ReadFirst(too_large), Json::out_of_range);
}

TEST(JsonDocumentTest, ADocumentThatIsNestedWithoutMeasureIsReadAndLetGoOf) {
  constexpr std::size_t kDepth = 100'000;
  EXPECT_TRUE(Reads(std::string(kDepth, '[') + std::string(kDepth, ']')));
  EXPECT_FALSE(Reads(std::string(kDepth, '[')));
  std::string objects;
  for (int i = 0; i < 20'000; ++i) objects += "{\"a\":[0,";
  EXPECT_FALSE(Reads(objects));
}

}  // namespace
}  // namespace zt::base
