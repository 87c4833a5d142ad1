#include <functional>

#include "tests/disk/disk_fixture.h"

// Somebody exchanges or cuts the file itself, which Windows lets nobody do while it is open.
namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::IsSubsetOf;
using tests::FileCall;
using tests::SampleStore;

class ExchangedFileTest : public DiskTest {
 protected:
  ExchangedFileTest() { MakeDatabase(kKeepings[0]); }

  // Runs a cycle for each of its calls, during which `change` is done to the file.
  void AtEachCall(const std::function<void()>& change, const std::vector<std::string>& may_be_sent) {
    int calls = 1;
    for (int number = 1; number <= calls; ++number) {
      SCOPED_TRACE("call " + std::to_string(number));
      PutBack();
      {
        const tests::FileCalls files([&](const FileCall& call) {
          if (call.number == number) change();
          return SQLITE_OK;
        });
        Cycle();
        calls = files.Count();
        EXPECT_EQ(files.OpenFiles(), 0);
      }
      EXPECT_THAT(Texts(), IsSubsetOf(may_be_sent));
      PutBack();
      Cycle();
      EXPECT_EQ(Texts(), undisturbed_);
    }
    EXPECT_GT(calls, 50);
  }
};

TEST_F(ExchangedFileTest, AFileThatIsEmptiedCostsNoMoreThanItsSamples) {
  AtEachCall([&] { std::filesystem::resize_file(Path(File()), 0); }, undisturbed_);
}

TEST_F(ExchangedFileTest, AFileThatIsCutInTheMiddleCostsNoMoreThanItsSamples) {
  const auto half = std::filesystem::file_size(Path(File())) / 2;
  AtEachCall([&] { std::filesystem::resize_file(Path(File()), half); }, undisturbed_);
}

TEST_F(ExchangedFileTest, AFileThatIsDeletedCostsNoMoreThanItsSamples) {
  AtEachCall([&] { std::filesystem::remove(Path(File())); }, undisturbed_);
}

TEST_F(ExchangedFileTest, AFileThatIsReplacedByAnotherGivesHoursOfEither) {
  const std::string other = folder_.File("other.db");
  {
    auto store = SampleStore::WithTables(other);
    store.AddThermal("2026-03-07T20:00:30.000Z");
    store.AddThermal("2026-03-07T20:01:30.000Z");
  }
  const std::string others = Bytes(other);
  std::filesystem::copy_file(Path(other), Path(File()), std::filesystem::copy_options::overwrite_existing);
  Cycle();
  std::vector<std::string> either = undisturbed_;
  for (const std::string& text : Texts()) either.push_back(text);
  ASSERT_EQ(either.size(), undisturbed_.size() + 1);
  AtEachCall(
      [&] {
        std::ofstream(Path(other), std::ios::binary | std::ios::trunc) << others;
        std::filesystem::rename(Path(other), Path(File()));
      },
      either);
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
