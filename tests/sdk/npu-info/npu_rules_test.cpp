#include "npu_rules.h"

#include <gtest/gtest.h>

namespace zt::tests {
namespace {

using shared::npu::AdapterTraits;
using shared::npu::CelsiusFromTenths;
using shared::npu::HardwareId;
using shared::npu::IsNpu;
using shared::npu::Reported;

TEST(NpuRulesTest, WhatWindowsCallsAnNpuIsOne) {
  EXPECT_TRUE(IsNpu({.hardware = true, .npu = true}));
  EXPECT_TRUE(IsNpu({.hardware = true, .npu = true, .compute_accelerator = true, .graphics = true}));
}

TEST(NpuRulesTest, WhereWindowsTellsNoKindAnNpuComputesAndCannotDraw) {
  EXPECT_TRUE(IsNpu({.hardware = true, .generic_ml = true}));
  EXPECT_TRUE(IsNpu({.hardware = true, .core_compute = true}));
  EXPECT_FALSE(IsNpu({.hardware = true, .generic_ml = true, .core_compute = true, .graphics = true}));
  EXPECT_FALSE(IsNpu({.hardware = true}));
}

TEST(NpuRulesTest, WhatWindowsCallsSomethingElseIsNone) {
  EXPECT_FALSE(IsNpu({.hardware = true, .gpu = true, .core_compute = true}));
  EXPECT_FALSE(IsNpu({.hardware = true, .compute_accelerator = true, .generic_ml = true}));
}

TEST(NpuRulesTest, AnAdapterOfSoftwareIsNone) {
  EXPECT_FALSE(IsNpu({.npu = true}));
  EXPECT_FALSE(IsNpu({.core_compute = true}));
}

TEST(NpuRulesTest, TheHardwareIdIsThatOfPci) {
  EXPECT_EQ(HardwareId({.vendor = 0x8086, .device = 0x7D1D, .subsystem = 0x2222, .subvendor = 0x103C, .revision = 4}),
            R"(PCI\VEN_8086&DEV_7D1D&SUBSYS_2222103C&REV_04)");
}

TEST(NpuRulesTest, WithoutPartsThereIsNoHardwareId) {
  EXPECT_EQ(HardwareId({}), "");
}

TEST(NpuRulesTest, OnePartIsEnoughForAHardwareId) {
  EXPECT_EQ(HardwareId({.vendor = 0x8086}), R"(PCI\VEN_8086&DEV_0000&SUBSYS_00000000&REV_00)");
  EXPECT_EQ(HardwareId({.device = 0x7D1D}), R"(PCI\VEN_0000&DEV_7D1D&SUBSYS_00000000&REV_00)");
}

TEST(NpuRulesTest, TheWidestPartsFitTheHardwareId) {
  constexpr std::uint32_t kWidest = 0xFFFFFFFF;
  EXPECT_EQ(HardwareId({kWidest, kWidest, kWidest, kWidest, kWidest}),
            R"(PCI\VEN_FFFFFFFF&DEV_FFFFFFFF&SUBSYS_FFFFFFFFFFFFFFFF&REV_FFFFFFFF)");
}

TEST(NpuRulesTest, ZeroIsNotReported) {
  EXPECT_EQ(Reported(0), std::nullopt);
  EXPECT_EQ(Reported(1), 1U);
  EXPECT_EQ(CelsiusFromTenths(0), std::nullopt);
  EXPECT_EQ(CelsiusFromTenths(475), 47.5);
}

}  // namespace
}  // namespace zt::tests
