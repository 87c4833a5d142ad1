#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>

namespace zt::fuzz {

/// The bytes of an input, taken from its front; zeros behind its end.
class InputBytes {
 public:
  explicit InputBytes(std::span<const std::uint8_t> rest) : rest_(rest) {}

  bool AtEnd() const { return rest_.empty(); }

  std::uint8_t Byte() {
    if (rest_.empty()) return 0;
    const std::uint8_t byte = rest_.front();
    rest_ = rest_.subspan(1);
    return byte;
  }

  /// A number as the processor keeps it.
  template <typename Number>
  Number As() {
    Number number{};
    const std::span<const std::uint8_t> bytes = Take(sizeof number);
    if (!bytes.empty()) std::memcpy(&number, bytes.data(), bytes.size());
    return number;
  }

  /// At most so many bytes.
  std::span<const std::uint8_t> Take(std::size_t size) {
    const std::span<const std::uint8_t> taken = rest_.first(std::min(size, rest_.size()));
    rest_ = rest_.subspan(taken.size());
    return taken;
  }

  std::string Text(std::size_t size) {
    const std::span<const std::uint8_t> taken = Take(size);
    return {taken.begin(), taken.end()};
  }

 private:
  std::span<const std::uint8_t> rest_;
};

}  // namespace zt::fuzz
