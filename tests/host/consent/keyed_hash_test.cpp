#include "host/consent/keyed_hash.h"

#include <gmock/gmock.h>

#include <numeric>

namespace zt::telemetry::host {
namespace {

HashKey CountingKey() {
  HashKey key{};
  std::iota(key.begin(), key.end(), static_cast<unsigned char>(0));
  return key;
}

// The figures are another library's: keyed BLAKE2b of 16 bytes in base 32, with the key 00 01 02 … 1f.
TEST(KeyedHashTest, IsTheSameOnEverySystem) {
  EXPECT_EQ(KeyedHash(CountingKey(), "abc"), "djsl4r7eokozkhbqf3suh6l46m");
  EXPECT_EQ(KeyedHash(CountingKey(), ""), "hwxzpphhrch5lf3tyzv7mr2ftq");
  EXPECT_EQ(KeyedHash(CountingKey(), "5CG0000001 für 日本"), "lsxj7uaxppeekc2jukehtxomsy");
}

TEST(KeyedHashTest, EqualValuesHaveEqualHashesUnderOneKeyAlone) {
  const HashKey key = NewKey();
  EXPECT_EQ(KeyedHash(key, "SN42"), KeyedHash(key, "SN42"));
  EXPECT_NE(KeyedHash(key, "SN42"), KeyedHash(key, "SN43"));
  EXPECT_NE(KeyedHash(key, "SN42"), KeyedHash(NewKey(), "SN42"));
  EXPECT_EQ(KeyedHash(key, "SN42").size(), kHashLength);
}

TEST(KeyedHashTest, AKeyIsReadAsItIsWritten) {
  EXPECT_EQ(KeyText(CountingKey()), "000102030405060708090a0b0c0d0e0f101112131415161718191a1b1c1d1e1f");
  EXPECT_EQ(KeyFromText(KeyText(CountingKey())), CountingKey());
  EXPECT_EQ(KeyFromText("000102030405060708090A0B0C0D0E0F101112131415161718191A1B1C1D1E1F"), CountingKey());
}

TEST(KeyedHashTest, ATextOfAnotherLengthOrWithOtherCharactersIsNoKey) {
  const std::string key = KeyText(CountingKey());
  for (const std::string& text : {std::string(), key.substr(1), key + "0", key + "00", "g" + key.substr(1),
                                  " " + key.substr(1), key.substr(1) + '\0'}) {
    EXPECT_EQ(KeyFromText(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace zt::telemetry::host
