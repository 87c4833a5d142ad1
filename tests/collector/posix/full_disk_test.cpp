#include <sys/resource.h>

#include <csignal>

#include "collector_fixture.h"
#include "store/sample_store_fixture.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::HasSubstr;
using testing::SizeIs;

// While it lives, no file of the process can grow beyond `bytes`: as on a disk that is full.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) {
    std::signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limited = {bytes, before_.rlim_max};
    EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limited), 0);
  }
  ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &before_); }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit before_{};
};

using FullDisk = CollectorTest;

TEST_F(FullDisk, HoursAreSummarisedWithoutRoomForCopies) {
  constexpr int kSamplesAnHour = 10000;
  constexpr rlim_t kRoomLeft = 256 * 1024;
  auto store = tests::SampleStore::WithTables(folder_.File("ssm.db"));
  store.Execute("BEGIN");
  for (int i = 0; i < kSamplesAnHour; ++i) {
    store.AddThermal("2026-03-07T10:00:30.000Z");
    store.AddNetwork("2026-03-07T10:00:30.000Z");
  }
  store.Execute("COMMIT");
  {
    const FileSizeLimit full(kRoomLeft);
    EXPECT_THAT(Execute(50), HasSubstr(R"("code":0)"));
  }
  ASSERT_THAT(sink_->sent, SizeIs(3));
  EXPECT_EQ(sink_->sent[0].sample_points_actual(), static_cast<unsigned>(kSamplesAnHour));
  EXPECT_EQ(sink_->sent[1].sample_points_actual(), static_cast<unsigned>(kSamplesAnHour));
  EXPECT_TRUE(sink_->sent[2].hw_info().has_system_memory_info());
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
