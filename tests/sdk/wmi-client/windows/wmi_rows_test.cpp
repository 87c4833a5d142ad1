#include "sdk/wmi-client/windows/wmi_rows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "base/time_limit.h"
#include "support/status_codes.h"
#include "support/windows/counted_connection.h"

// The rows of a WMI that takes its time.
namespace zt::tests {
namespace {

using shared::wmi::WmiRows;
using std::chrono::milliseconds;

constexpr wchar_t kQuery[] = L"SELECT Name FROM Win32_Any";

class WmiRowsTest : public ::testing::Test {
 protected:
  // So many queries that each take `time`, and end without a row.
  void AddSlowQueries(int count, milliseconds time) {
    for (int i = 0; i < count; ++i) {
      wmi_.services->query_results.push_back(MakeFake<FakeEnumerator>());
      wmi_.services->query_results.back()->answers = {
          {WBEM_S_FALSE, {}, [time] { std::this_thread::sleep_for(time); }}};
    }
  }

  CountedConnection wmi_;
};

TEST_F(WmiRowsTest, QueriesAreAskedAsLongAsTheyHaveTimeTogether) {
  AddSlowQueries(50, milliseconds(40));
  WmiRows rows(L"any", wmi_.AsConnect(), milliseconds(100));
  HRESULT status = S_OK;
  int asked = 0;
  for (; asked < 50 && status == S_OK; ++asked) status = rows.Query(kQuery);
  EXPECT_EQ(status, base::kTimedOut);
  EXPECT_LE(wmi_.services->queries.size(), 3U);
  EXPECT_GE(wmi_.services->queries.size(), 1U);
}

TEST_F(WmiRowsTest, WithoutTimeAQueryEndsUnasked) {
  AddSlowQueries(1, milliseconds(0));
  WmiRows rows(L"any", wmi_.AsConnect(), milliseconds(0));
  EXPECT_EQ(rows.Query(kQuery), base::kTimedOut);
  EXPECT_TRUE(wmi_.services->queries.empty());
}

TEST_F(WmiRowsTest, OneQueryMayNotTakeMoreThanIsLeftForAll) {
  AddSlowQueries(1, milliseconds(0));
  WmiRows rows(L"any", wmi_.AsConnect(), milliseconds(700));
  EXPECT_EQ(rows.Query(kQuery), S_OK);
  EXPECT_LE(wmi_.services->query_results[0]->calls.front().timeout_ms, 700);
}

TEST_F(WmiRowsTest, TheTimeBetweenTheQueriesIsFree) {
  AddSlowQueries(2, milliseconds(0));
  WmiRows rows(L"any", wmi_.AsConnect(), milliseconds(50));
  EXPECT_EQ(rows.Query(kQuery), S_OK);
  std::this_thread::sleep_for(milliseconds(80));
  EXPECT_EQ(rows.Query(kQuery), S_OK);
}

TEST_F(WmiRowsTest, AFailureToConnectIsTheStatusThoughThereIsNoTime) {
  wmi_.status = tests::kServerUnavailable;
  WmiRows rows(L"any", wmi_.AsConnect(), milliseconds(0));
  EXPECT_EQ(rows.Query(kQuery), tests::kServerUnavailable);
}

}  // namespace
}  // namespace zt::tests
