#include <gtest/gtest.h>

#include <map>
#include <vector>

#include "base/loaded_library.h"
#include "support/fake_library.h"
#include "windows/kernel_figures.h"

// What is made of the graphics kernel's answers about an NPU.
namespace zt::tests {
namespace {

using namespace shared::npu::kernel;
using shared::npu::Npu;
using shared::npu::ReadKernelFigures;

constexpr Status kKernelSuccess = 0;
constexpr Status kInvalidParameter = static_cast<Status>(0xC000000D);

constexpr LUID kNpuLuid = {0x1234, 7};
constexpr AdapterHandle kHandle = 0x40000080;

/// A graphics kernel with one adapter.
struct FakeKernel {
  bool opens = true;
  int open_adapters = 0;
  int node_questions = 0;
  AdapterPerformance performance{};
  bool has_performance = true;
  std::vector<std::uint64_t> node_frequencies;
  std::vector<SegmentStatistics> segments;
  bool has_statistics = true;
  ULONG claimed_nodes = 0;
  ULONG failing_segment = ~0U;
};

// The entry points are plain functions.
FakeKernel* current = nullptr;

bool IsTheNpu(const LUID& luid) {
  return luid.LowPart == kNpuLuid.LowPart && luid.HighPart == kNpuLuid.HighPart;
}

Status APIENTRY Open(OpenAdapterFromLuid* request) {
  if (!current->opens || !IsTheNpu(request->luid)) return kInvalidParameter;
  ++current->open_adapters;
  request->adapter = kHandle;
  return kKernelSuccess;
}

Status APIENTRY Close(const CloseAdapter* request) {
  if (request->adapter != kHandle) return kInvalidParameter;
  --current->open_adapters;
  return kKernelSuccess;
}

Status AnswerNode(NodePerformance& answer) {
  ++current->node_questions;
  if (answer.node >= current->node_frequencies.size() || answer.physical_adapter != 0) return kInvalidParameter;
  answer.frequency_hz = current->node_frequencies[answer.node];
  return kKernelSuccess;
}

Status APIENTRY Info(const QueryAdapterInfo* request) {
  if (request->adapter != kHandle) return kInvalidParameter;
  if (request->type == InfoType::kNodePerformance && request->size == sizeof(NodePerformance)) {
    return AnswerNode(*static_cast<NodePerformance*>(request->data));
  }
  if (request->type != InfoType::kAdapterPerformance || request->size != sizeof(AdapterPerformance)) {
    return kInvalidParameter;
  }
  *static_cast<AdapterPerformance*>(request->data) = current->performance;
  return current->has_performance ? kKernelSuccess : kInvalidParameter;
}

Status APIENTRY Statistics(QueryStatistics* request) {
  if (!current->has_statistics || !IsTheNpu(request->luid) || request->process != nullptr) return kInvalidParameter;
  if (request->type == StatisticsType::kAdapter) {
    const auto nodes = static_cast<ULONG>(current->node_frequencies.size());
    request->result.adapter = {static_cast<ULONG>(current->segments.size()),
                               current->claimed_nodes != 0 ? current->claimed_nodes : nodes};
    return kKernelSuccess;
  }
  const bool answers = request->type == StatisticsType::kSegment && request->segment < current->segments.size() &&
                       request->segment != current->failing_segment;
  if (!answers) return kInvalidParameter;
  request->result.segment = current->segments[request->segment];
  return kKernelSuccess;
}

SegmentStatistics Segment(std::uint64_t resident, bool aperture) {
  SegmentStatistics segment{};
  segment.commit_limit = 1 << 30;
  segment.bytes_committed = resident + 4096;
  segment.bytes_resident = resident;
  segment.is_aperture = aperture ? 1 : 0;
  return segment;
}

class NpuKernelFiguresTest : public ::testing::Test {
 protected:
  NpuKernelFiguresTest() {
    current = &kernel_;
    kernel_.performance.temperature_tenths = 475;
    kernel_.performance.memory_frequency_hz = 3200000000;
    kernel_.node_frequencies = {0, 1400000000, 900000000};
    kernel_.segments = {Segment(100, false), Segment(3000, true), Segment(20, false)};
  }
  ~NpuKernelFiguresTest() override {
    EXPECT_EQ(kernel_.open_adapters, 0) << "an adapter was left open, or closed twice";
  }

  Npu Read() {
    Npu npu;
    npu.device_id = "npu";
    ReadKernelFigures(Calls::In(library_), kNpuLuid, npu);
    EXPECT_EQ(npu.device_id, "npu");
    EXPECT_FALSE(npu.memory_size);
    return npu;
  }

