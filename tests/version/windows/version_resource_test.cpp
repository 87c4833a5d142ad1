#include <windows.h>
#include <gmock/gmock.h>

#include <filesystem>
#include <string>
#include <vector>

namespace zt::tests {
namespace {

namespace fs = std::filesystem;
using testing::SizeIs;

constexpr char kProduct[] = "zt-telemetry-performance-samples-collector";

fs::path Folder() {
  std::wstring file(MAX_PATH, L'\0');
  file.resize(::GetModuleFileNameW(nullptr, file.data(), MAX_PATH));
  return fs::path(file).parent_path();
}

// The project's own libraries and programs beside this one, which are those that ship.
std::vector<fs::path> OwnFiles() {
  std::vector<fs::path> files;
  for (const fs::directory_entry& entry : fs::directory_iterator(Folder())) {
    const fs::path& file = entry.path();
    if (file.filename().string().rfind("zt-", 0) == 0 && (file.extension() == ".dll" || file.extension() == ".exe")) {
      files.push_back(file);
    }
  }
  return files;
}

class VersionResource {
 public:
  explicit VersionResource(const fs::path& file) : bytes_(::GetFileVersionInfoSizeW(file.c_str(), nullptr)) {
    const auto size = static_cast<DWORD>(bytes_.size());
    if (size == 0 || ::GetFileVersionInfoW(file.c_str(), 0, size, bytes_.data()) == FALSE) bytes_.clear();
  }

  std::string Text(const std::string& name) const {
    const std::wstring place = L"\\StringFileInfo\\040904B0\\" + std::wstring(name.begin(), name.end());
    void* value = nullptr;
    UINT length = 0;
    if (bytes_.empty() || ::VerQueryValueW(bytes_.data(), place.c_str(), &value, &length) == FALSE) return "(missing)";
    const std::wstring text(static_cast<const wchar_t*>(value));
    return {text.begin(), text.end()};
  }

  // As "major.minor.patch", of the file or of the product.
  std::string Numbers(DWORD VS_FIXEDFILEINFO::*most, DWORD VS_FIXEDFILEINFO::*least) const {
    void* value = nullptr;
    UINT length = 0;
    if (bytes_.empty() || ::VerQueryValueW(bytes_.data(), L"\\", &value, &length) == FALSE) return "(missing)";
    const auto& fixed = *static_cast<const VS_FIXEDFILEINFO*>(value);
    return std::to_string(HIWORD(fixed.*most)) + "." + std::to_string(LOWORD(fixed.*most)) + "." +
           std::to_string(HIWORD(fixed.*least));
  }

 private:
  std::vector<BYTE> bytes_;
};

TEST(VersionResourceTest, EveryFileTellsItsVersionAsTextAndAsNumbers) {
  ASSERT_THAT(OwnFiles(), SizeIs(testing::Ge(11U)));
  for (const fs::path& file : OwnFiles()) {
    SCOPED_TRACE(file.string());
    const VersionResource resource(file);
    EXPECT_EQ(resource.Text("FileVersion"), ZT_VERSION);
    EXPECT_EQ(resource.Text("ProductVersion"), ZT_VERSION);
    EXPECT_EQ(resource.Numbers(&VS_FIXEDFILEINFO::dwFileVersionMS, &VS_FIXEDFILEINFO::dwFileVersionLS), ZT_VERSION);
    EXPECT_EQ(resource.Numbers(&VS_FIXEDFILEINFO::dwProductVersionMS, &VS_FIXEDFILEINFO::dwProductVersionLS),
              ZT_VERSION);
  }
}

TEST(VersionResourceTest, EveryFileTellsItsNameProductAndCommit) {
  for (const fs::path& file : OwnFiles()) {
    SCOPED_TRACE(file.string());
    const VersionResource resource(file);
    EXPECT_EQ(resource.Text("OriginalFilename"), file.filename().string());
    EXPECT_EQ(resource.Text("InternalName"), file.stem().string());
    EXPECT_EQ(resource.Text("ProductName"), kProduct);
    EXPECT_EQ(resource.Text("Commit"), ZT_COMMIT);
    EXPECT_NE(resource.Text("FileDescription"), "");
    EXPECT_NE(resource.Text("FileDescription"), "(missing)");
  }
}

// Which this program is.
TEST(VersionResourceTest, AFileWithoutOneIsSeen) {
  const VersionResource resource(Folder() / "version_tests.exe");
  EXPECT_EQ(resource.Text("FileVersion"), "(missing)");
}

}  // namespace
}  // namespace zt::tests
