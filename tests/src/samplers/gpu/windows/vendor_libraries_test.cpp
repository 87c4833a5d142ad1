#include <windows.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "platform/library.h"
#include "platform/nvml_files.h"
#include "platform/registry.h"
#include "samplers/gpu/amd_card_info.h"
#include "samplers/gpu/nvidia_card_info.h"
#include "support/windows/planted_libraries.h"

// How this very system's libraries and registry are reached.
namespace zt::telemetry::collector::performancesamples {
namespace {

using platform::Library;
using testing::Contains;
using testing::IsEmpty;

constexpr std::uint32_t kSearchFlags = 0x1E00;

std::filesystem::path SystemFolder() {
  std::wstring path(MAX_PATH, L'\0');
  path.resize(::GetSystemDirectoryW(path.data(), MAX_PATH));
  return path;
}

TEST(SystemLibrariesTest, NvidiasIsLookedForInTheSystemFolderAndThenInTheClassicOne) {
  const auto files = platform::NvmlFiles();
  ASSERT_EQ(files.size(), 2U);
  EXPECT_EQ(files[0].filename(), "nvml.dll");
  EXPECT_TRUE(std::filesystem::equivalent(files[0].parent_path(), SystemFolder()));
  EXPECT_TRUE(files[1].is_absolute());
  EXPECT_THAT(files[1].generic_string(), testing::EndsWith("/NVIDIA Corporation/NVSMI/nvml.dll"));
}

TEST(SystemLibrariesTest, AreLoadedByFullPath) {
  const Library library = Library::Load(SystemFolder() / "version.dll");
  ASSERT_TRUE(library);
  EXPECT_NE(library.Find<void()>("GetFileVersionInfoW"), nullptr);
  EXPECT_EQ(library.Find<void()>("ZtNoSuchFunction"), nullptr);
}

TEST(SystemLibrariesTest, AreFoundByNameInTheSystemFolder) {
  EXPECT_TRUE(Library::Search("version.dll", kSearchFlags));
  EXPECT_FALSE(Library::Search("zt-no-such-library.dll", kSearchFlags));
}

TEST(SystemLibrariesTest, AreNotLoadedByANameWhereAPathIsNeeded) {
  EXPECT_FALSE(Library::Load("version.dll"));
  EXPECT_FALSE(Library::Load(SystemFolder() / "zt-no-such-library.dll"));
}

TEST(SystemLibrariesTest, AreUnloadedWithTheLastThatUsesThem) {
  constexpr wchar_t kName[] = L"dbgeng.dll";
  ASSERT_EQ(::GetModuleHandleW(kName), nullptr);
  {
    const Library library = Library::Search(kName, kSearchFlags);
    ASSERT_TRUE(library);
    EXPECT_NE(::GetModuleHandleW(kName), nullptr);
  }
  EXPECT_EQ(::GetModuleHandleW(kName), nullptr);
}

TEST(SystemLibrariesTest, StayLoadedWhenTheyAreGivenToTheProcess) {
  constexpr wchar_t kName[] = L"dbgeng.dll";
  Library::Search(kName, kSearchFlags).StayLoaded();
  EXPECT_NE(::GetModuleHandleW(kName), nullptr);
}

// The collector must not take a library from wherever the host happens to stand. Each of the planted ones marks that it
// was loaded, also when it is unloaded again at once.
TEST(SystemLibrariesTest, OfVendorsAreNeverTakenFromTheCurrentFolderOrTheSearchPath) {
  const tests::PlantedLibraries planted;
  planted.BecomeCurrent();
  std::vector<types::GraphicCardInfo> cards;
  NvidiaCardInfo().QueryValues(&cards);
  AmdCardInfo().QueryValues(&cards);
  EXPECT_THAT(planted.Marks(), IsEmpty());
}

// A key of the test's own below HKEY_LOCAL_MACHINE\SOFTWARE, gone with the test.
class SystemRegistryTest : public testing::Test {
 protected:
  void SetUp() override {
    if (Set("", "Colour", REG_SZ, "red", 4) == ERROR_ACCESS_DENIED) {
      GTEST_SKIP() << "this user may not write below HKEY_LOCAL_MACHINE";
    }
  }
  ~SystemRegistryTest() override { ::RegDeleteTreeA(HKEY_LOCAL_MACHINE, path_.c_str()); }

