// How the vendors' libraries are found, and what of them.
#include <filesystem>

#include "gpu_fixture.h"
#include "platform/library.h"
#include "platform/nvml_files.h"
#include "platform/registry.h"
#include "samplers/gpu/adlx_api.h"
#include "samplers/gpu/nvml_api.h"
#include "samplers/gpu/nvml_library.h"
#include "simulation/library_folder.h"
#include "support/status_codes.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using platform::Library;
using testing::ElementsAre;
using tests::FullNvidiaCard;
using tests::Machine;

using AnyFunction = void();

constexpr std::uint32_t kSearchFlags = 0x1E00;

Library FindAdlx() {
  return Library::Search("amdadlx64.dll", kSearchFlags);
}

std::filesystem::path NvmlStandIn() {
  return simulation::LibraryFolder() / "nvml.dll";
}

Machine WithBoth() {
  Machine machine;
  machine.nvml.emplace();
  machine.adlx.emplace();
  return machine;
}

TEST(VendorLibrariesTest, OfTheMachineIsLoadedAndHasItsFunctions) {
  simulation::UseMachine(WithBoth());
  const auto nvml = nvml::Functions::In(Library::Load(NvmlStandIn()));
  EXPECT_TRUE(nvml.IsComplete());
  EXPECT_NE(nvml.Get<"nvmlInit_v2">(), nullptr);
  const auto adlx = adlx::Functions::In(FindAdlx());
  EXPECT_TRUE(adlx.IsComplete());
  EXPECT_NE(adlx.Get<"ADLXInitialize">(), nullptr);
}

TEST(VendorLibrariesTest, ThatTheMachineDoesNotHaveIsNotThere) {
  simulation::UseMachine({});
  const Library nvml = Library::Load(NvmlStandIn());
  EXPECT_FALSE(nvml);
  EXPECT_EQ(nvml.Find<AnyFunction>("nvmlInit_v2"), nullptr);
  EXPECT_FALSE(FindAdlx());
}

TEST(VendorLibrariesTest, OfAnotherFolderOrNameIsNotThere) {
  simulation::UseMachine(WithBoth());
  EXPECT_FALSE(Library::Load(simulation::LibraryFolder() / "elsewhere" / "nvml.dll"));
  EXPECT_FALSE(Library::Search("zt-no-such-library.dll", kSearchFlags));
}

TEST(VendorLibrariesTest, LacksTheFunctionsThatTheMachineSaysAreMissing) {
  Machine machine = WithBoth();
  machine.nvml->missing_functions = {"nvmlDeviceGetSerial"};
  simulation::UseMachine(machine);
  const Library nvml = Library::Load(NvmlStandIn());
  EXPECT_EQ(nvml.Find<AnyFunction>("nvmlDeviceGetSerial"), nullptr);
  EXPECT_NE(nvml.Find<AnyFunction>("nvmlDeviceGetClock"), nullptr);
}

TEST(VendorLibrariesTest, HasNoFunctionOfANameThatItDoesNotExport) {
  simulation::UseMachine(WithBoth());
  EXPECT_EQ(FindAdlx().Find<AnyFunction>("nvmlInit_v2"), nullptr);
}

TEST(VendorLibrariesTest, IsFoundInTheSecondPlaceToo) {
  simulation::UseMachine(WithBoth());
  const auto files = platform::NvmlFiles();
  ASSERT_EQ(files.size(), 2U);
  EXPECT_FALSE(Library::Load(files[0]));
  EXPECT_TRUE(Library::Load(files[1]));
  EXPECT_NE(BindNvml(), nullptr);
}

TEST(VendorLibrariesTest, OfNvidiaIsLookedUpOnceAndThenKept) {
  simulation::UseMachine({});
  EXPECT_EQ(BindNvml(), nullptr);
  simulation::UseMachine(WithBoth());
  const nvml::Functions* const found = BindNvml();
  ASSERT_NE(found, nullptr);
  simulation::UseMachine({});
  EXPECT_EQ(BindNvml(), found);
}

Machine WithRegistry() {
  Machine machine;
  machine.registry = {{R"(HKEY_LOCAL_MACHINE\SYSTEM\Outer)",
                       {{"Colour", "red"}},
                       {{"Inner", {{"Size", "3"}}, {{"Deep", {}, {}}}}, {"Other", {}, {}}}}};
  return machine;
}

TEST(SimulatedRegistryTest, ListsSubkeysInTheirOrder) {
  simulation::UseMachine(WithRegistry());
  EXPECT_THAT(platform::RegistrySubkeys(R"(SYSTEM\Outer)").value, ElementsAre("Inner", "Other"));
  EXPECT_THAT(platform::RegistrySubkeys(R"(system\OUTER\)").value, ElementsAre("Inner", "Other"));
  EXPECT_THAT(platform::RegistrySubkeys(R"(SYSTEM\Outer\inner)").value, ElementsAre("Deep"));
}

TEST(SimulatedRegistryTest, ReadsTextsOfKeys) {
  simulation::UseMachine(WithRegistry());
  EXPECT_EQ(platform::RegistryText(R"(SYSTEM\Outer)", "colour").value, "red");
  EXPECT_EQ(platform::RegistryText(R"(SYSTEM\Outer\Inner)", "Size").value, "3");
  EXPECT_EQ(platform::RegistryText(R"(SYSTEM\Outer)", "Size").value, std::nullopt);
}

TEST(SimulatedRegistryTest, AKeyThatCannotBeOpenedIsAFailureAndOneThatIsNotThereIsNot) {
  simulation::Machine machine = WithRegistry();
  machine.registry[0].failure = simulation::Failure{tests::kCallDenied};
  simulation::UseMachine(machine);
  EXPECT_EQ(platform::RegistrySubkeys(R"(SYSTEM\Outer)").failure, 5U);
  EXPECT_EQ(platform::RegistryText(R"(SYSTEM\Outer)", "colour").failure, 5U);
  EXPECT_EQ(platform::RegistryText(R"(SYSTEM\Outer)", "colour").value, std::nullopt);
  EXPECT_EQ(platform::RegistrySubkeys(R"(SYSTEM\Other)").failure, 0U);
  EXPECT_EQ(platform::RegistryText(R"(SYSTEM\Other)", "colour").failure, 0U);
}

TEST(SimulatedRegistryTest, HasNoKeyThatTheMachineDoesNotState) {
  simulation::UseMachine(WithRegistry());
  for (const std::string path : {"SYSTEM", R"(SYSTEM\Out)", R"(SYSTEM\Outer2)", R"(SYSTEM\Outer\Inner\Deep\No)"}) {
    EXPECT_TRUE(platform::RegistrySubkeys(path).value.empty()) << path;
    EXPECT_EQ(platform::RegistryText(path, "Colour").value, std::nullopt) << path;
  }
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
