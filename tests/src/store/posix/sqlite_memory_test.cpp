// SQLite is refused memory once, at each of its requests in turn.
#include <string>

#include "store/linear_summary.h"
#include "tests/src/store/store_test.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

sqlite3_mem_methods sqlite_memory;
int memory_requests = 0;
int refused_request = 0;

bool IsGranted() {
  return ++memory_requests != refused_request;
}

void* Take(int bytes) {
  return IsGranted() ? sqlite_memory.xMalloc(bytes) : nullptr;
}

void* Resize(void* block, int bytes) {
  return IsGranted() ? sqlite_memory.xRealloc(block, bytes) : nullptr;
}

// Has each request counted, the small ones too, which connections otherwise take from a stock of their own.
void WatchMemory() {
  ASSERT_EQ(sqlite3_shutdown(), SQLITE_OK);
  ASSERT_EQ(sqlite3_config(SQLITE_CONFIG_LOOKASIDE, 0, 0), SQLITE_OK);
  ASSERT_EQ(sqlite3_config(SQLITE_CONFIG_GETMALLOC, &sqlite_memory), SQLITE_OK);
  static sqlite3_mem_methods watched = sqlite_memory;
  watched.xMalloc = &Take;
  watched.xRealloc = &Resize;
  ASSERT_EQ(sqlite3_config(SQLITE_CONFIG_MALLOC, &watched), SQLITE_OK);
}

/// Has this request refused, counted from here on.
class RefusedRequest {
 public:
  explicit RefusedRequest(int number) {
    memory_requests = 0;
    refused_request = number;
  }
  ~RefusedRequest() { refused_request = 0; }
  RefusedRequest(const RefusedRequest&) = delete;
  RefusedRequest& operator=(const RefusedRequest&) = delete;
};

/// How the database keeps its texts, which decides where SQLite has to convert them.
class SqliteMemoryTest : public StoreTest, public testing::WithParamInterface<const char*> {
 protected:
  SqliteMemoryTest() {
    WatchMemory();
    tests::SampleStore store(path_);
    store.Execute(std::string("PRAGMA encoding='") + GetParam() + "'");
    store.CreateTables();
    // The second is a time that SQLite's own function has to be asked about.
    for (const char* time : {"2026-03-07T12:00:30", "2026-03-07T24:30:00"}) {
      store.AddThermal(time);
      store.AddNetwork(time);
    }
  }
};

// Without its rows the samples are left to the query over the tables, on a connection of its own.
TEST_P(SqliteMemoryTest, TheLinearSummaryGivesAllItsRowsOrNone) {
  const SummaryRowsBySource undisturbed = Query();
  ASSERT_EQ(undisturbed.size(), 2U);
  int request = 0;
  int given_up = 0;
  do {
    const tests::SampleStore connection(path_);
    const RefusedRequest refusal(++request);
    SummaryRowsBySource rows;
    const bool summarised = LinearSummary(connection.Handle()).Run(&rows);
    ASSERT_TRUE(!summarised || rows == undisturbed) << "request " << request;
    given_up += summarised ? 0 : 1;
  } while (memory_requests >= request);
  EXPECT_GT(given_up, 1000);
}

INSTANTIATE_TEST_SUITE_P(Encodings, SqliteMemoryTest, testing::Values("UTF-8", "UTF-16le"), [](const auto& encoding) {
  return std::string(encoding.param) == "UTF-8" ? "Utf8" : "Utf16";
});

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
