#include "disk_descriptor.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace zt::tests {
namespace {

using namespace std::string_literals;
using shared::storage::BusType;
using shared::storage::DiskDescriptor;
using shared::storage::ParseAdapterSerial;
using shared::storage::ParseDiskDescriptor;

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint32_t kTextsAt = 40;

void Put(Bytes& bytes, std::size_t offset, std::uint32_t number) {
  for (std::size_t i = 0; i < 4; ++i) bytes[offset + i] = static_cast<std::uint8_t>(number >> (8 * i));
}

/// A descriptor as a driver gives it: the serial number behind the fixed part.
Bytes Descriptor(const std::string& serial, std::uint32_t serial_offset = kTextsAt) {
  Bytes bytes(kTextsAt + serial.size() + 1);
  std::copy(serial.begin(), serial.end(), bytes.begin() + kTextsAt);
  Put(bytes, 4, static_cast<std::uint32_t>(bytes.size()));
  Put(bytes, 24, serial_offset);
  Put(bytes, 28, 0x11);
  return bytes;
}

Bytes AdapterSerial(const std::u16string& text) {
  Bytes bytes(8);
  for (const char16_t unit : text) {
    bytes.push_back(static_cast<std::uint8_t>(unit));
    bytes.push_back(static_cast<std::uint8_t>(unit >> 8U));
  }
  return bytes;
}

TEST(DiskDescriptorTest, TellsBusMediumAndSerialNumber) {
  const auto descriptor = ParseDiskDescriptor(Descriptor("  S4EV NX0 "));
  ASSERT_TRUE(descriptor);
  EXPECT_EQ(descriptor->bus, BusType::kNvme);
  EXPECT_FALSE(descriptor->removable_media);
  EXPECT_EQ(descriptor->serial, "  S4EV NX0 ");
}

TEST(DiskDescriptorTest, TellsARemovableMedium) {
  Bytes bytes = Descriptor("stick");
  bytes[10] = 1;
  Put(bytes, 28, 0x07);
  const auto descriptor = ParseDiskDescriptor(bytes);
  ASSERT_TRUE(descriptor);
  EXPECT_TRUE(descriptor->removable_media);
  EXPECT_EQ(descriptor->bus, BusType::kUsb);
}

TEST(DiskDescriptorTest, AnOffsetThatPointsNowhereIsNoSerialNumber) {
  const Bytes whole = Descriptor("S4EV");
  for (const std::uint32_t offset : {0U, 1U, 35U, static_cast<std::uint32_t>(whole.size()), 4096U, 0xFFFFFFFFU}) {
    const auto descriptor = ParseDiskDescriptor(Descriptor("S4EV", offset));
    ASSERT_TRUE(descriptor) << offset;
    EXPECT_EQ(descriptor->serial, "") << offset;
  }
}

TEST(DiskDescriptorTest, ASerialNumberWithoutItsEndStopsWithTheBytes) {
  Bytes bytes = Descriptor("S4EV");
  bytes.pop_back();
  EXPECT_EQ(ParseDiskDescriptor(bytes).value_or(DiskDescriptor()).serial, "S4EV");
}

TEST(DiskDescriptorTest, ADescriptorCutAnywhereIsReadWithinItsBytes) {
  const Bytes whole = Descriptor("S4EV");
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    const auto descriptor = ParseDiskDescriptor(cut);
    EXPECT_EQ(descriptor.has_value(), size >= 36) << size;
    const std::string expected = std::string("S4EV").substr(0, size > kTextsAt ? size - kTextsAt : 0);
    EXPECT_EQ(descriptor.value_or(DiskDescriptor()).serial, expected) << size;
  }
}

TEST(DiskDescriptorTest, ReadsTheAdaptersSerialNumber) {
  EXPECT_EQ(ParseAdapterSerial(AdapterSerial(u"S4EVNX0\0rubbish"s)), "S4EVNX0");
  EXPECT_EQ(ParseAdapterSerial(AdapterSerial(u"S4EVNX0")), "S4EVNX0");
  EXPECT_EQ(ParseAdapterSerial(AdapterSerial(u"ü\U0001F600")), "ü\U0001F600");
}

TEST(DiskDescriptorTest, AnAdapterThatTellsNothingHasNoSerialNumber) {
  EXPECT_EQ(ParseAdapterSerial({}), "");
  EXPECT_EQ(ParseAdapterSerial(Bytes(8)), "");
  EXPECT_EQ(ParseAdapterSerial(Bytes(9, 0x41)), "");
  EXPECT_EQ(ParseAdapterSerial(AdapterSerial(u"")), "");
}

}  // namespace
}  // namespace zt::tests
