#include "zt/shared/ztbios/private_bios_wmi.h"

#include <windows.h>
#include <gtest/gtest.h>

#include <array>

// This system's firmware, which has no interface of the maker.
namespace zt::tests {
namespace {

using shared::ztbios::PrivateBiosWmi;

constexpr std::uint32_t kUntouched = 0xCDCDCDCD;

class PrivateBiosWmiTest : public ::testing::Test {
 protected:
  PrivateBiosWmiTest() { output_.fill(0xCD); }

  void ExpectNothingWritten() {
    std::array<std::uint8_t, 128> expected{};
    expected.fill(0xCD);
    EXPECT_EQ(output_, expected);
    EXPECT_EQ(return_code_, kUntouched);
    EXPECT_EQ(input_, (std::array<std::uint8_t, 4>{1, 0, 0, 0}));
  }

  std::array<std::uint8_t, 4> input_{1, 0, 0, 0};
  std::array<std::uint8_t, 128> output_{};
  std::uint32_t return_code_ = kUntouched;
  PrivateBiosWmi bios_;
};

TEST_F(PrivateBiosWmiTest, WithoutTheInterfaceACommandFailsAndWritesNothing) {
  EXPECT_LT(bios_.ExecuteCommand(1, 40, 4, input_.data(), 128, output_.data(), &return_code_), 0);
  ExpectNothingWritten();
}

TEST_F(PrivateBiosWmiTest, EveryCommandFailsAlike) {
  const std::int32_t first = bios_.ExecuteCommand(1, 40, 4, input_.data(), 128, output_.data(), &return_code_);
  EXPECT_EQ(bios_.ExecuteCommand(2, 7, 0, nullptr, 0, nullptr, &return_code_), first);
  ExpectNothingWritten();
}

TEST_F(PrivateBiosWmiTest, AMissingBufferIsRefused) {
  EXPECT_EQ(bios_.ExecuteCommand(1, 40, 4, nullptr, 128, output_.data(), &return_code_), E_POINTER);
  EXPECT_EQ(bios_.ExecuteCommand(1, 40, 4, input_.data(), 128, nullptr, &return_code_), E_POINTER);
  EXPECT_EQ(bios_.ExecuteCommand(1, 40, 4, input_.data(), 128, output_.data(), nullptr), E_POINTER);
  ExpectNothingWritten();
}

}  // namespace
}  // namespace zt::tests
