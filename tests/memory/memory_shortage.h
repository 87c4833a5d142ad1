#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// Memory that runs out at a request of the test's choice. Requests are those of `operator new`, in all its forms and
/// from every library of the process, and those of SQLite's allocator. Those of the vendors' stand-ins are always
/// granted.
namespace zt::tests {

/// Has SQLite's requests counted too. To be called before SQLite is used, once.
void WatchMemoryOfSqlite();

/// Blocks that were handed out in this process and not given back.
std::int64_t LiveBlocks();

/// Counts requests while it lives, and refuses the chosen ones. One at a time, on one thread.
class MemoryShortage {
 public:
  enum class Extent { kOneRequest, kFromThereOn };

  /// Counts only.
  MemoryShortage();
  /// Request `number`, from 1 on, is refused, and with `kFromThereOn` all that follow.
  MemoryShortage(std::int64_t number, Extent extent);
  ~MemoryShortage();
  MemoryShortage(const MemoryShortage&) = delete;
  MemoryShortage& operator=(const MemoryShortage&) = delete;

  /// Requests so far, the refused ones too.
  static std::int64_t Requests();
  /// Requests that were refused.
  static std::int64_t Refused();
};

/// While it lives, memory is the host's own: requests are not counted, and not refused.
class MemoryOfTheHost {
 public:
  MemoryOfTheHost();
  ~MemoryOfTheHost();
  MemoryOfTheHost(const MemoryOfTheHost&) = delete;
  MemoryOfTheHost& operator=(const MemoryOfTheHost&) = delete;
};

/// While it lives, tells requests apart by the calls that lead to them: of those that look alike, one is enough to try.
class DistinctRequests {
 public:
  DistinctRequests();
  ~DistinctRequests();
  DistinctRequests(const DistinctRequests&) = delete;
  DistinctRequests& operator=(const DistinctRequests&) = delete;

  /// Whether request `number` is the first with its calls, and none of a stand-in of a vendor's library.
  static bool IsFirst(std::int64_t number);
  /// The number that stands for the calls that led to request `number`.
  static std::uint64_t CallsOf(std::int64_t number);
};

/// For those that hand memory out: `TakeRequest` before each block, false when there is none to be had.
bool TakeRequest();
void NoteBlockTaken();
void NoteBlockGivenBack();

/// A number that stands for the calls that lead here; `kCalledByStandIn` where one of them is in a stand-in of a
/// vendor's library: those take notes, where the library has no need of memory.
std::uint64_t CallersHash();
inline constexpr std::uint64_t kCalledByStandIn = 0;

}  // namespace zt::tests
