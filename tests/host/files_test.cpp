#include "host/files.h"

#include <gmock/gmock.h>

#include <string>
#include <system_error>

#include "host/failure.h"
#include "program_run.h"
#include "support/temporary_folder.h"

namespace zt::telemetry::host {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::StartsWith;

// The text of the wrong usage that the step must end in.
template <typename Step>
std::string Complaint(const Step& step) {
  try {
    step();
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.ExitCode(), kExitWrongUsage);
    return failure.what();
  }
  ADD_FAILURE() << "no failure";
  return {};
}

// The C++ library's text of a reason, which differs between libraries.
std::string TextOf(std::errc reason) {
  return std::make_error_code(reason).message();
}

// Takes the right to write away for as long as it lives; some users (root) and systems ignore that.
class WriteProtection {
 public:
  explicit WriteProtection(fs::path path) : path_(std::move(path)) {
    fs::permissions(path_, kWrite, fs::perm_options::remove);
  }
  ~WriteProtection() { fs::permissions(path_, kWrite, fs::perm_options::add); }
  WriteProtection(const WriteProtection&) = delete;
  WriteProtection& operator=(const WriteProtection&) = delete;

 private:
  static constexpr fs::perms kWrite = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
  fs::path path_;
};

class FilesTest : public testing::Test {
 protected:
  zt::tests::TemporaryFolder folder_;
};

TEST_F(FilesTest, AWritableFolderIsAcceptedAndLeftAsItWas) {
  RequireWritableFolder(folder_.Path(), "--database-dir");
  EXPECT_TRUE(fs::is_empty(folder_.Path()));
}

TEST_F(FilesTest, AFolderThatIsMissingIsNamedWithItsOption) {
  EXPECT_THAT(Complaint([&] { RequireWritableFolder(folder_.Path() / "none", "--database-dir"); }),
              AllOf(StartsWith("--database-dir "), HasSubstr("none: there is no such folder")));
}

TEST_F(FilesTest, AFileIsNoFolder) {
  WriteFile(folder_.Path() / "file", "");
  EXPECT_THAT(Complaint([&] { RequireWritableFolder(folder_.Path() / "file", "--database-dir"); }),
              HasSubstr("this is not a folder"));
  EXPECT_THAT(Complaint([&] { MakeWritableFolder(folder_.Path() / "file" / "below", "--database-dir"); }),
              HasSubstr("below: "));
}

TEST_F(FilesTest, AFolderThatCannotBeWrittenToIsNamedWithTheReason) {
  // Root writes to protected folders, but not to what the kernel shows as files.
  const WriteProtection protection(folder_.Path());
  const fs::path kernel = "/proc/self";
  std::error_code error;
  const bool ignores_protection = fs::create_directory(folder_.Path() / "made", error);
  if (ignores_protection && !fs::exists(kernel)) GTEST_SKIP() << "this user writes everywhere";
  EXPECT_THAT(Complaint([&] { RequireWritableFolder(ignores_protection ? kernel : folder_.Path(), "--database-dir"); }),
              HasSubstr("the folder cannot be written to: "));
}

TEST_F(FilesTest, AMissingFolderIsMadeWithItsParents) {
  MakeWritableFolder(folder_.Path() / "a" / "b", "--database-dir");
  EXPECT_TRUE(fs::is_directory(folder_.Path() / "a" / "b"));
  MakeWritableFolder(folder_.Path() / "a" / "b", "--database-dir");
}

TEST_F(FilesTest, AFileIsWrittenByteForByteAndAnewEachTime) {
  const fs::path file = folder_.Path() / fs::path(u8"日本.txt");
  OpenForWriting(file, "--output") << "a longer text\n";
  OpenForWriting(file, "--output") << "line\n";
  EXPECT_EQ(ReadFile(file), "line\n");
}

TEST_F(FilesTest, AFileThatCannotBeMadeIsNamedWithTheReason) {
  EXPECT_THAT(Complaint([&] { OpenForWriting(folder_.Path() / "none" / "file", "--output"); }),
              AllOf(StartsWith("--output "),
                    HasSubstr("the file cannot be written: " + TextOf(std::errc::no_such_file_or_directory))));
  EXPECT_THAT(Complaint([&] { OpenForWriting(folder_.Path(), "--output"); }),
              HasSubstr("this is a folder, not a file"));
}

TEST_F(FilesTest, AFileThatMustBeWritableMayBeMissingAndKeepsItsContent) {
  const fs::path file = folder_.Path() / "ssm.db";
  RequireWritableWhenPresent(file, "--database-dir");
  EXPECT_FALSE(fs::exists(file));
  WriteFile(file, "content");
  RequireWritableWhenPresent(file, "--database-dir");
  EXPECT_EQ(ReadFile(file), "content");
}

TEST_F(FilesTest, AFolderInPlaceOfAFileThatMustBeWritableIsNamed) {
  EXPECT_THAT(Complaint([&] { RequireWritableWhenPresent(folder_.Path(), "--database-dir"); }),
              HasSubstr("this is a folder, not a file"));
}

TEST_F(FilesTest, AFileThatIsProtectedIsNamedWithTheReason) {
  const fs::path file = folder_.Path() / "ssm.db";
  WriteFile(file, "content");
  const WriteProtection protection(file);
  if (std::ofstream(file, std::ios::app).is_open()) GTEST_SKIP() << "this user writes to protected files";
  EXPECT_THAT(Complaint([&] { RequireWritableWhenPresent(file, "--database-dir"); }),
              HasSubstr("the file cannot be written to: " + TextOf(std::errc::permission_denied)));
}

}  // namespace
}  // namespace zt::telemetry::host
