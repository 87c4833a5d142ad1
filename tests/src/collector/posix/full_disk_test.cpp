#include <sys/resource.h>

#include <csignal>

#include "support/collector_fixture.h"
#include "support/sample_store_fixture.h"

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

class FullDiskTest : public CollectorTest {};

// More distinct profiles than the memory holds that a summary may take: the rest goes to a file.
TEST_F(FullDiskTest, SamplesThatCannotBeSummarisedStayForTheNextCycle) {
  constexpr rlim_t kRoomLeft = 256 * 1024;
  auto store = tests::SampleStore::WithTables(folder_.File("ssm.db"));
  store.AddThermal("2026-03-07T10:00:30.000Z");
  store.AddNetwork("2026-03-07T10:00:30.000Z");
  store.Execute(
      "CREATE TEMP TABLE sample AS SELECT * FROM NetworkData; UPDATE sample SET id = NULL;"
      "WITH RECURSIVE n(i) AS (SELECT 2 UNION ALL SELECT i + 1 FROM n WHERE i < 9000) "
      "INSERT INTO NetworkData SELECT sample.* FROM sample, n;"
      "UPDATE NetworkData SET profile_name_hash = CAST(printf('%0300d', id) AS BLOB)");
  {
    const FileSizeLimit full(kRoomLeft);
    EXPECT_THAT(Execute(50), HasSubstr(R"("code":0)"));
  }
  ASSERT_THAT(sink_->sent, SizeIs(1)) << "the live record alone";
  EXPECT_TRUE(sink_->sent[0].hw_info().has_system_memory_info());
  EXPECT_EQ(store.Count("ThermalData") + store.Count("NetworkData"), 9001);

  Execute(50);
  ASSERT_THAT(sink_->sent, SizeIs(4));
  EXPECT_EQ(sink_->sent[1].sample_points_actual(), 1U);
  EXPECT_EQ(sink_->sent[2].sample_points_actual(), 9000U);
  EXPECT_EQ(store.Count("ThermalData") + store.Count("NetworkData"), 0);
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
