#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "store/sample_database.h"
#include "store/summary_query.h"
#include "support/sample_store_fixture.h"
#include "support/temporary_folder.h"

namespace zt::telemetry::collector::performancesamples {

/// A sample database in a folder of its own.
class StoreTest : public testing::Test {
 protected:
  static SummaryRowsBySource Query(const std::string& path, const std::string& query_text = kSummaryQuery,
                                   const StoreLimits& limits = {}) {
    SummaryRowsBySource rows;
    QuerySampleSummaries(path, query_text, &rows, limits);
    return rows;
  }

  /// The summary query on the tables themselves, however long it takes: a text that differs by a line end is not
  /// prepared for.
  static SummaryRowsBySource QueryPlainly(const std::string& path) {
    return Query(path, std::string(kSummaryQuery) + "\n", {.summary_work = std::chrono::hours(1)});
  }

  SummaryRowsBySource Query() const { return Query(path_); }

  /// A new database with both tables, empty.
  tests::SampleStore NewStore() const { return tests::SampleStore::WithTables(path_); }

  tests::TemporaryFolder folder_;
  const std::string path_ = folder_.File("ssm.db");
};

}  // namespace zt::telemetry::collector::performancesamples
