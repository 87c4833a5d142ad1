#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "host/files.h"
#include "host/program.h"

namespace zt::telemetry::host {

/// What a run of the program left behind.
struct ProgramRun {
  int exit_code = 0;
  std::string out;
  std::string err;
};

/// Runs the program in this process.
inline ProgramRun RunProgram(const std::vector<std::string>& arguments) {
  std::ostringstream out;
  std::ostringstream err;
  const int exit_code = Run(arguments, out, err);
  return {exit_code, out.str(), err.str()};
}

inline std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

/// Each line parsed as JSON; fails the test by an exception when one is not.
inline std::vector<nlohmann::json> JsonLinesOf(const std::string& text) {
  std::vector<nlohmann::json> values;
  for (const std::string& line : Lines(text)) values.push_back(nlohmann::json::parse(line));
  return values;
}

inline std::string ReadFile(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

inline void WriteFile(const std::filesystem::path& file, const std::string& text) {
  std::ofstream(file, std::ios::binary) << text;
}

}  // namespace zt::telemetry::host
