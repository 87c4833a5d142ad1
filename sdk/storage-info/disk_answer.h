#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace zt::shared::storage {

/// Asks a driver once: fills the buffer from its start and returns how many bytes came, 0 on failure.
using AskDriver = std::function<std::size_t(std::span<std::uint8_t> buffer)>;

/// The whole answer of a driver to one question, however long it says that it is; empty when it has none. Every answer
/// begins with a version and its size, 4 bytes each.
std::vector<std::uint8_t> ReadWholeAnswer(const AskDriver& ask);

}  // namespace zt::shared::storage
