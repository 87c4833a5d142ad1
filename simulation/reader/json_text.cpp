#include "simulation/reader/json_text.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include "simulation/profile.h"

namespace zt::simulation::reader {
namespace {

constexpr std::size_t kMostLevels = 64;

std::string LineAndColumn(std::string_view text, std::size_t position) {
  const std::string_view before = text.substr(0, std::min(position, text.size()));
  const auto line = 1 + std::count(before.begin(), before.end(), '\n');
  const std::size_t line_start = before.rfind('\n') + 1;  // 0 where there is no line before
  return "line " + std::to_string(line) + ", column " + std::to_string(before.size() - line_start + 1);
}

// The library's reason without the prefixes of its message: its own name, and the place that is told already.
std::string Reason(const Json::exception& error) {
  const std::string_view message = error.what();
  for (const std::string_view mark : {": ", "] "}) {
    const std::size_t found = message.find(mark);
    if (found != std::string_view::npos) return std::string(message.substr(found + mark.size()));
  }
  return std::string(message);
}

// Builds the value that a text spells, from the library's parsing events.
class Builder final : public nlohmann::json_sax<Json> {
 public:
  Builder(std::string_view text, const std::string& file) : text_(text), file_(file) {}

  Json Take() { return std::move(result_); }

  bool null() override { return Add(nullptr); }
  bool boolean(bool value) override { return Add(value); }
  bool number_integer(number_integer_t value) override { return Add(value); }
  bool number_unsigned(number_unsigned_t value) override { return Add(value); }
  bool number_float(number_float_t value, const string_t& literal) override {
    const bool is_integer = literal.find_first_of(".eE") == std::string::npos;
    if (is_integer) Fail("expected an integer of at most 64 bits, found " + literal);
    return Add(value);
  }
  bool string(string_t& value) override { return Add(std::move(value)); }
  bool binary(binary_t& /*value*/) override { return false; }  // JSON text has none

  bool start_object(std::size_t /*size*/) override { return Open(Json::object()); }
  bool key(string_t& key) override {
    Level& level = levels_.back();
    level.key = std::move(key);
    if (level.container.contains(level.key)) Fail("the key stands twice in its object");
    return true;
  }
  bool end_object() override { return Close(); }
  bool start_array(std::size_t /*size*/) override { return Open(Json::array()); }
  bool end_array() override { return Close(); }

  // `position`: how many bytes were read, the offending one included.
  bool parse_error(std::size_t position, const std::string& /*last_token*/, const Json::exception& error) override {
    throw ProfileError(file_ + ": " + LineAndColumn(text_, position > 0 ? position - 1 : 0) + ": " + Reason(error));
  }

 private:
  // A container that is not complete yet, and the key of its member that is being read.
  struct Level {
    Json container;
    std::string key;
  };

  bool Open(Json container) {
    if (levels_.size() == kMostLevels) Fail("nested deeper than " + std::to_string(kMostLevels) + " levels");
    levels_.push_back({std::move(container), {}});
    return true;
  }

  bool Close() {
    Json complete = std::move(levels_.back().container);
    levels_.pop_back();
    return Add(std::move(complete));
  }

  bool Add(Json value) {
    if (levels_.empty()) {
      result_ = std::move(value);
    } else if (Level& level = levels_.back(); level.container.is_array()) {
      level.container.push_back(std::move(value));
    } else {
      level.container[level.key] = std::move(value);
    }
    return true;
  }

  [[noreturn]] void Fail(const std::string& reason) const {
    std::string path;
    for (const Level& level : levels_) {
      path = Below(path, level.container.is_array() ? std::to_string(level.container.size()) : level.key);
    }
    throw ProfileError(file_ + ": " + path + ": " + reason);
  }

  std::string_view text_;
  const std::string& file_;
  std::vector<Level> levels_;
  Json result_;
};

}  // namespace

Json ParseJson(std::string_view text, const std::string& file) {
  Builder builder(text, file);
  Json::sax_parse(text.begin(), text.end(), &builder);
  return builder.Take();
}

std::string Below(const std::string& path, std::string_view step) {
  std::string result = path + "/";
  for (const char c : step) {
    if (c == '~') {
      result += "~0";
    } else if (c == '/') {
      result += "~1";
    } else {
      result += c;
    }
  }
  return result;
}

}  // namespace zt::simulation::reader
