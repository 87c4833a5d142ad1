#include "platform/module_name.h"

#include <windows.h>
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace zt::tests {
namespace {

using telemetry::collector::performancesamples::platform::ModuleFileName;

constexpr wchar_t kSomeLibrary[] = L"cabinet.dll";

void SomeFunction() {}

template <typename Function>
const void* AddressOf(Function* function) {
  const void* address = nullptr;
  std::memcpy(&address, &function, sizeof(address));
  return address;
}

struct LibraryDeleter {
  using pointer = HMODULE;
  void operator()(HMODULE library) const { ::FreeLibrary(library); }
};
using Library = std::unique_ptr<HMODULE, LibraryDeleter>;

TEST(SystemModuleNameTest, AFunctionOfThisProgramLiesInThisProgram) {
  EXPECT_EQ(ModuleFileName(AddressOf(&SomeFunction)), L"collector_real_tests.exe");
}

TEST(SystemModuleNameTest, AFunctionOfALibraryLiesInThatLibrary) {
  const HMODULE library = ::GetModuleHandleW(L"zt-shared-wmi-client.dll");
  ASSERT_TRUE(library != nullptr);
  EXPECT_EQ(ModuleFileName(library), L"zt-shared-wmi-client.dll");
}

TEST(SystemModuleNameTest, MemoryOutsideOfModulesHasNoName) {
  const auto memory = std::make_unique<int>(0);
  EXPECT_EQ(ModuleFileName(memory.get()), L"");
}

TEST(SystemModuleNameTest, TheLibraryIsNotHeld) {
  ASSERT_TRUE(::GetModuleHandleW(kSomeLibrary) == nullptr);
  {
    const Library library(::LoadLibraryW(kSomeLibrary));
    ASSERT_TRUE(library != nullptr);
    EXPECT_EQ(ModuleFileName(library.get()), kSomeLibrary);
  }
  EXPECT_TRUE(::GetModuleHandleW(kSomeLibrary) == nullptr);
}

// A folder whose path is longer than the 260 characters that a module's path may have, removed in the end.
class LongFolder {
 public:
  LongFolder() {
    std::array<wchar_t, MAX_PATH> temporary{};
    ::GetTempPathW(MAX_PATH, temporary.data());
    path_ = LR"(\\?\)" + std::wstring(temporary.data()) + L"zt-module-name-" + std::to_wstring(::GetCurrentProcessId());
    for (int level = 0; level < 4; ++level) {
      ::CreateDirectoryW(path_.c_str(), nullptr);
      made_.push_back(path_);
      path_ += L'\\' + std::wstring(80, L'd');
    }
    path_ = made_.back();
  }
  ~LongFolder() {
    for (auto folder = made_.rbegin(); folder != made_.rend(); ++folder) ::RemoveDirectoryW(folder->c_str());
  }
  LongFolder(const LongFolder&) = delete;
  LongFolder& operator=(const LongFolder&) = delete;

  const std::wstring& Path() const { return path_; }

 private:
  std::wstring path_;
  std::vector<std::wstring> made_;
};

TEST(SystemModuleNameTest, AModuleWhosePathDoesNotFitHasNoName) {
  const LongFolder folder;
  const std::wstring copy = folder.Path() + L"\\copy.dll";
  const Library original(::LoadLibraryW(kSomeLibrary));
  std::array<wchar_t, MAX_PATH> original_path{};
  ASSERT_GT(::GetModuleFileNameW(original.get(), original_path.data(), MAX_PATH), 0U);
  ASSERT_TRUE(::CopyFileW(original_path.data(), copy.c_str(), FALSE));
  {
    const Library library(::LoadLibraryW(copy.c_str()));
    ASSERT_TRUE(library != nullptr) << ::GetLastError();
    EXPECT_EQ(ModuleFileName(library.get()), L"");
  }
  EXPECT_TRUE(::DeleteFileW(copy.c_str()));
}

}  // namespace
}  // namespace zt::tests
