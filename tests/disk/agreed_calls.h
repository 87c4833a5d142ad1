#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <string>

namespace zt::tests {

/// How many calls of each kind.
using CountsByKind = std::map<std::string, int>;

/// That the agreed list (`agreed/file_calls.txt`) says the same of `subject`: what a test tries is not to become less
/// unseen. Another version of SQLite may ask otherwise; then what is found, and printed, is to be read and put in.
inline void ExpectAgreed(const std::string& subject, const CountsByKind& counts) {
  std::string found = subject + ":";
  for (const auto& [kind, count] : counts) {
    found += (found.ends_with(':') ? " " : ", ") + kind + " " + std::to_string(count);
  }
  std::ifstream lines(std::filesystem::path(ZT_AGREED_CALLS), std::ios::binary);
  std::string agreed = "nothing";
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with(subject + ":")) agreed = line;
  }
  EXPECT_EQ(found, agreed) << "in " << ZT_AGREED_CALLS;
}

}  // namespace zt::tests
