#include "memory_shortage.h"

#include <sqlite3.h>

#include <algorithm>
#include <limits>
#include <stdexcept>

namespace zt::tests {
namespace {

constexpr std::int64_t kNever = std::numeric_limits<std::int64_t>::max();
constexpr std::size_t kMostRequests = 200'000;

// Nothing in here asks for memory itself.
struct Bookkeeping {
  bool counting = false;
  int host_depth = 0;
  std::int64_t requests = 0;
  std::int64_t refused = 0;
  std::int64_t first_refused = kNever;
  std::int64_t last_refused = kNever;
  std::int64_t live = 0;
  bool telling_apart = false;
};

Bookkeeping books;
std::array<std::uint64_t, kMostRequests> callers;

sqlite3_mem_methods sqlite_memory;

void* TakeForSqlite(int bytes) {
  void* const block = TakeRequest() ? sqlite_memory.xMalloc(bytes) : nullptr;
  if (block != nullptr) NoteBlockTaken();
  return block;
}

void GiveBackForSqlite(void* block) {
  if (block != nullptr) NoteBlockGivenBack();
  sqlite_memory.xFree(block);
}

void* ResizeForSqlite(void* block, int bytes) {
  return TakeRequest() ? sqlite_memory.xRealloc(block, bytes) : nullptr;
}

}  // namespace

void WatchMemoryOfSqlite() {
  if (sqlite3_config(SQLITE_CONFIG_GETMALLOC, &sqlite_memory) != SQLITE_OK) throw std::logic_error("SQLite is in use");
  // Asked first, so that the methods are those that are in force.
  sqlite3_mem_methods watched = sqlite_memory;
  watched.xMalloc = &TakeForSqlite;
  watched.xFree = &GiveBackForSqlite;
  watched.xRealloc = &ResizeForSqlite;
  if (sqlite3_config(SQLITE_CONFIG_MALLOC, &watched) != SQLITE_OK) throw std::logic_error("SQLite is in use");
}

std::int64_t LiveBlocks() {
  return books.live;
}

MemoryShortage::MemoryShortage() {
  books.requests = 0;
  books.refused = 0;
  books.first_refused = kNever;
  books.last_refused = kNever;
  books.counting = true;
}

MemoryShortage::MemoryShortage(std::int64_t number, Extent extent) : MemoryShortage() {
  books.first_refused = number;
  books.last_refused = extent == Extent::kOneRequest ? number : kNever;
}

MemoryShortage::~MemoryShortage() {
  books.counting = false;
}

std::int64_t MemoryShortage::Requests() {
  return books.requests;
}

std::int64_t MemoryShortage::Refused() {
  return books.refused;
}

MemoryOfTheHost::MemoryOfTheHost() {
  ++books.host_depth;
}

MemoryOfTheHost::~MemoryOfTheHost() {
  --books.host_depth;
}

DistinctRequests::DistinctRequests() {
  books.telling_apart = true;
}

DistinctRequests::~DistinctRequests() {
  books.telling_apart = false;
}

bool DistinctRequests::IsFirst(std::int64_t number) {
  const auto place = callers.begin() + number - 1;
  if (*place == kCalledByStandIn) return false;
  return std::find(callers.begin(), place, *place) == place;
}

std::uint64_t DistinctRequests::CallsOf(std::int64_t number) {
  return callers.at(static_cast<std::size_t>(number - 1));
}

bool TakeRequest() {
  if (!books.counting || books.host_depth > 0) return true;
  ++books.requests;
  if (books.telling_apart && books.requests <= static_cast<std::int64_t>(callers.size())) {
    callers[static_cast<std::size_t>(books.requests - 1)] = CallersHash();
  }
  if (books.requests < books.first_refused || books.requests > books.last_refused) return true;
  if (CallersHash() == kCalledByStandIn) return true;
  ++books.refused;
  return false;
}

void NoteBlockTaken() {
  ++books.live;
}

void NoteBlockGivenBack() {
  --books.live;
}

}  // namespace zt::tests
