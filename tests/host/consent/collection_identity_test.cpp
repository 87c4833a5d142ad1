#include "host/consent/collection_identity.h"

#include <gmock/gmock.h>

#include "messages/collection_id.h"

namespace zt::telemetry::host {
namespace {

namespace samples = collector::performancesamples;

constexpr char kTime[] = "2026-03-07T11:20:42.000Z";
constexpr char kHour[] = "2026-03-07T12:00:30.000Z";

std::string SerialNumberIn(const std::string& identity) {
  return ReadCollectionIdentity(identity, kTime).serial_number;
}

std::string Replaced(const std::string& identity) {
  return ReadCollectionIdentity(identity, kTime).With("0123456789");
}

TEST(CollectionIdentityTest, ALiveIdentityKeepsItsTimeToTheSecond) {
  EXPECT_EQ(SerialNumberIn(samples::LiveCollectionId("SN42", kTime)), "SN42");
  EXPECT_EQ(Replaced(samples::LiveCollectionId("SN42", kTime)), "0123456789_2026-03-07T11:20:42");
  EXPECT_EQ(Replaced(samples::LiveCollectionId("UNKNOWN_SN", kTime)), "0123456789_2026-03-07T11:20:42");
}

TEST(CollectionIdentityTest, NothingStaysOfASerialNumberOfAnyLength) {
  for (std::size_t length = 1; length <= 40; ++length) {
    const std::string serial_number = std::string(length - 1, 'S') + "_";
    EXPECT_EQ(Replaced(samples::LiveCollectionId(serial_number, kTime)), "0123456789_2026-03-07T11:20:42") << length;
    for (const char* kind : {"-TH", "-NE"}) {
      const std::string replaced = Replaced(samples::HourlyCollectionId(kHour, serial_number, kind));
      EXPECT_THAT(replaced, testing::StartsWith("2026-03-07T12H_0123456789")) << length;
      EXPECT_THAT(replaced, testing::Not(testing::HasSubstr("S"))) << length;
    }
  }
}

TEST(CollectionIdentityTest, AnHourlyIdentityKeepsItsHourAndItsKind) {
  for (const char* kind : {"-TH", "-NE"}) {
    const std::string identity = samples::HourlyCollectionId(kHour, "5CG0000001", kind);
    EXPECT_EQ(SerialNumberIn(identity), "5CG0000001");
    EXPECT_EQ(Replaced(identity), std::string("2026-03-07T12H_0123456789") + kind);
  }
}

TEST(CollectionIdentityTest, WithoutTheTimeOfItsRecordAllOfItIsTheSerialNumber) {
  EXPECT_EQ(SerialNumberIn("SN_42"), "SN_42");
  EXPECT_EQ(ReadCollectionIdentity("SN_2026-03-08", kTime).serial_number, "SN_2026-03-08");
}

}  // namespace
}  // namespace zt::telemetry::host
