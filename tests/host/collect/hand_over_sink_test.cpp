#include "host/collect/hand_over_sink.h"

#include <gmock/gmock.h>

#include <sstream>

#include "device_performance_storage.pb.h"
#include "host/views/json_lines.h"
#include "tests/host/program_run.h"

namespace zt::telemetry::host {
namespace {

using contract::storage::device_performance::AmdPmfSamples;

TEST(HandOverSinkTest, EachHandOverIsShownAndCounted) {
  std::ostringstream out;
  JsonLines view(out);
  HandOverSink sink(view);
  EXPECT_FALSE(sink.Store(AmdPmfSamples()).Failed());
  EXPECT_FALSE(sink.Send(AmdPmfSamples()).Failed());
  EXPECT_FALSE(sink.Send("text").Failed());
  EXPECT_EQ(sink.Count(), 3U);
  EXPECT_FALSE(sink.FirstFailure().Failed());
  const auto lines = JsonLinesOf(out.str());
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_EQ(lines[0]["handover"], "store");
  EXPECT_EQ(lines[1]["handover"], "send");
  EXPECT_EQ(lines[2]["text"], "text");
}

TEST(HandOverSinkTest, AHandOverThatCannotBeWrittenFailsAndIsRemembered) {
  std::ostringstream out;
  JsonLines view(out);
  HandOverSink sink(view);
  out.setstate(std::ios::badbit);
  EXPECT_TRUE(sink.Store(AmdPmfSamples()).Failed());
  out.clear();
  EXPECT_FALSE(sink.Send(AmdPmfSamples()).Failed());
  EXPECT_EQ(sink.FirstFailure().description, "the output cannot be written");
}

TEST(HandOverSinkTest, TheRegistrationEndsWithItsLife) {
  std::ostringstream out;
  JsonLines view(out);
  const auto sink = std::make_shared<HandOverSink>(view);
  {
    const SinkRegistration registration(sink);
    EXPECT_EQ(common::RegisteredTelemetrySink(), sink);
  }
  EXPECT_EQ(common::RegisteredTelemetrySink(), nullptr);
}

}  // namespace
}  // namespace zt::telemetry::host
