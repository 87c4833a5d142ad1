#pragma once

#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

namespace zt::simulation::reader {

/// A JSON value whose objects keep the order of their keys.
using Json = nlohmann::ordered_json;

/// Parses strictly: malformed text, a key that stands twice in one object, an integer beyond 64 bits and more than 64
/// levels are errors. Throws `ProfileError` that begins with `file` and the place.
Json ParseJson(std::string_view text, const std::string& file);

/// `path` with `step` appended, as a JSON pointer.
std::string Below(const std::string& path, std::string_view step);

}  // namespace zt::simulation::reader
