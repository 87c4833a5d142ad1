#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "full_profile.h"
#include "profile_error.h"

namespace zt::tests {
namespace {

using Json = nlohmann::ordered_json;

// The contents of each fenced block of JSON on the page about profiles.
std::vector<std::string> DocumentedProfiles() {
  std::ifstream page(ZT_MACHINE_PROFILE_PAGE);
  const std::string text{std::istreambuf_iterator<char>(page), {}};
  const std::string opening = "\n```json\n";
  std::vector<std::string> blocks;
  for (std::size_t at = text.find(opening); at != std::string::npos; at = text.find(opening, at)) {
    at += opening.size();
    const std::size_t end = text.find("\n```", at);
    blocks.push_back(text.substr(at, end - at));
  }
  return blocks;
}

// Each key with the key of the object that holds it, as "batteries/voltage_mv"; names that a profile chooses freely are
// left out.
void CollectKeys(const Json& value, const std::string& holder, std::set<std::string>& keys) {
  static const std::set<std::string> free = {"classes", "rows", "registry", "npu_report"};
  if (value.is_array()) {
    for (const Json& element : value) CollectKeys(element, holder, keys);
  } else if (value.is_object() && !free.contains(holder)) {
    for (const auto& [key, member] : value.items()) {
      keys.insert(holder + "/" + key);
      CollectKeys(member, key, keys);
    }
  }
}

TEST(DocumentedProfilesTest, EachExampleIsAProfile) {
  const std::vector<std::string> examples = DocumentedProfiles();
  EXPECT_GT(examples.size(), 10U);
  for (const std::string& example : examples) EXPECT_EQ(ErrorOf(example), "") << example;
}

TEST(DocumentedProfilesTest, TheExamplesShowEveryKey) {
  std::set<std::string> known;
  CollectKeys(Json::parse(kFullProfile), "", known);
  std::set<std::string> shown;
  for (const std::string& example : DocumentedProfiles()) CollectKeys(Json::parse(example), "", shown);
  for (const std::string& key : known) {
    EXPECT_TRUE(shown.contains(key) || key.ends_with("/fails")) << key;
  }
  EXPECT_TRUE(shown.contains("serial/fails"));
}

}  // namespace
}  // namespace zt::tests
