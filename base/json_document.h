#pragma once

#include <cstddef>
#include <istream>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

namespace zt::base {

/// A document of the JSON library that can be let go of, and read, where there is no memory left. The library's own
/// destructor of an array or an object asks for some, and ends the process when there is none.
///
/// What is written into it is made an array or object outright (`Json::value_t::object`): where the library makes one
/// of a null, because it is written into, half of one is left when there is no memory.
class JsonDocument {
 public:
  using Json = nlohmann::json;

  JsonDocument() = default;
  ~JsonDocument() { TakeApart(); }
  JsonDocument(const JsonDocument&) = delete;
  JsonDocument& operator=(const JsonDocument&) = delete;

  /// Reads a text that is one JSON value and nothing else; false when it is not.
  bool Read(std::string_view text) {
    try {
      Reader reader(root_);
      return Json::sax_parse(text, &reader);
    } catch (const Json::exception&) {
      return false;
    }
  }

  /// Reads the first JSON value of a stream; what follows is ignored. Throws the library's exceptions when there is
  /// none.
  void ReadFirst(std::istream& stream) {
    Reader reader(root_);
    Json::sax_parse(stream, &reader, nlohmann::detail::input_format_t::json, /*strict=*/false);
  }

  Json& Root() { return root_; }

 private:
  // Puts what is read into its place at once, so that what is there when memory runs out is taken apart as a whole
  // document is.
  class Reader : public nlohmann::json_sax<Json> {
   public:
    explicit Reader(Json& root) : place_(&root) {}

    bool null() override { return Put(nullptr); }
    bool boolean(bool value) override { return Put(value); }
    bool number_integer(number_integer_t value) override { return Put(value); }
    bool number_unsigned(number_unsigned_t value) override { return Put(value); }
    bool number_float(number_float_t value, const string_t& /*text*/) override { return Put(value); }
    bool string(string_t& value) override { return Put(std::move(value)); }
    bool binary(binary_t& /*value*/) override { return false; }  // coverage: JSON has no such values
    bool start_object(std::size_t /*size*/) override { return Open(Json::value_t::object); }
    bool start_array(std::size_t /*size*/) override { return Open(Json::value_t::array); }
    bool end_object() override { return Close(); }
    bool end_array() override { return Close(); }
    bool key(string_t& value) override {
      place_ = &open_.back()->get_ref<Json::object_t&>()[value];
      return true;
    }
    bool parse_error(std::size_t /*position*/, const std::string& /*token*/, const Json::exception& error) override {
      if (const auto* syntax = dynamic_cast<const Json::parse_error*>(&error)) throw *syntax;
      throw dynamic_cast<const Json::out_of_range&>(error);
    }

   private:
    template <typename Value>
    Json& Add(Value&& value) {
      if (open_.empty() || open_.back()->is_object()) return *place_ = Json(std::forward<Value>(value));
      return open_.back()->get_ref<Json::array_t&>().emplace_back(std::forward<Value>(value));
    }
    template <typename Value>
    bool Put(Value&& value) {
      Add(std::forward<Value>(value));
      return true;
    }
    bool Open(Json::value_t kind) {
      open_.push_back(&Add(kind));
      return true;
    }
    bool Close() {
      open_.pop_back();
      return true;
    }

    std::vector<Json*> open_;
    Json* place_;  // of the next value that is no array's
  };

  // The last value of an array or object that has one; null for everything else.
  static Json* LastIn(Json& value) {
    if (auto* array = value.get_ptr<Json::array_t*>()) return array->empty() ? nullptr : &array->back();
    if (auto* object = value.get_ptr<Json::object_t*>())
      return object->empty() ? nullptr : &std::prev(object->end())->second;
    return nullptr;
  }
  static void RemoveLastOf(Json& value) {
    if (auto* array = value.get_ptr<Json::array_t*>()) return array->pop_back();
    auto& object = value.get_ref<Json::object_t&>();
    object.erase(std::prev(object.end()));
  }

  // Values go from the last to the first, each after all in it, so that the library's destructor meets empty ones
  // alone. The way back up is kept in the places of the values that were taken out: a document may be nested without
  // limit.
  void TakeApart() {
    Json current = std::move(root_);
    Json above;
    while (true) {
      if (Json* const last = LastIn(current)) {
        Json value = std::move(*last);
        if (LastIn(value) == nullptr) {
          RemoveLastOf(current);
          continue;
        }
        *last = std::move(above);
        above = std::move(current);
        current = std::move(value);
      } else if (Json* const place = LastIn(above)) {
        current = std::move(above);
        above = std::move(*place);
        RemoveLastOf(current);
      } else {
        return;
      }
    }
  }

  Json root_;
};

}  // namespace zt::base
