#include "simulation/profile.h"
#include "support/collector_fixture.h"
#include "zt/shared/wmi/wmi_client.h"

// A host's thread that waits for WMI runs its timers meanwhile, and one of them calls the collector again.
namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class NestedCycleTest : public CollectorTest {
 protected:
  ~NestedCycleTest() override { shared::wmi::ObserveQueries({}); }

  static void UseLaptop() { simulation::UseMachine(simulation::ReadShippedProfile("convertible-laptop")); }

  // From now on the host calls `collector` while each query runs.
  void CallDuringEachQuery(PerformanceSamples& collector, int event_type) {
    shared::wmi::ObserveQueries([this, &collector, event_type](const std::wstring&) {
      if (is_inside_) return;
      is_inside_ = true;
      inside_.push_back(Execute(collector, event_type));
      is_inside_ = false;
    });
  }

  std::vector<std::string> inside_;

 private:
  bool is_inside_ = false;
};

TEST_F(NestedCycleTest, ASecondCycleInsideTheFirstIsRefused) {
  UseLaptop();
  CallDuringEachQuery(collector_, 50);
  EXPECT_THAT(Execute(50), HasSubstr(R"("kind":0)"));
  EXPECT_THAT(inside_, SizeIs(simulation::RecordedQueries().size()));
  EXPECT_THAT(inside_, Each(HasSubstr("A collection is already running")));
  EXPECT_THAT(sink_->stored, SizeIs(1));
  EXPECT_THAT(sink_->sent, SizeIs(1));
}

TEST_F(NestedCycleTest, AnotherCollectorOfTheProcessIsRefusedToo) {
  UseLaptop();
  PerformanceSamples other;
  CallDuringEachQuery(other, 20);
  Execute(50);
  EXPECT_THAT(inside_, Each(HasSubstr("A collection is already running")));
  EXPECT_THAT(sink_->sent, SizeIs(1));
  EXPECT_EQ(PerfMessages::perf_handle_, &collector_);
}

TEST_F(NestedCycleTest, TheExampleIsRefusedToo) {
  UseLaptop();
  CallDuringEachQuery(collector_, 51);
  Execute(50);
  EXPECT_THAT(inside_, Each(HasSubstr("A collection is already running")));
  EXPECT_THAT(sink_->texts, IsEmpty());
}

TEST_F(NestedCycleTest, NothingOfTheFirstIsTouched) {
  // The first record of a process alone tells its sample points.
  UseLaptop();
  Execute(50);
  UseLaptop();
  Execute(50);
  log_.lines.clear();
  UseLaptop();
  CallDuringEachQuery(collector_, 51);
  Execute(50);
  ASSERT_THAT(sink_->sent, SizeIs(3));
  EXPECT_EQ(sink_->sent[2].DebugString(), sink_->sent[1].DebugString());
  EXPECT_EQ(sink_->stored[2].DebugString(), sink_->stored[1].DebugString());
  EXPECT_THAT(log_.Messages(), ElementsAre(HasSubstr("Started "), HasSubstr("Finished ")));
}

TEST_F(NestedCycleTest, TheNextCallIsServed) {
  UseLaptop();
  CallDuringEachQuery(collector_, 50);
  Execute(50);
  shared::wmi::ObserveQueries({});
  EXPECT_THAT(Execute(50), HasSubstr(R"("kind":0)"));
  EXPECT_THAT(sink_->sent, SizeIs(2));
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
