#include <functional>
#include <system_error>

#include "disk_fixture.h"
#include "open_files.h"

// Somebody exchanges or cuts the file itself. Where the system refuses that, the cycle does not notice.
namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::IsSubsetOf;
using tests::FileCall;
using tests::SampleStore;

class ExchangedFileTest : public DiskTest {
 protected:
  ExchangedFileTest() { MakeDatabase(kKeepings[0]); }

  // What somebody tries, and what the system says of it.
  using Change = std::function<void(std::error_code& refused)>;

  // Runs a cycle for each of its calls, during which `change` is tried. `works_while_open`: also while the file is
  // open.
  void AtEachCall(const Change& change, bool works_while_open, const std::vector<std::string>& may_be_sent) {
    int calls = 1;
    int done = 0;
    for (int number = 1; number <= calls; ++number) {
      SCOPED_TRACE("call " + std::to_string(number));
      PutBack();
      std::error_code refused;
      bool open = false;
      {
        const tests::FileCalls files([&](const FileCall& call) {
          if (call.number == number) {
            open = call.open_files > 0;
            change(refused);
          }
          return SQLITE_OK;
        });
        Cycle();
        calls = files.Count();
        EXPECT_EQ(files.OpenFiles(), 0);
      }
      EXPECT_EQ(!refused, works_while_open || !open) << refused.message();
      done += refused ? 0 : 1;
      if (refused) {
        EXPECT_EQ(Texts(), undisturbed_);
      } else {
        EXPECT_THAT(Texts(), IsSubsetOf(may_be_sent));
      }
      PutBack();
      Cycle();
      EXPECT_EQ(Texts(), undisturbed_);
    }
    EXPECT_GT(calls, 50);
    EXPECT_GT(done, 0);
  }
};

TEST_F(ExchangedFileTest, AFileThatIsEmptiedCostsNoMoreThanItsSamples) {
  AtEachCall([&](auto& refused) { std::filesystem::resize_file(Path(File()), 0, refused); }, true, undisturbed_);
}

TEST_F(ExchangedFileTest, AFileThatIsCutInTheMiddleCostsNoMoreThanItsSamples) {
  const auto half = std::filesystem::file_size(Path(File())) / 2;
  AtEachCall([&](auto& refused) { std::filesystem::resize_file(Path(File()), half, refused); }, true, undisturbed_);
}

TEST_F(ExchangedFileTest, AFileThatIsDeletedCostsNoMoreThanItsSamples) {
  AtEachCall([&](auto& refused) { std::filesystem::remove(Path(File()), refused); }, tests::OpenFilesCanBeExchanged(),
             undisturbed_);
}

TEST_F(ExchangedFileTest, AFileThatIsReplacedByAnotherGivesHoursOfEither) {
  const std::string other = folder_.File("other.db");
  {
    auto store = SampleStore::WithTables(other);
    store.AddThermal("2026-03-07T20:00:30.000Z");
    store.AddThermal("2026-03-07T20:01:30.000Z");
  }
  const std::string others = Bytes(other);
  CopyOver(Path(other), Path(File()));
  Cycle();
  std::vector<std::string> either = undisturbed_;
  for (const std::string& text : Texts()) either.push_back(text);
  ASSERT_EQ(either.size(), undisturbed_.size() + 1);
  AtEachCall(
      [&](auto& refused) {
        std::ofstream(Path(other), std::ios::binary | std::ios::trunc) << others;
        std::filesystem::rename(Path(other), Path(File()), refused);
      },
      tests::OpenFilesCanBeExchanged(), either);
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
