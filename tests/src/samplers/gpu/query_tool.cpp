#include "query_tool.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "base/trimmed.h"
#include "support/temporary_folder.h"

namespace zt::tests {
namespace {

std::string Trim(std::string_view text) {
  return std::string(base::Trimmed(text, " \t\r"));
}

std::vector<std::string> Split(const std::string& line) {
  std::vector<std::string> texts;
  std::istringstream stream(line);
  for (std::string text; std::getline(stream, text, ',');) texts.push_back(Trim(text));
  return texts;
}

}  // namespace

std::optional<std::vector<std::vector<std::string>>> QueryCards(const std::string& fields) {
  const TemporaryFolder folder;
  const std::string output = (folder.Path() / "cards.csv").string();
  const std::string command =
      "nvidia-smi --query-gpu=" + fields + " --format=csv,noheader,nounits >\"" + output + "\" 2>&1";
  if (std::system(command.c_str()) != 0) return std::nullopt;  // NOLINT(cert-env33-c): the tool is found by its name
  std::vector<std::vector<std::string>> rows;
  std::ifstream stream(output);
  for (std::string line; std::getline(stream, line);) {
    if (!Trim(line).empty()) rows.push_back(Split(line));
  }
  return rows;
}

}  // namespace zt::tests