  LSTATUS Set(const std::string& subkey, const char* name, DWORD type, const void* data, DWORD size) const {
    return ::RegSetKeyValueA(HKEY_LOCAL_MACHINE, (path_ + subkey).c_str(), name, type, data, size);
  }
  void Write(const std::string& subkey, const char* name, DWORD type, const void* data, DWORD size) const {
    ASSERT_EQ(Set(subkey, name, type, data, size), ERROR_SUCCESS);
  }

  const std::string path_ = R"(SOFTWARE\zt-telemetry-test-)" + std::to_string(::GetCurrentProcessId());
};

TEST_F(SystemRegistryTest, ListsSubkeys) {
  EXPECT_THAT(platform::RegistrySubkeys(path_).value, IsEmpty());
  Write(R"(\VEN_1002&DEV_744C)", "x", REG_SZ, "", 1);
  Write(R"(\VEN_10DE&DEV_26B1)", "x", REG_SZ, "", 1);
  EXPECT_THAT(platform::RegistrySubkeys(path_).value, testing::ElementsAre("VEN_1002&DEV_744C", "VEN_10DE&DEV_26B1"));
  EXPECT_THAT(platform::RegistrySubkeys(path_ + '\\').value, Contains("VEN_1002&DEV_744C"));
  EXPECT_THAT(platform::RegistrySubkeys(R"(SOFTWARE\zt-no-such-key)").value, IsEmpty());
}

TEST_F(SystemRegistryTest, ListsSubkeysWithLongNames) {
  const std::string name(200, 'n');
  Write('\\' + name, "x", REG_SZ, "", 1);
  EXPECT_THAT(platform::RegistrySubkeys(path_).value, testing::ElementsAre(name));
}

TEST_F(SystemRegistryTest, AMissingKeyOrValueIsNoFailure) {
  EXPECT_EQ(platform::RegistrySubkeys(path_).failure, 0U) << "the end of the list";
  EXPECT_EQ(platform::RegistrySubkeys(R"(SOFTWARE\zt-no-such-key)").failure, 0U);
  EXPECT_EQ(platform::RegistryText(path_, "Missing").failure, 0U);
  EXPECT_EQ(platform::RegistryText(R"(SOFTWARE\zt-no-such-key)", "Colour").failure, 0U);
}

TEST_F(SystemRegistryTest, AKeyThatCannotBeOpenedIsAFailure) {
  const std::string too_long(300, 'k');
  EXPECT_NE(platform::RegistrySubkeys(too_long).failure, 0U);
  EXPECT_NE(platform::RegistryText(too_long, "Colour").failure, 0U);
}

TEST_F(SystemRegistryTest, ReadsTexts) {
  EXPECT_EQ(platform::RegistryText(path_, "Colour").value, "red");
  EXPECT_EQ(platform::RegistryText(path_ + '\\', "colour").value, "red");
  const std::string text(10'000, 't');
  Write("", "Long", REG_EXPAND_SZ, text.c_str(), static_cast<DWORD>(text.size() + 1));
  EXPECT_EQ(platform::RegistryText(path_, "Long").value, text);
}

TEST_F(SystemRegistryTest, ReadsTextsWithoutAnEnd) {
  Write("", "Endless", REG_SZ, "red", 3);
  EXPECT_EQ(platform::RegistryText(path_, "Endless").value, "red");
  Write("", "Empty", REG_SZ, "", 0);
  EXPECT_EQ(platform::RegistryText(path_, "Empty").value, "");
}

TEST_F(SystemRegistryTest, HasNoTextWhereThereIsNone) {
  const DWORD number = 3;
  Write("", "Number", REG_DWORD, &number, sizeof number);
  EXPECT_EQ(platform::RegistryText(path_, "Number").value, std::nullopt);
  EXPECT_EQ(platform::RegistryText(path_, "Missing").value, std::nullopt);
  EXPECT_EQ(platform::RegistryText(R"(SOFTWARE\zt-no-such-key)", "Colour").value, std::nullopt);
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
