#include "json_mutation.h"

#include <cstring>
#include <iterator>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t most);

namespace {

using Json = nlohmann::ordered_json;
using Random = std::minstd_rand;

std::size_t Below(Random& random, std::size_t bound) {
  return random() % bound;
}

void Gather(Json& value, std::vector<Json*>& values) {
  values.push_back(&value);
  if (!value.is_structured()) return;
  for (Json& member : value) Gather(member, values);
}

// What is below is recursive: texts of many levels are left to libFuzzer's own changes.
bool IsFlat(const std::uint8_t* data, std::size_t size) {
  constexpr int kMostLevels = 50;
  int levels = 0;
  for (std::size_t i = 0; i < size && levels <= kMostLevels; ++i) {
    if (data[i] == '[' || data[i] == '{') ++levels;
    if (data[i] == ']' || data[i] == '}') --levels;
  }
  return levels <= kMostLevels;
}

// What readers of JSON stumble over.
Json Trap(Random& random) {
  using Limits = std::numeric_limits<std::int64_t>;
  static const std::vector<Json> traps = {nullptr,
                                          true,
                                          false,
                                          0,
                                          1,
                                          -1,
                                          0.5,
                                          -0.5,
                                          -0.0,
                                          1e300,
                                          -1e300,
                                          5e-324,
                                          1.8446744073709552e19,
                                          9.3e18,
                                          4294967296.0,
                                          2147483647,
                                          -2147483648LL,
                                          4294967295U,
                                          4294967296LL,
                                          Limits::max(),
                                          Limits::min(),
                                          std::numeric_limits<std::uint64_t>::max(),
                                          "",
                                          " ",
                                          "0",
                                          "-1",
                                          "1.5",
                                          "4294967295",
                                          "18446744073709551615",
                                          "&HFF",
                                          "(5)",
                                          "1e400",
                                          "TRUE",
                                          "\xC3\xBC\xF0\x9F\x98\x80",
                                          std::string("a\0b", 3),
                                          std::string(300, 'x'),
                                          "'",
                                          "\\",
                                          "%n%s",
                                          "{00000000-0000-0000-0000-000000000000}",
                                          "2026-03-07T12:20:42Z",
                                          Json::array(),
                                          Json::object(),
                                          Json::array({1, "a"}),
                                          Json::object({{"fails", -2147024891}})};
  return traps[Below(random, traps.size())];
}

void ChangeText(std::string& text, Random& random) {
  std::vector<std::uint8_t> bytes(text.begin(), text.end());
  const std::size_t size = bytes.size();
  bytes.resize(size + 16);
  bytes.resize(LLVMFuzzerMutate(bytes.data(), size, bytes.size()));
  text.assign(bytes.begin(), bytes.end());
  if (Below(random, 4) == 0) text += text;
}

// A member of `container` goes, comes twice or gets another's place.
void ChangeMembers(Json& container, const Json& other, Random& random) {
  if (container.empty()) return;
  const std::size_t index = Below(random, container.size());
  const auto member = std::next(container.begin(), static_cast<std::ptrdiff_t>(index));
  const std::size_t way = Below(random, 3);
  if (way == 0) {
    container.erase(member);
  } else if (container.is_array()) {
    container.push_back(way == 1 ? Json(*member) : other);
  } else {
    *member = other;
  }
}

void Change(Json& document, Random& random) {
  std::vector<Json*> values;
  Gather(document, values);
  Json& value = *values[Below(random, values.size())];
  const Json other = *values[Below(random, values.size())];
  switch (Below(random, 4)) {
    case 0:
      value = Trap(random);
      break;
    case 1:
      if (value.is_string()) {
        ChangeText(value.get_ref<std::string&>(), random);
      } else if (value.is_number()) {
        value = static_cast<std::int64_t>(random()) - static_cast<std::int64_t>(random());
      } else {
        ChangeMembers(value, other, random);
      }
      break;
    case 2:
      ChangeMembers(value, other, random);
      break;
    default:
      value = other;
      break;
  }
}

}  // namespace

std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t most, unsigned int seed) {
  Random random(seed);
  if (Below(random, 2) == 0 || !IsFlat(data, size)) return LLVMFuzzerMutate(data, size, most);
  Json document = Json::parse(data, data + size, nullptr, /*allow_exceptions=*/false);
  if (document.is_discarded()) return LLVMFuzzerMutate(data, size, most);
  for (std::size_t changes = 1 + Below(random, 3); changes > 0; --changes) Change(document, random);
  const std::string text = document.dump(-1, ' ', false, Json::error_handler_t::ignore);
  if (text.size() > most) return LLVMFuzzerMutate(data, size, most);
  std::memcpy(data, text.data(), text.size());
  return text.size();
}