  FakeKernel kernel_;
  FakeLibrary<Calls> library_ = FakeLibrary<Calls>()
                                    .Export<"D3DKMTOpenAdapterFromLuid">(&Open)
                                    .Export<"D3DKMTCloseAdapter">(&Close)
                                    .Export<"D3DKMTQueryAdapterInfo">(&Info)
                                    .Export<"D3DKMTQueryStatistics">(&Statistics);
};

TEST_F(NpuKernelFiguresTest, TellsTemperatureClocksAndMemoryInUse) {
  const Npu npu = Read();
  EXPECT_EQ(npu.temperature_celsius, 47.5);
  EXPECT_EQ(npu.memory_frequency_hz, 3200000000U);
  EXPECT_EQ(npu.engine_frequency_hz, 1400000000U);
  ASSERT_TRUE(npu.memory_in_use);
  EXPECT_EQ(npu.memory_in_use->dedicated, 120U);
  EXPECT_EQ(npu.memory_in_use->shared, 3000U);
}

TEST_F(NpuKernelFiguresTest, ZeroIsNotReported) {
  kernel_.performance = {};
  kernel_.node_frequencies = {0, 0};
  const Npu npu = Read();
  EXPECT_FALSE(npu.temperature_celsius);
  EXPECT_FALSE(npu.memory_frequency_hz);
  EXPECT_FALSE(npu.engine_frequency_hz);
}

TEST_F(NpuKernelFiguresTest, MemoryOfWhichNothingIsInUseIsReported) {
  kernel_.segments = {Segment(0, true)};
  const Npu npu = Read();
  ASSERT_TRUE(npu.memory_in_use);
  EXPECT_EQ(npu.memory_in_use->shared, 0U);
}

TEST_F(NpuKernelFiguresTest, WithoutSegmentsMemoryInUseIsUnknown) {
  kernel_.segments.clear();
  EXPECT_FALSE(Read().memory_in_use);
}

TEST_F(NpuKernelFiguresTest, ASegmentThatDoesNotAnswerLeavesMemoryInUseUnknown) {
  kernel_.failing_segment = 2;
  EXPECT_FALSE(Read().memory_in_use);
}

TEST_F(NpuKernelFiguresTest, AnEngineThatDoesNotAnswerIsPassedOver) {
  kernel_.claimed_nodes = 5;
  EXPECT_EQ(Read().engine_frequency_hz, 1400000000U);
  EXPECT_EQ(kernel_.node_questions, 5);
}

TEST_F(NpuKernelFiguresTest, AClaimOfCountlessEnginesIsNotFollowed) {
  kernel_.claimed_nodes = 0xFFFFFFFF;
  EXPECT_EQ(Read().engine_frequency_hz, 1400000000U);
  EXPECT_EQ(kernel_.node_questions, 64);
}

TEST_F(NpuKernelFiguresTest, AnAdapterThatDoesNotOpenStillTellsItsMemoryInUse) {
  kernel_.opens = false;
  const Npu npu = Read();
  EXPECT_FALSE(npu.temperature_celsius);
  EXPECT_FALSE(npu.memory_frequency_hz);
  EXPECT_FALSE(npu.engine_frequency_hz);
  EXPECT_TRUE(npu.memory_in_use);
}

TEST_F(NpuKernelFiguresTest, AnAnswerThatFailedIsNotRead) {
  kernel_.has_performance = false;
  const Npu npu = Read();
  EXPECT_FALSE(npu.temperature_celsius);
  EXPECT_FALSE(npu.memory_frequency_hz);
  EXPECT_TRUE(npu.engine_frequency_hz);
}

TEST_F(NpuKernelFiguresTest, WithoutStatisticsTheAdaptersFiguresStay) {
  kernel_.has_statistics = false;
  const Npu npu = Read();
  EXPECT_TRUE(npu.temperature_celsius);
  EXPECT_FALSE(npu.engine_frequency_hz);
  EXPECT_FALSE(npu.memory_in_use);
}

TEST_F(NpuKernelFiguresTest, AMissingEntryPointOnlyCostsItsFigures) {
  library_.Withdraw<"D3DKMTQueryAdapterInfo">();
  EXPECT_FALSE(Read().temperature_celsius);
  EXPECT_TRUE(Read().memory_in_use);
  library_.Withdraw<"D3DKMTCloseAdapter">();
  EXPECT_TRUE(Read().memory_in_use);
  library_.Withdraw<"D3DKMTOpenAdapterFromLuid">();
  EXPECT_TRUE(Read().memory_in_use);
  library_.Withdraw<"D3DKMTQueryStatistics">();
  EXPECT_FALSE(Read().memory_in_use);
}

TEST_F(NpuKernelFiguresTest, AnUnknownAdapterTellsNothing) {
  Npu npu;
  ReadKernelFigures(Calls::In(library_), LUID{1, 1}, npu);
  EXPECT_FALSE(npu.temperature_celsius);
  EXPECT_FALSE(npu.memory_in_use);
}

TEST(NpuKernelCallsTest, TheSystemsOwnKernelKnowsNothingOfAnAdapterThatIsNotThere) {
  const auto library = base::LoadedLibrary::OfSystem(kLibrary);
  const auto calls = Calls::In(library);
  EXPECT_NE(calls.Get<"D3DKMTOpenAdapterFromLuid">(), nullptr);
  EXPECT_NE(calls.Get<"D3DKMTCloseAdapter">(), nullptr);
  Npu npu;
  ReadKernelFigures(calls, LUID{0x7FFFFFFF, 0x7FFFFFFF}, npu);
  EXPECT_FALSE(npu.temperature_celsius);
  EXPECT_FALSE(npu.memory_in_use);
}

}  // namespace
}  // namespace zt::tests
