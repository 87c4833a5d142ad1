#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace zt::telemetry::host {

/// What a hash is made with. Who does not know it cannot find a value by hashing guesses.
using HashKey = std::array<unsigned char, 32>;

/// In place of a value: the keyed BLAKE2b of it, 16 bytes, in base 32 (RFC 4648, small letters, not padded). Equal
/// values have equal hashes under one key, on every system.
std::string KeyedHash(const HashKey& key, std::string_view value);

/// Characters of a keyed hash.
inline constexpr std::size_t kHashLength = 26;

/// A key from the system's source of random numbers.
HashKey NewKey();

/// Characters of a key as text.
inline constexpr std::size_t kKeyDigits = 2 * sizeof(HashKey);

/// The key as `kKeyDigits` hexadecimal digits, and the other way round: nothing for any other text.
std::string KeyText(const HashKey& key);
std::optional<HashKey> KeyFromText(std::string_view text);

}  // namespace zt::telemetry::host
