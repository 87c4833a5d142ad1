#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

#include "scripted_collector.h"

// The host calls a module through its table of virtual operations, so the order of the slots is an interface. The tests
// call them as a host does that knows nothing but the numbers.
namespace zt::tests {
namespace {

using google::protobuf::Message;
using shared::plugin::IDynamicPluginModule;
using shared::plugin::IPluginModule;
using shared::plugin::PluginBufferAllocator;
using telemetry::common::Error;
using telemetry::common::TelemetryCollectorBase;
using ::testing::ElementsAre;

// A virtual destructor has two adjacent slots in the C++ interface of GCC and clang (destroying; destroying and
// freeing), one in that of MSVC.
#if defined(__GXX_ABI_VERSION)
constexpr std::size_t kDestructorSlots = 2;
#else
constexpr std::size_t kDestructorSlots = 1;
#endif
constexpr std::size_t kExecuteSlot = 0;
constexpr std::size_t kDeletingDestructorSlot = kDestructorSlots;
constexpr std::size_t kExecuteWithAllocatorSlot = kDestructorSlots + 1;
constexpr std::size_t kFinalizeSlot = kDestructorSlots + 2;
constexpr std::size_t kGetDatabasesSlot = kDestructorSlots + 3;
constexpr std::size_t kReadSourceSlot = kDestructorSlots + 4;

// Notes the operation that was reached, and what it was given.
class NotingCollector : public TelemetryCollectorBase {
 public:
  explicit NotingCollector(std::vector<std::string>& notes) : notes_(notes) {}
  ~NotingCollector() override { notes_.push_back("destructor"); }

  void Execute(const char* params, char* result) override {
    notes_.push_back(std::string("Execute ") + params + " " + result);
  }
  void Execute(const char* params, char*& result, const PluginBufferAllocator& allocator) override {
    result = allocator.Allocate(1);
    notes_.push_back(std::string("Execute with allocator ") + params);
  }

 protected:
  Error Finalize(const Error& outcome) override {
    notes_.push_back("Finalize " + outcome.description);
    return Error(5, 4, "finalized", "", "");
  }
  void GetDatabases(std::vector<std::shared_ptr<Message>>& messages, std::vector<std::string>& databases) override {
    notes_.push_back("GetDatabases " + std::to_string(messages.size()) + " " + databases.front());
  }
  Error ReadSource() override {
    notes_.push_back("ReadSource");
    return Error(5, 6, "read", "", "");
  }

 private:
  std::vector<std::string>& notes_;
};

class CollectorSlotsTest : public ::testing::Test {
 protected:
  // The operation in a slot of the object's table, which the object's first pointer leads to.
  template <typename Operation>
  Operation* Slot(std::size_t number) {
    void** table = nullptr;
    std::memcpy(&table, object_, sizeof(table));
    Operation* operation = nullptr;
    std::memcpy(&operation, table + number, sizeof(operation));
    return operation;
  }

  void TearDown() override {
    if (!deleted_) delete object_;
  }

  std::vector<std::string> notes_;
  NotingCollector* object_ = new NotingCollector(notes_);
  bool deleted_ = false;
};

TEST_F(CollectorSlotsTest, TheFirstSlotIsExecute) {
  char result[] = "buffer";
  Slot<void(void*, const char*, char*)>(kExecuteSlot)(object_, "params", result);
  EXPECT_THAT(notes_, ElementsAre("Execute params buffer"));
}

#if defined(__GXX_ABI_VERSION)
TEST_F(CollectorSlotsTest, TheNextSlotsAreTheDestructor) {
  deleted_ = true;
  Slot<void(void*)>(kDeletingDestructorSlot)(object_);
  EXPECT_THAT(notes_, ElementsAre("destructor"));
}
#endif

TEST_F(CollectorSlotsTest, TheSlotAfterTheDestructorIsExecuteWithAnAllocator) {
  char* result = nullptr;
  HostAllocator allocator;
  allocator.without_memory = true;
  const PluginBufferAllocator& base = allocator;
  Slot<void(void*, const char*, char*&, const PluginBufferAllocator&)>(kExecuteWithAllocatorSlot)(object_, "params",
                                                                                                  result, base);
  EXPECT_THAT(notes_, ElementsAre("Execute with allocator params"));
  EXPECT_THAT(allocator.sizes, ElementsAre(1U));
}

TEST_F(CollectorSlotsTest, TheFourthOperationIsFinalize) {
  const Error outcome(5, 1, "given", "", "");
  const Error returned = Slot<Error(void*, const Error&)>(kFinalizeSlot)(object_, outcome);
  EXPECT_THAT(notes_, ElementsAre("Finalize given"));
  EXPECT_EQ(returned, Error(5, 4, "finalized", "", ""));
}

TEST_F(CollectorSlotsTest, TheFifthOperationIsGetDatabases) {
  std::vector<std::shared_ptr<Message>> messages(3);
  std::vector<std::string> databases = {"own.db"};
  Slot<void(void*, std::vector<std::shared_ptr<Message>>&, std::vector<std::string>&)>(kGetDatabasesSlot)(
      object_, messages, databases);
  EXPECT_THAT(notes_, ElementsAre("GetDatabases 3 own.db"));
}

TEST_F(CollectorSlotsTest, TheSixthOperationIsReadSource) {
  const Error returned = Slot<Error(void*)>(kReadSourceSlot)(object_);
  EXPECT_THAT(notes_, ElementsAre("ReadSource"));
  EXPECT_EQ(returned, Error(5, 6, "read", "", ""));
}

TEST_F(CollectorSlotsTest, AModuleIsReachedThroughEachOfItsBases) {
  IDynamicPluginModule* dynamic_module = object_;
  TelemetryCollectorBaseClass* base_class = object_;
  IPluginModule* module = dynamic_module;
  EXPECT_EQ(static_cast<void*>(module), static_cast<void*>(object_));
  EXPECT_EQ(static_cast<void*>(base_class), static_cast<void*>(object_));
  char result[] = "buffer";
  module->Execute("params", result);
  EXPECT_THAT(notes_, ElementsAre("Execute params buffer"));
}

TEST_F(CollectorSlotsTest, AModuleIsDeletedThroughItsFirstBase) {
  deleted_ = true;
  IPluginModule* module = object_;
  delete module;
  EXPECT_THAT(notes_, ElementsAre("destructor"));
}

}  // namespace
}  // namespace zt::tests
