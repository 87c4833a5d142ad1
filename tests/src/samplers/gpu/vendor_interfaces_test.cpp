// That each method of AMD's interfaces is called in its slot of the table of methods: the stand-in is built from the
// same declarations as the collector and would agree with any order.
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "samplers/gpu/adlx_api.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using namespace adlx;

// What a method of any interface is to its caller in a 64-bit program: the object first, then what does not matter
// here.
using Slot = std::intptr_t (*)(void* object, void* first, void* second);

std::size_t called_slot = 0;

template <std::size_t number>
std::intptr_t Note(void*, void*, void*) {
  called_slot = number;
  return 0;
}

template <std::size_t... numbers>
constexpr std::array<Slot, sizeof...(numbers)> MakeTable(std::index_sequence<numbers...>) {
  return {&Note<numbers>...};
}

constexpr auto kTable = MakeTable(std::make_index_sequence<32>());

// An object as a vendor's library hands it out: a pointer to its table of methods, and nothing else that shows.
struct Object {
  const Slot* table = kTable.data();
};

// The sanitizer would look behind the table for the type of the object, which a table of a vendor does not tell either.
#if defined(__GNUC__)
#define ZT_OBJECT_WITHOUT_TYPE __attribute__((no_sanitize("undefined")))
#else
#define ZT_OBJECT_WITHOUT_TYPE
#endif

template <typename Interface, typename... Parameters, typename Result, typename... Arguments>
ZT_OBJECT_WITHOUT_TYPE std::size_t SlotOf(Result (Interface::*method)(Parameters...), Arguments... arguments) {
  Object object;
  called_slot = kTable.size();
  auto* const interface = reinterpret_cast<Interface*>(&object);
  (interface->*method)(arguments...);
  return called_slot;
}

TEST(AdlxInterfacesTest, CountReferencesInTheFirstSlots) {
  EXPECT_EQ(SlotOf(&IADLXInterface::Acquire), 0U);
  EXPECT_EQ(SlotOf(&IADLXInterface::Release), 1U);
}

// A method whose parameters are not declared cannot be called by mistake: in each interface one that stands for all.
template <typename Interface>
constexpr bool kHasQueryInterface = requires(Interface& object) {
  object.QueryInterface();
};
template <typename Interface>
constexpr bool kHasName = requires(Interface& object) {
  object.Name();
};
template <typename Interface>
constexpr bool kHasAt = requires(Interface& object) {
  object.At();
};
template <typename Interface>
constexpr bool kHasTimeStamp = requires(Interface& object) {
  object.TimeStamp();
};
template <typename Interface>
constexpr bool kHasPower = requires(Interface& object) {
  object.IsSupportedGPUPower();
};
template <typename Interface>
constexpr bool kHasHistory = requires(Interface& object) {
  object.GetAllMetricsHistory();
};
template <typename Interface>
constexpr bool kHasLog = requires(Interface& object) {
  object.EnableLog();
};
static_assert(!kHasQueryInterface<IADLXInterface> && !kHasName<IADLXGPU> && !kHasAt<IADLXGPUList> &&
              !kHasTimeStamp<IADLXGPUMetrics> && !kHasPower<IADLXGPUMetricsSupport> &&
              !kHasHistory<IADLXPerformanceMonitoringServices> && !kHasLog<IADLXSystem>);

// An implementation as the stand-in has one.
class ImplementedInterface final : public IADLXInterface {
 public:
  std::int32_t Acquire() override { return 1; }
  std::int32_t Release() override { return 0; }
};

// Calls the slot of an object's table.
ZT_OBJECT_WITHOUT_TYPE void CallSlot(void* object, std::size_t slot) {
  (*static_cast<const Slot* const*>(object))[slot](object, nullptr, nullptr);
}

TEST(AdlxInterfacesDeathTest, AnImplementationsSlotOfAMethodThatNobodyDeclaredEndsTheProgram) {
  ImplementedInterface object;
  constexpr std::size_t kQueryInterface = 2;
  EXPECT_DEATH(CallSlot(static_cast<IADLXInterface*>(&object), kQueryInterface), "");
}

TEST(AdlxInterfacesTest, TheSystemsMethodsAreInTheirSlots) {
  EXPECT_EQ(SlotOf(&IADLXSystem::GetGPUs, nullptr), 1U);
  EXPECT_EQ(SlotOf(&IADLXSystem::GetPerformanceMonitoringServices, nullptr), 9U);
}

TEST(AdlxInterfacesTest, TheListsMethodsAreInTheirSlots) {
  EXPECT_EQ(SlotOf(&IADLXGPUList::Begin), 5U);
  EXPECT_EQ(SlotOf(&IADLXGPUList::End), 6U);
  EXPECT_EQ(SlotOf(&IADLXGPUList::At_GPUList, 0U, nullptr), 11U);
}

TEST(AdlxInterfacesTest, TheCardsMethodsAreInTheirSlots) {
  EXPECT_EQ(SlotOf(&IADLXGPU::VendorId, nullptr), 3U);
  EXPECT_EQ(SlotOf(&IADLXGPU::TotalVRAM, nullptr), 11U);
  EXPECT_EQ(SlotOf(&IADLXGPU::DeviceId, nullptr), 14U);
}

TEST(AdlxInterfacesTest, TheServicesMethodsAreInTheirSlots) {
  EXPECT_EQ(SlotOf(&IADLXPerformanceMonitoringServices::GetCurrentGPUMetrics, nullptr, nullptr), 18U);
  EXPECT_EQ(SlotOf(&IADLXPerformanceMonitoringServices::GetSupportedGPUMetrics, nullptr, nullptr), 21U);
}

TEST(AdlxInterfacesTest, TheSupportsMethodsAreInTheirSlots) {
  EXPECT_EQ(SlotOf(&IADLXGPUMetricsSupport::IsSupportedGPUUsage, nullptr), 3U);
  EXPECT_EQ(SlotOf(&IADLXGPUMetricsSupport::IsSupportedGPUClockSpeed, nullptr), 4U);
  EXPECT_EQ(SlotOf(&IADLXGPUMetricsSupport::IsSupportedGPUVRAMClockSpeed, nullptr), 5U);
  EXPECT_EQ(SlotOf(&IADLXGPUMetricsSupport::IsSupportedGPUTemperature, nullptr), 6U);
  EXPECT_EQ(SlotOf(&IADLXGPUMetricsSupport::IsSupportedGPUVRAM, nullptr), 11U);
}

TEST(AdlxInterfacesTest, TheMetricsMethodsAreInTheirSlots) {
  EXPECT_EQ(SlotOf(&IADLXGPUMetrics::GPUUsage, nullptr), 4U);
  EXPECT_EQ(SlotOf(&IADLXGPUMetrics::GPUClockSpeed, nullptr), 5U);
  EXPECT_EQ(SlotOf(&IADLXGPUMetrics::GPUVRAMClockSpeed, nullptr), 6U);
  EXPECT_EQ(SlotOf(&IADLXGPUMetrics::GPUTemperature, nullptr), 7U);
  EXPECT_EQ(SlotOf(&IADLXGPUMetrics::GPUVRAM, nullptr), 12U);
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
