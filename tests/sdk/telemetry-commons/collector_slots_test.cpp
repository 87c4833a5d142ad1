#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "scripted_collector.h"

// The host calls a module through its table of virtual operations, so the order of the slots is an interface. The tests
// call them as a host does that knows nothing but the order.
namespace zt::tests {
namespace {

using google::protobuf::Message;
using shared::plugin::IDynamicPluginModule;
using shared::plugin::IPluginModule;
using shared::plugin::PluginBufferAllocator;
using telemetry::common::Error;
using telemetry::common::TelemetryCollectorBase;
using ::testing::ElementsAre;

// The table as hosts know it, written down apart from the classes that make it. Each operation has a name of its own:
// compilers put overloads of one class in orders of their own.
class ModuleTable {
 public:
  virtual void Execute(const char* params, char* result) = 0;
  virtual ~ModuleTable() = default;
  virtual void ExecuteWithAllocator(const char* params, char*& result, const PluginBufferAllocator& allocator) = 0;
  virtual Error Finalize(const Error& outcome) = 0;
  virtual void GetDatabases(std::vector<std::shared_ptr<Message>>& messages, std::vector<std::string>& databases) = 0;
  virtual Error ReadSource() = 0;
};

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
  // The object by its table alone.
  ModuleTable* Table() { return reinterpret_cast<ModuleTable*>(object_); }

  void TearDown() override {
    if (!deleted_) delete object_;
  }

  std::vector<std::string> notes_;
  NotingCollector* object_ = new NotingCollector(notes_);
  bool deleted_ = false;
};

TEST_F(CollectorSlotsTest, TheFirstOperationIsExecute) {
  char result[] = "buffer";
  Table()->Execute("params", result);
  EXPECT_THAT(notes_, ElementsAre("Execute params buffer"));
}

TEST_F(CollectorSlotsTest, TheSecondOperationIsTheDestructor) {
  deleted_ = true;
  delete Table();
  EXPECT_THAT(notes_, ElementsAre("destructor"));
}

TEST_F(CollectorSlotsTest, TheThirdOperationIsExecuteWithAnAllocator) {
  char* result = nullptr;
  HostAllocator allocator;
  allocator.without_memory = true;
  Table()->ExecuteWithAllocator("params", result, allocator);
  EXPECT_THAT(notes_, ElementsAre("Execute with allocator params"));
  EXPECT_THAT(allocator.sizes, ElementsAre(1U));
}

TEST_F(CollectorSlotsTest, TheFourthOperationIsFinalize) {
  const Error outcome(5, 1, "given", "", "");
  EXPECT_EQ(Table()->Finalize(outcome), Error(5, 4, "finalized", "", ""));
  EXPECT_THAT(notes_, ElementsAre("Finalize given"));
}

TEST_F(CollectorSlotsTest, TheFifthOperationIsGetDatabases) {
  std::vector<std::shared_ptr<Message>> messages(3);
  std::vector<std::string> databases = {"own.db"};
  Table()->GetDatabases(messages, databases);
  EXPECT_THAT(notes_, ElementsAre("GetDatabases 3 own.db"));
}

TEST_F(CollectorSlotsTest, TheSixthOperationIsReadSource) {
  EXPECT_EQ(Table()->ReadSource(), Error(5, 6, "read", "", ""));
  EXPECT_THAT(notes_, ElementsAre("ReadSource"));
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
