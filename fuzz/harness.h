#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

/// What every harness is: libFuzzer calls it with one input after the other, and takes the end of the process for a
/// finding.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace zt::fuzz {

/// Ends the process, with the promise that was broken as its last word.
inline void Require(bool kept, const char* promise) {
  if (kept) return;
  std::fprintf(stderr, "Broken promise: %s\n", promise);
  std::abort();
}

inline std::string_view TextOf(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

/// Takes the first line off `text`, without its end.
inline std::string_view TakeLine(std::string_view& text) {
  const std::size_t end = text.find('\n');
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  return line;
}

}  // namespace zt::fuzz
