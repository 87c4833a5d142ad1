#include "host/whole_file.h"

#include <gmock/gmock.h>

#include "host/failure.h"
#include "support/temporary_folder.h"
#include "tests/host/program_run.h"

namespace zt::telemetry::host {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class WholeFileTest : public testing::Test {
 protected:
  std::size_t FilesThere() const {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder_.Path()), fs::directory_iterator()));
  }

  zt::tests::TemporaryFolder folder_;
  fs::path file_ = folder_.Path() / "zt.prom";
};

TEST_F(WholeFileTest, ArrivesWhenItIsFinished) {
  WholeFile file(file_, "--output");
  file.Stream() << "new\n";
  EXPECT_FALSE(fs::exists(file_));
  file.Finish();
  EXPECT_EQ(ReadFile(file_), "new\n");
  EXPECT_EQ(FilesThere(), 1U);
}

TEST_F(WholeFileTest, WithoutItsEndWhatWasThereStays) {
  WriteFile(file_, "before");
  {
    WholeFile file(file_, "--output");
    file.Stream() << "half of" << std::flush;
    EXPECT_EQ(ReadFile(file_), "before");
  }
  EXPECT_EQ(ReadFile(file_), "before");
  EXPECT_EQ(FilesThere(), 1U);
}

TEST_F(WholeFileTest, TakesTheOldFilesPlace) {
  WriteFile(file_, "before, and longer");
  WholeFile file(file_, "--output");
  file.Stream() << "new";
  file.Finish();
  EXPECT_EQ(ReadFile(file_), "new");
}

// A collector of metrics reads every file of its folder that ends with ".prom".
TEST_F(WholeFileTest, WhileItIsWrittenItsNameHasAnotherEnd) {
  const WholeFile file(file_, "--output");
  for (const auto& entry : fs::directory_iterator(folder_.Path())) EXPECT_NE(entry.path().extension(), ".prom");
  EXPECT_EQ(FilesThere(), 1U);
}

TEST_F(WholeFileTest, TwoAtOnceDoNotMeet) {
  WholeFile one(file_, "--output");
  WholeFile two(file_, "--output");
  one.Stream() << "one";
  two.Stream() << "two";
  one.Finish();
  two.Finish();
  EXPECT_EQ(ReadFile(file_), "two");
  EXPECT_EQ(FilesThere(), 1U);
}

TEST_F(WholeFileTest, AFolderThatIsMissingIsToldByTheNameThatWasGiven) {
  try {
    const WholeFile file(folder_.Path() / "missing" / "zt.prom", "--output");
    ADD_FAILURE();
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.ExitCode(), kExitWrongUsage);
    EXPECT_THAT(failure.what(), AllOf(HasSubstr("--output "), HasSubstr("zt.prom: the file cannot be written: "),
                                      Not(HasSubstr("partial"))));
  }
}

TEST_F(WholeFileTest, AFolderInItsPlaceIsWrongUsage) {
  fs::create_directory(file_);
  EXPECT_THROW(WholeFile(file_, "--output"), Failure);
  EXPECT_EQ(FilesThere(), 1U);
}

}  // namespace
}  // namespace zt::telemetry::host
