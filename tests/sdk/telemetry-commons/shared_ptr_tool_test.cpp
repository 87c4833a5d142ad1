#include "zt/telemetry/common/shared_ptr_tool.h"

#include <google/protobuf/timestamp.pb.h>
#include <gtest/gtest.h>

namespace zt::telemetry::common {
namespace {

using google::protobuf::Message;
using google::protobuf::Timestamp;

Timestamp SomeMoment() {
  Timestamp moment;
  moment.set_seconds(1'772'893'242);
  moment.set_nanos(7);
  return moment;
}

TEST(SharedPtrToolTest, TheCopyHasTheTypeAndTheContentOfTheMessage) {
  const Timestamp moment = SomeMoment();
  const std::shared_ptr<Message> copy = SharedPtrTool::Create(static_cast<const Message&>(moment));
  ASSERT_TRUE(copy);
  EXPECT_EQ(copy->GetTypeName(), "google.protobuf.Timestamp");
  const auto* copied = dynamic_cast<const Timestamp*>(copy.get());
  ASSERT_TRUE(copied);
  EXPECT_EQ(copied->seconds(), 1'772'893'242);
  EXPECT_EQ(copied->nanos(), 7);
}

TEST(SharedPtrToolTest, TheCopyIsIndependentOfTheMessage) {
  Timestamp moment = SomeMoment();
  const std::shared_ptr<Message> copy = SharedPtrTool::Create(moment);
  moment.set_seconds(0);
  EXPECT_EQ(dynamic_cast<const Timestamp&>(*copy).seconds(), 1'772'893'242);
}

TEST(SharedPtrToolTest, TheCopyOutlivesTheMessage) {
  std::shared_ptr<Message> copy;
  {
    const Timestamp moment = SomeMoment();
    copy = SharedPtrTool::Create(moment);
  }
  EXPECT_EQ(copy.use_count(), 1);
  EXPECT_EQ(dynamic_cast<const Timestamp&>(*copy).nanos(), 7);
}

}  // namespace
}  // namespace zt::telemetry::common
