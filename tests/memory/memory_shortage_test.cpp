// What the other tests here rely on: whoever asks for memory is counted, and can be refused.
#include "memory_shortage.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <functional>
#include <locale>
#include <memory>
#include <new>
#include <sstream>
#include <string>

#include "performance_samples_upload.pb.h"
#include "simulation/machine.h"
#include "simulation/wql.h"

namespace zt::tests {
namespace {

using Extent = MemoryShortage::Extent;

struct alignas(64) Aligned {
  char bytes[64];
};

class MemoryShortageTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { WatchMemoryOfSqlite(); }

  // That the blocks that `body` takes are all given back, and how many requests it has made.
  static std::int64_t RequestsOf(const std::function<void()>& body) {
    const std::int64_t before = LiveBlocks();
    {
      const MemoryShortage counted;
      body();
    }
    EXPECT_EQ(LiveBlocks(), before);
    return MemoryShortage::Requests();
  }

  // That `body` meets the refusal of its first request.
  static bool IsRefused(const std::function<void()>& body) {
    const MemoryShortage shortage(1, Extent::kFromThereOn);
    try {
      body();
      return false;
    } catch (const std::bad_alloc&) {
      return MemoryShortage::Refused() == 1;
    }
  }
};

TEST_F(MemoryShortageTest, EachFormOfOperatorNewIsCountedAndItsBlockGivenBack) {
  EXPECT_EQ(RequestsOf([] { ::operator delete(::operator new(10)); }), 1);
  EXPECT_EQ(RequestsOf([] { ::operator delete (::operator new(10), std::size_t{10}); }), 1);
  EXPECT_EQ(RequestsOf([] { ::operator delete[](::operator new[](10)); }), 1);
  EXPECT_EQ(RequestsOf([] { ::operator delete[](::operator new[](10), std::size_t{10}); }), 1);
  EXPECT_EQ(RequestsOf([] { ::operator delete(::operator new(10, std::nothrow), std::nothrow); }), 1);
  EXPECT_EQ(RequestsOf([] { ::operator delete[](::operator new[](10, std::nothrow), std::nothrow); }), 1);
}

TEST_F(MemoryShortageTest, SoIsEachOneOfAlignedMemory) {
  constexpr std::align_val_t kAt{alignof(Aligned)};
  EXPECT_EQ(RequestsOf([] { delete new Aligned; }), 1);
  EXPECT_EQ(RequestsOf([] { delete[] new Aligned[2]; }), 1);
  EXPECT_EQ(RequestsOf([] { ::operator delete(::operator new(10, kAt), kAt); }), 1);
  EXPECT_EQ(RequestsOf([] { ::operator delete[](::operator new[](10, kAt), kAt); }), 1);
  EXPECT_EQ(RequestsOf([] { ::operator delete(::operator new(10, kAt, std::nothrow), kAt, std::nothrow); }), 1);
  EXPECT_EQ(RequestsOf([] { ::operator delete[](::operator new[](10, kAt, std::nothrow), kAt, std::nothrow); }), 1);
}

TEST_F(MemoryShortageTest, OneThatMayNotThrowIsRefusedWithNothing) {
  const MemoryShortage shortage(1, Extent::kFromThereOn);
  EXPECT_EQ(::operator new(10, std::nothrow), nullptr);
  EXPECT_EQ(::operator new (10, std::align_val_t{64}, std::nothrow), nullptr);
  EXPECT_EQ(MemoryShortage::Refused(), 2);
}

// The library's own code asks here, not what the compiler has put into this program.
TEST_F(MemoryShortageTest, TheStandardLibrarysRequestsAreRefused) {
  EXPECT_TRUE(IsRefused([] { const std::locale named(std::locale::classic(), "C", std::locale::numeric); }));
}

TEST_F(MemoryShortageTest, TheRequestsOfProtobufsLibraryAreRefused) {
  telemetry::contract::upload::log::PcLogPerformanceSamplesAsCDM record;
  record.mutable_hw_info()->add_cpus_info();
  const auto copy = [&] {
    const std::unique_ptr<google::protobuf::Message> other(record.New());
    other->CopyFrom(record);
  };
  copy();  // what is made once for the process
  EXPECT_GE(RequestsOf(copy), 3);
  EXPECT_TRUE(IsRefused(copy));
}

TEST_F(MemoryShortageTest, ThoseOfSqliteAreRefused) {
  const MemoryShortage shortage(1, Extent::kFromThereOn);
  EXPECT_EQ(sqlite3_malloc(10), nullptr);
  EXPECT_EQ(MemoryShortage::Refused(), 1);
}

// The simulated machine answers in the middle of a cycle: what is refused it ends as it does for anybody.
TEST_F(MemoryShortageTest, AQueryOfTheSimulatedMachineEndsWithBadAllocAtEachRefusedRequest) {
  simulation::Machine machine;
  machine.wmi.classes["Win32_Thing"] = {{{"Name", std::string(40, 'n')}, {"Number", 1}}};
  simulation::UseMachine(machine);
  std::int64_t refused = 0;
  for (bool any = true; any; refused += any ? 1 : 0) {
    const MemoryShortage shortage(refused + 1, Extent::kOneRequest);
    try {
      simulation::RunQuery("SELECT * FROM Win32_Thing");
      any = false;
    } catch (const std::bad_alloc&) {
      EXPECT_EQ(MemoryShortage::Refused(), 1);
    }
  }
  EXPECT_GT(refused, 3);
}

TEST_F(MemoryShortageTest, ARequestInsideTheHostsMemoryIsGranted) {
  const MemoryShortage shortage(1, Extent::kFromThereOn);
  const MemoryOfTheHost host;
  EXPECT_NO_THROW(::operator delete(::operator new(10)));
  EXPECT_EQ(MemoryShortage::Requests(), 0);
}

}  // namespace
}  // namespace zt::tests
