#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "simulation/reader/json_text.h"

namespace zt::simulation::reader {

/// A JSON value and where it stands in which file, for errors. For as long as the file's name and whole value live.
class Value {
 public:
  Value(const Json& json, const std::string& file) : json_(&json), file_(&file) {}

  const Json& ToJson() const { return *json_; }
  bool IsObjectWith(const char* key) const { return json_->is_object() && json_->contains(key); }

  /// The members of an object and the elements of a list, in order; the value has to be one.
  std::vector<std::pair<std::string, Value>> Members() const;
  std::vector<Value> Elements() const;

  /// The same value, whose errors say that `alternative` is allowed too.
  Value Or(const std::string& alternative) const;

  /// Throws `ProfileError`: "file: path: expected …, found …".
  [[noreturn]] void FailExpecting(const std::string& expected) const;
  /// Throws `ProfileError`: "file: path: reason".
  [[noreturn]] void Fail(const std::string& reason) const;

 private:
  Value Child(const Json& json, std::string_view step) const;

  const Json* json_;
  const std::string* file_;
  std::string path_;
  std::string alternative_;
};

/// A key of an object and what reads its value.
struct Field {
  const char* key;
  std::function<void(const Value&)> read;
};

/// Hands each member of an object to the field of its key; any other key is an error.
void ReadObject(const Value& value, const std::vector<Field>& fields);

}  // namespace zt::simulation::reader
