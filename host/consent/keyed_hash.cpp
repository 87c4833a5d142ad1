#include "host/consent/keyed_hash.h"

#include <sodium.h>

#include <cstdint>
#include <stdexcept>

namespace zt::telemetry::host {
namespace {

constexpr std::size_t kHashBytes = 16;
using HashBytes = std::array<unsigned char, kHashBytes>;

void RequireLibrary() {
  static const bool usable = sodium_init() >= 0;
  if (!usable) throw std::runtime_error("the library for hashes cannot be used: the system has no random numbers");
}

std::string Base32(const HashBytes& bytes) {
  constexpr std::string_view kDigits = "abcdefghijklmnopqrstuvwxyz234567";
  constexpr unsigned kBitsOfDigit = 5;
  constexpr unsigned kBitsOfByte = 8;
  constexpr unsigned kDigitMask = 31;
  std::string text;
  std::uint32_t held = 0;
  unsigned bits = 0;
  const auto take = [&] {
    bits -= kBitsOfDigit;
    text += kDigits[(held >> bits) & kDigitMask];
  };
  for (const unsigned char byte : bytes) {
    held = (held << kBitsOfByte) | byte;
    bits += kBitsOfByte;
    while (bits >= kBitsOfDigit) take();
  }
  held <<= kBitsOfDigit - bits;
  bits = kBitsOfDigit;
  take();
  return text;
}

}  // namespace

std::string KeyedHash(const HashKey& key, std::string_view value) {
  RequireLibrary();
  HashBytes hash{};
  const auto* const bytes = reinterpret_cast<const unsigned char*>(value.data());
  if (crypto_generichash(hash.data(), hash.size(), bytes, value.size(), key.data(), key.size()) != 0) {
    throw std::runtime_error("a hash could not be made");
  }
  return Base32(hash);
}

HashKey NewKey() {
  RequireLibrary();
  HashKey key{};
  randombytes_buf(key.data(), key.size());
  return key;
}

std::string KeyText(const HashKey& key) {
  std::array<char, kKeyDigits + 1> text{};
  return sodium_bin2hex(text.data(), text.size(), key.data(), key.size());
}

std::optional<HashKey> KeyFromText(std::string_view text) {
  HashKey key{};
  std::size_t length = 0;
  const char* end = nullptr;
  const int outcome = sodium_hex2bin(key.data(), key.size(), text.data(), text.size(), nullptr, &length, &end);
  if (outcome != 0 || length != key.size() || text.size() != kKeyDigits) return std::nullopt;
  return key;
}

}  // namespace zt::telemetry::host
