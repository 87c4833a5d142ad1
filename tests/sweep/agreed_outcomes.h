#pragma once

#include <fstream>
#include <string>
#include <vector>

namespace zt::tests {

/// The lines of an agreed listing.
inline std::vector<std::string> AgreedLines(const std::string& name) {
  std::ifstream file(std::string(ZT_AGREED_OUTCOMES) + "/" + name + ".txt");
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) {
    if (!line.empty() && line.front() != '#') lines.push_back(line);
  }
  return lines;
}

}  // namespace zt::tests
