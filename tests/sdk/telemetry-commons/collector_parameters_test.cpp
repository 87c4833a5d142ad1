#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "scripted_collector.h"

namespace zt::tests {
namespace {

using telemetry::common::EventType;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class CollectorParametersTest : public ::testing::Test {
 protected:
  // The description of the error that the parameters are refused with; checks that nothing ran.
  std::string Refusal(const char* params) {
    const nlohmann::json outcome = OutcomeOf(collector_, params);
    EXPECT_EQ(outcome["kind"], 5);
    EXPECT_EQ(outcome["code"], -1);
    EXPECT_THAT(collector_.calls, IsEmpty());
    return outcome["description"];
  }

  // The event type that the collection sees.
  std::int32_t EventTypeDuringCollection(const char* params) {
    auto seen = static_cast<EventType>(-1000);
    collector_.read_source = [&] {
      seen = collector_.ParamsGetEventType();
      return ScriptedCollector::Error();
    };
    EXPECT_EQ(OutcomeOf(collector_, params)["kind"], 0);
    return static_cast<std::int32_t>(seen);
  }

  ScriptedCollector collector_;
};

TEST_F(CollectorParametersTest, TheCollectionSeesTheEventType) {
  EXPECT_EQ(EventTypeDuringCollection(R"({"eventType": 20})"), 20);
  EXPECT_EQ(EventTypeDuringCollection(R"({"eventType": 50})"), 50);
  EXPECT_EQ(EventTypeDuringCollection(R"({"eventType": 51})"), 51);
}

TEST_F(CollectorParametersTest, AnyIntegerIsAnEventType) {
  EXPECT_EQ(EventTypeDuringCollection(R"({"eventType": 0})"), 0);
  EXPECT_EQ(EventTypeDuringCollection(R"({"eventType": -1})"), -1);
  EXPECT_EQ(EventTypeDuringCollection(R"({"eventType": 2147483647})"), 2147483647);
  EXPECT_EQ(EventTypeDuringCollection(R"({"eventType": -2147483648})"), INT32_MIN);
}

TEST_F(CollectorParametersTest, OtherParametersAreLeftAlone) {
  EXPECT_EQ(EventTypeDuringCollection(R"({"source": {"eventType": 1}, "eventType": 50, "list": [1, 2]})"), 50);
}

TEST_F(CollectorParametersTest, EachCallHasItsOwnEventType) {
  EXPECT_EQ(EventTypeDuringCollection(R"({"eventType": 20})"), 20);
  EXPECT_EQ(EventTypeDuringCollection(R"({"eventType": 7})"), 7);
}

TEST_F(CollectorParametersTest, NoParametersAreRefused) {
  EXPECT_THAT(Refusal(nullptr), HasSubstr("missing"));
}

TEST_F(CollectorParametersTest, TextThatIsNoJsonIsRefused) {
  for (const char* text : {"", " ", "{", "collect", R"({"eventType": })", R"({"eventType": 50} more)", "\xFF\xFE"}) {
    EXPECT_THAT(Refusal(text), HasSubstr("not valid JSON")) << text;
  }
}

TEST_F(CollectorParametersTest, JsonThatIsNoObjectIsRefused) {
  EXPECT_THAT(Refusal("[50]"), HasSubstr("array"));
  EXPECT_THAT(Refusal("50"), HasSubstr("number"));
  EXPECT_THAT(Refusal("null"), HasSubstr("null"));
  EXPECT_THAT(Refusal(R"("eventType")"), HasSubstr("string"));
}

TEST_F(CollectorParametersTest, AMissingEventTypeIsRefused) {
  EXPECT_THAT(Refusal("{}"), HasSubstr("\"eventType\" is missing"));
  EXPECT_THAT(Refusal(R"({"EventType": 50})"), HasSubstr("\"eventType\" is missing"));
}

TEST_F(CollectorParametersTest, AnEventTypeThatIsNoIntegerIsRefusedWithItsValue) {
  for (const char* value : {"\"50\"", "50.5", "true", "null", "[50]", "{\"a\":50}"}) {
    const std::string params = std::string(R"({"eventType": )") + value + "}";
    EXPECT_THAT(Refusal(params.c_str()), HasSubstr(std::string("must be an integer, but is ") + value));
  }
}

TEST_F(CollectorParametersTest, AWholeNumberWrittenAsFractionIsRefused) {
  EXPECT_THAT(Refusal(R"({"eventType": 50.0})"), HasSubstr("must be an integer"));
}

TEST_F(CollectorParametersTest, AnEventTypeOfMoreThan32BitsIsRefusedWithItsValue) {
  for (const char* value : {"2147483648", "-2147483649", "9223372036854775807", "18446744073709551615"}) {
    const std::string params = std::string(R"({"eventType": )") + value + "}";
    EXPECT_THAT(Refusal(params.c_str()), HasSubstr(std::string("must be a 32-bit integer, but is ") + value));
  }
}

TEST_F(CollectorParametersTest, AnEventTypeOfMoreThan64BitsIsRefused) {
  EXPECT_THAT(Refusal(R"({"eventType": 18446744073709551616})"), HasSubstr("must be an integer"));
}

TEST_F(CollectorParametersTest, AnEventTypeThatIsNoUtf8IsRefused) {
  EXPECT_THAT(Refusal("{\"eventType\": \"\xFF\"}"), HasSubstr("not valid JSON"));
}

TEST_F(CollectorParametersTest, DeeplyNestedParametersAreRefused) {
  EXPECT_THAT(Refusal(std::string(100'000, '[').c_str()), HasSubstr("not valid JSON"));
}

TEST_F(CollectorParametersTest, AnEventTypeOfTooManyLevelsForAnyStackIsRefusedByItsType) {
  constexpr std::size_t kLevels = 100'000;
  const std::string params = R"({"eventType": )" + std::string(kLevels, '[') + std::string(kLevels, ']') + "}";
  EXPECT_THAT(Refusal(params.c_str()), HasSubstr("must be an integer, but is deeply nested array"));
}

TEST_F(CollectorParametersTest, AnEventTypeOfAFewLevelsIsRefusedWithItsValue) {
  const std::string value = std::string(32, '[') + std::string(32, ']');
  const std::string params = R"({"eventType": )" + value + "}";
  EXPECT_THAT(Refusal(params.c_str()), HasSubstr("must be an integer, but is " + value));
}

}  // namespace
}  // namespace zt::tests
