// AMD's library where it succeeds and says nothing. What the collector loads is defined here: another library.
#include <gtest/gtest.h>

#include "platform/library.h"
#include "samplers/gpu/adlx_helper.h"
#include "support/fake_library.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using common::Error;
using namespace adlx;

tests::FakeLibrary<Functions>& AdlxLibrary() {
  static tests::FakeLibrary<Functions> library;
  return library;
}

class System final
    : public IADLXSystem {  // NOLINT(cppcoreguidelines-virtual-class-destructor): as the interface has it
 public:
  ADLX_RESULT GetGPUs(IADLXGPUList** /*gpus*/) override { return ADLX_FAIL; }
  ADLX_RESULT GetPerformanceMonitoringServices(IADLXPerformanceMonitoringServices** /*services*/) override {
    return ADLX_FAIL;
  }
};

System the_system;
int stops = 0;

ADLX_RESULT TellVersion(const char** version) {
  *version = "1.2.0.72";
  return ADLX_OK;
}

ADLX_RESULT TellNoVersion(const char** /*version*/) {
  return ADLX_OK;
}

ADLX_RESULT GiveSystem(std::uint64_t /*version*/, IADLXSystem** system) {
  *system = &the_system;
  return ADLX_OK;
}

ADLX_RESULT GiveNoSystem(std::uint64_t /*version*/, IADLXSystem** /*system*/) {
  return ADLX_OK;
}

class SilentAdlxTest : public testing::Test {
 protected:
  SilentAdlxTest() {
    AdlxLibrary()
        .Export<"ADLXQueryFullVersion">([](std::uint64_t*) { return ADLX_OK; })
        .Export<"ADLXQueryVersion">(&TellVersion)
        .Export<"ADLXInitialize">(&GiveSystem)
        .Export<"ADLXInitializeWithIncompatibleDriver">(&GiveSystem)
        .Export<"ADLXInitializeWithCallerAdl">([](std::uint64_t version, IADLXSystem** system, void**, void*,
                                                  void (*)(void**)) { return GiveSystem(version, system); })
        .Export<"ADLXTerminate">([] {
          ++stops;
          return ADLX_OK;
        });
  }
};

TEST_F(SilentAdlxTest, ALibraryThatTellsNoVersionStartsAndHasAnEmptyOne) {
  AdlxLibrary().Export<"ADLXQueryVersion">(&TellNoVersion);
  ADLXHelper helper;
  EXPECT_EQ(helper.Start(), Error(0, 0, "No error", "", ""));
  EXPECT_EQ(helper.System(), &the_system);
  EXPECT_EQ(helper.Version(), "");
}

TEST_F(SilentAdlxTest, AStartThatGivesNoSystemHasFailed) {
  AdlxLibrary().Export<"ADLXInitialize">(&GiveNoSystem);
  ADLXHelper helper;
  EXPECT_EQ(helper.Start(), Error(5, ADLX_FAIL, "Error while initializing ADLX lib", typeid(ADLX_RESULT).name(), ""));
  EXPECT_EQ(helper.System(), nullptr);
  EXPECT_EQ(helper.Version(), "1.2.0.72");
}

TEST_F(SilentAdlxTest, ALibraryThatStartedIsStopped) {
  { EXPECT_FALSE(ADLXHelper().Start().Failed()); }
  EXPECT_EQ(stops, 1);
}

}  // namespace

namespace platform {

Library Library::Load(const std::filesystem::path& /*file*/) {
  return {};
}

Library Library::Search(const std::filesystem::path& /*name*/, std::uint32_t /*search_flags*/) {
  return {};
}

void* Library::FindAddress(const char* name) const {
  return reinterpret_cast<void*>(AdlxLibrary().Find<void()>(name));
}

}  // namespace platform
}  // namespace zt::telemetry::collector::performancesamples
