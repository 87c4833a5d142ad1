// Steps that a cycle comes to seldom, or only after another failure, while memory runs out.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "collector/logged_failure.h"
#include "collector/performance_samples.h"
#include "memory_shortage.h"
#include "messages/perf_messages.h"
#include "plugin/logger_export.h"
#include "store/sample_database.h"
#include "support/recording_log.h"
#include "support/recording_sink.h"
#include "support/sample_store_fixture.h"
#include "support/temporary_folder.h"

namespace zt::tests {
namespace {

namespace collector = telemetry::collector::performancesamples;
using Extent = MemoryShortage::Extent;

class SingleStepsTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { WatchMemoryOfSqlite(); }

  // Refuses one request after the other, and all from each on, until the step needs none of them.
  static void Sweep(const std::function<void()>& step, const std::function<void(bool was_refused)>& expect) {
    constexpr std::int64_t kMostRequests = 5'000;
    for (const Extent extent : {Extent::kOneRequest, Extent::kFromThereOn}) {
      bool was_refused = true;
      for (std::int64_t number = 1; was_refused; ++number) {
        SCOPED_TRACE(number);
        ASSERT_LE(number, kMostRequests);
        {
          const MemoryShortage shortage(number, extent);
          EXPECT_NO_THROW(step());
          was_refused = MemoryShortage::Refused() > 0;
        }
        expect(was_refused);
      }
    }
  }

  TemporaryFolder folder_;
};

TEST_F(SingleStepsTest, AFailureThatCannotBeLoggedIsNone) {
  RecordingLog log;
  ztSharedInitializeLogger(plog::info, &log);
  try {
    throw std::string("a text that takes more room than a text has of its own");
  } catch (...) {
    Sweep([] { collector::LogFailure("Function"); },
          [&](bool was_refused) {
            if (!was_refused) {
              EXPECT_EQ(log.lines.size(), 1U);
            }
            log.lines.clear();
          });
  }
}

TEST_F(SingleStepsTest, AQueryThatIsNotTheCollectorsGivesWholeRowsOrFewer) {
  const std::string file = folder_.File("ssm.db");
  auto store = SampleStore::WithTables(file);
  for (const char* time : {"2026-03-07T10:00:30.000Z", "2026-03-07T10:01:30.000Z"}) store.AddThermal(time);
  const std::string query =
      "SELECT 'samples' AS source, date_time || ' is when it was taken' AS taken FROM ThermalData";
  collector::SummaryRowsBySource all;
  collector::QuerySampleSummaries(file, query, &all);
  ASSERT_EQ(all["samples"].size(), 2U);

  collector::SummaryRowsBySource rows;
  Sweep([&] { collector::QuerySampleSummaries(file, query, &rows); },
        [&](bool was_refused) {
          if (!was_refused) {
            EXPECT_EQ(rows, all);
          }
          EXPECT_THAT(rows["samples"], testing::IsSubsetOf(all["samples"]));
          rows.clear();
        });
}

TEST_F(SingleStepsTest, AnUploadRecordThatIsMissingStaysSoWithoutMemory) {
  telemetry::common::RegisterTelemetrySink(std::make_shared<RecordingSink>());
  collector::PerformanceSamples samples;
  collector::PerfMessages::Init(&samples, 50);
  collector::PerfMessages::amd_pmf_.reset();
  collector::PerfMessages::static_cdm_.reset();
  {
    const MemoryShortage shortage(1, Extent::kFromThereOn);
    EXPECT_NO_THROW(collector::PerfMessages::ProcessStorageAndUpload());
    EXPECT_GT(MemoryShortage::Refused(), 0);
  }
  EXPECT_EQ(collector::PerfMessages::static_cdm_, nullptr);
  collector::PerfMessages::ProcessStorageAndUpload();
  EXPECT_NE(collector::PerfMessages::static_cdm_, nullptr);
}

}  // namespace
}  // namespace zt::tests
