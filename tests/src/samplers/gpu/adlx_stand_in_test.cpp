// That the stand-in of AMD's library tells of what a caller must not do: tests of the collector rely on it.
#include "gpu_fixture.h"
#include "platform/library.h"
#include "samplers/gpu/adlx_api.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using namespace adlx;
using testing::ElementsAre;
using testing::IsEmpty;
using tests::FullAmdCard;

constexpr std::uint64_t kVersion = 0x0001'0002'0000'0048;
constexpr std::uint32_t kFirst = 1;

/// The library, started on a machine with one card.
class AdlxStandInTest : public testing::Test {
 protected:
  AdlxStandInTest() {
    simulation::UseMachine(tests::WithAmd({FullAmdCard()}));
    library_ = platform::Library::Search("amdadlx64.dll", 0);
    EXPECT_EQ(Functions::In(library_).Get<"ADLXInitialize">()(kVersion, &system_), ADLX_OK);
    EXPECT_EQ(system_->GetGPUs(&list_), ADLX_OK);
    EXPECT_EQ(list_->At_GPUList(kFirst, &gpu_), ADLX_OK);
    EXPECT_EQ(system_->GetPerformanceMonitoringServices(&services_), ADLX_OK);
  }

  void Terminate() { Functions::In(library_).Get<"ADLXTerminate">()(); }

  static const std::vector<std::string>& Faults() { return CurrentVendorRecord().faults; }

  platform::Library library_;
  IADLXSystem* system_ = nullptr;
  IADLXGPUList* list_ = nullptr;
  IADLXGPU* gpu_ = nullptr;
  IADLXPerformanceMonitoringServices* services_ = nullptr;
};

TEST_F(AdlxStandInTest, HasNoFaultToTellOfACallerWhoDoesAsHeMust) {
  services_->Release();
  gpu_->Release();
  list_->Release();
  Terminate();
  EXPECT_THAT(Faults(), IsEmpty());
}

TEST_F(AdlxStandInTest, TellsOfAMethodOfAReleasedInterface) {
  list_->Release();
  EXPECT_EQ(list_->Begin(), 0U);
  EXPECT_THAT(Faults(), ElementsAre("IADLXGPUList::Begin of a released interface"));
}

TEST_F(AdlxStandInTest, TellsOfASecondRelease) {
  gpu_->Release();
  gpu_->Release();
  EXPECT_THAT(Faults(), ElementsAre("IADLXGPU::Release of a released interface"));
}

TEST_F(AdlxStandInTest, AReleasedInterfaceCannotBeTakenUpAgain) {
  gpu_->Release();
  EXPECT_EQ(gpu_->Acquire(), 0);
  const char* text = nullptr;
  EXPECT_EQ(gpu_->VendorId(&text), ADLX_FAIL);
  EXPECT_THAT(Faults(),
              ElementsAre("IADLXGPU::Acquire of a released interface", "IADLXGPU::VendorId of a released interface"));
}

TEST_F(AdlxStandInTest, TellsOfAReleasedCardThatIsHandedToTheServices) {
  gpu_->Release();
  IADLXGPUMetrics* metrics = nullptr;
  IADLXGPUMetricsSupport* support = nullptr;
  EXPECT_EQ(services_->GetCurrentGPUMetrics(gpu_, &metrics), ADLX_FAIL);
  EXPECT_EQ(services_->GetSupportedGPUMetrics(gpu_, &support), ADLX_FAIL);
  EXPECT_THAT(Faults(), ElementsAre("IADLXGPU given to GetCurrentGPUMetrics of a released interface",
                                    "IADLXGPU given to GetSupportedGPUMetrics of a released interface"));
}

TEST_F(AdlxStandInTest, ATextIsUnreadableOnceItsCardIsReleased) {
  const char* vendor = nullptr;
  const char* device = nullptr;
  ASSERT_EQ(gpu_->VendorId(&vendor), ADLX_OK);
  ASSERT_EQ(gpu_->DeviceId(&device), ADLX_OK);
  EXPECT_STREQ(vendor, "1002");
  EXPECT_STREQ(device, "744C");
  gpu_->Release();
  EXPECT_STREQ(vendor, "####");
  EXPECT_STREQ(device, "####");
}

TEST_F(AdlxStandInTest, ATextIsReadableWhileAReferenceIsLeft) {
  const char* vendor = nullptr;
  ASSERT_EQ(gpu_->VendorId(&vendor), ADLX_OK);
  gpu_->Acquire();
  gpu_->Release();
  EXPECT_STREQ(vendor, "1002");
}

TEST_F(AdlxStandInTest, TellsOfInterfacesThatAreLeftAtTheStopAndOfTheirUse) {
  Terminate();
  list_->Begin();
  EXPECT_THAT(Faults(), ElementsAre("terminated before every interface was released",
                                    "IADLXGPUList::Begin of a stopped library"));
}

TEST_F(AdlxStandInTest, TellsOfASystemThatIsAskedAfterTheStop) {
  services_->Release();
  gpu_->Release();
  list_->Release();
  Terminate();
  IADLXGPUList* list = nullptr;
  IADLXPerformanceMonitoringServices* services = nullptr;
  EXPECT_EQ(system_->GetGPUs(&list), ADLX_FAIL);
  EXPECT_EQ(system_->GetPerformanceMonitoringServices(&services), ADLX_FAIL);
  EXPECT_THAT(Faults(), ElementsAre("IADLXSystem::GetGPUs of a stopped library",
                                    "IADLXSystem::GetPerformanceMonitoringServices of a stopped library"));
}

TEST_F(AdlxStandInTest, TellsOfAStartWithAnotherVersion) {
  Functions::In(library_).Get<"ADLXInitialize">()(kVersion + 1, &system_);
  EXPECT_THAT(Faults(), ElementsAre("started with an unknown version"));
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
