#include <gtest/gtest.h>

#include "fake_dxcore.h"
#include "windows/dxcore_npus.h"

// Which of DXCore's adapters are NPUs.
namespace zt::tests {
namespace {

using com::ComPtr;
using shared::npu::DxcoreNpu;
using shared::npu::HardwareParts;
using shared::npu::ReadDxcoreNpus;
using shared::npu::dxcore::kComputeAccelerator;
using shared::npu::dxcore::kCoreCompute;
using shared::npu::dxcore::kGenericMl;
using shared::npu::dxcore::kGpu;
using shared::npu::dxcore::kGraphics;
using shared::npu::dxcore::kNpu;
using Property = FakeAdapter::Property;

constexpr std::uint64_t kMebibyte = 1024 * 1024;

class NpuAdaptersTest : public ::testing::Test {
 protected:
  NpuAdaptersTest() { com::TakeOver(factory_, new FakeAdapterFactory()); }

  /// A piece of hardware of no kind yet, with a number of its own.
  FakeAdapter& AddAdapter() {
    ComPtr<FakeAdapter>& adapter = factory_->adapters.emplace_back();
    com::TakeOver(adapter, new FakeAdapter());
    const auto number = static_cast<DWORD>(factory_->adapters.size());
    return adapter->Set(Property::kLuid, LUID{number, 7})
        .Set(Property::kIsHardware, true)
        .Set(Property::kDedicatedAdapterMemory, 1 * kMebibyte)
        .Set(Property::kDedicatedSystemMemory, 2 * kMebibyte)
        .Set(Property::kSharedSystemMemory, 8 * kMebibyte)
        .Set(Property::kHardwareParts, HardwareParts{0x8086, 0x7D1D, 0x2222, 0x103C, 4});
  }

  std::vector<DxcoreNpu> Read() { return ReadDxcoreNpus(*factory_.Get()).npus; }

  /// The numbers of the adapters that are NPUs.
  std::vector<DWORD> Numbers() {
    std::vector<DWORD> numbers;
    for (const DxcoreNpu& npu : Read()) numbers.push_back(npu.luid.LowPart);
    return numbers;
  }

  ComPtr<FakeAdapterFactory> factory_;
};

using Found = std::vector<DWORD>;

TEST_F(NpuAdaptersTest, TellsNumberPartsAndMemoryOfAnNpu) {
  AddAdapter().Has(kNpu);
  const auto npus = Read();
  ASSERT_EQ(npus.size(), 1U);
  EXPECT_EQ(npus[0].luid.LowPart, 1U);
  EXPECT_EQ(npus[0].luid.HighPart, 7);
  EXPECT_EQ(HardwareId(npus[0].parts), R"(PCI\VEN_8086&DEV_7D1D&SUBSYS_2222103C&REV_04)");
  ASSERT_TRUE(npus[0].memory_size);
  EXPECT_EQ(npus[0].memory_size->dedicated, 3 * kMebibyte);
  EXPECT_EQ(npus[0].memory_size->shared, 8 * kMebibyte);
}

TEST_F(NpuAdaptersTest, AnNpuThatComputesIsFoundOnce) {
  AddAdapter().Has(kNpu).Has(kGenericMl).Has(kCoreCompute);
  EXPECT_EQ(Numbers(), Found{1});
}

TEST_F(NpuAdaptersTest, FindsAllNpusAndNothingElse) {
  AddAdapter().Has(kGpu).Has(kCoreCompute).Has(kGraphics);
  AddAdapter().Has(kNpu);
  AddAdapter().Has(kComputeAccelerator).Has(kGenericMl);
  AddAdapter().Has(kNpu).Has(kGenericMl);
  EXPECT_EQ(Numbers(), (Found{2, 4}));
}

TEST_F(NpuAdaptersTest, WhereTheKindIsUnknownWhatComputesAndCannotDrawIsAnNpu) {
  factory_->unknown_attributes = {kNpu, kGenericMl};
  AddAdapter().Has(kCoreCompute).Has(kGraphics);
  AddAdapter().Has(kCoreCompute);
  EXPECT_EQ(Numbers(), Found{2});
}

TEST_F(NpuAdaptersTest, AWindowsThatKnowsNoAttributeHasNoNpus) {
  factory_->unknown_attributes = {kNpu, kGenericMl, kCoreCompute};
  AddAdapter().Has(kNpu);
  EXPECT_EQ(Numbers(), Found{});
  EXPECT_EQ(ReadDxcoreNpus(*factory_.Get()).status, S_OK) << "that it knows none is no failure";
}

TEST_F(NpuAdaptersTest, AListThatCannotBeHadIsAFailureBesideTheOthersNpus) {
  factory_->failing_attribute = kGenericMl;
  AddAdapter().Has(kNpu);
  EXPECT_EQ(Numbers(), Found{1});
  EXPECT_EQ(ReadDxcoreNpus(*factory_.Get()).status, E_OUTOFMEMORY);
}

TEST_F(NpuAdaptersTest, AnAdapterOfSoftwareIsNoNpu) {
  AddAdapter().Has(kCoreCompute).Set(Property::kIsHardware, false);
  AddAdapter().Has(kCoreCompute).Lacks(Property::kIsHardware);
  EXPECT_EQ(Numbers(), Found{});
}

TEST_F(NpuAdaptersTest, AnAdapterThatWentAwayIsPassedOver) {
  factory_->adapters.emplace_back();
  AddAdapter().Has(kNpu).Fails(Property::kLuid);
  AddAdapter().Has(kNpu).Lacks(Property::kLuid);
  AddAdapter().Has(kNpu);
  EXPECT_EQ(Numbers(), Found{4});
}

TEST_F(NpuAdaptersTest, PartOfTheMemoryIsNone) {
  AddAdapter().Has(kNpu).Lacks(Property::kSharedSystemMemory);
  AddAdapter().Has(kNpu).Fails(Property::kDedicatedSystemMemory);
  AddAdapter().Has(kNpu).Lacks(Property::kDedicatedAdapterMemory);
  for (const DxcoreNpu& npu : Read()) EXPECT_FALSE(npu.memory_size) << npu.luid.LowPart;
  EXPECT_EQ(Numbers().size(), 3U);
}

TEST_F(NpuAdaptersTest, AnNpuWithoutPartsHasNoHardwareId) {
  AddAdapter().Has(kNpu).Lacks(Property::kHardwareParts);
  EXPECT_EQ(HardwareId(Read().at(0).parts), "");
}

TEST_F(NpuAdaptersTest, ReleasesAllThatItWasHanded) {
  AddAdapter().Has(kNpu).Has(kCoreCompute);
  AddAdapter().Has(kCoreCompute).Has(kGraphics);
  EXPECT_EQ(Numbers(), Found{1});
  factory_.Reset();
  EXPECT_EQ(LiveDxcoreObjects(), 0);
}

}  // namespace
}  // namespace zt::tests
