#include "host/consent/consented_texts.h"

#include <gmock/gmock.h>

#include "network/network_inspection.h"

namespace zt::telemetry::host {
namespace {

Consent HoldingBack() {
  Consent consent;
  consent.sections.front() = false;
  return consent;
}

TEST(ConsentedTextsTest, AWholeConsentLeavesTextsAsTheyAre) {
  EXPECT_EQ(ConsentedMessage(Consent(), "anything at all"), "anything at all");
  EXPECT_EQ(ConsentedQuery(Consent(), "SELECT a FROM b WHERE c = 'd'"), "SELECT a FROM b WHERE c = 'd'");
}

TEST(ConsentedTextsTest, AMessageThatNobodyKnowsIsHeldBackWhole) {
  EXPECT_EQ(ConsentedMessage(HoldingBack(), "the battery 00042 is gone"), "[left out]");
  EXPECT_EQ(ConsentedMessage(HoldingBack(), ""), "[left out]");
}

TEST(ConsentedTextsTest, TheCollectorsOwnWordsAndStatusesStay) {
  for (const char* message : {"IPV4 statistics not found", "Failed to initialize COM.-2147221164",
                              "Processes are left out: querying Win32_Process failed with status -2147217407",
                              "Started zt::telemetry::collector::performancesamples::PerformanceSamples::ReadSource"}) {
    EXPECT_EQ(ConsentedMessage(HoldingBack(), message), message);
  }
}

TEST(ConsentedTextsTest, WhatFollowsOnTheCollectorsWordsIsHeldBack) {
  EXPECT_EQ(ConsentedMessage(HoldingBack(), "Error handling message. Details: no battery 00042"),
            "Error handling message. Details: [left out]");
  EXPECT_EQ(ConsentedMessage(HoldingBack(), std::string(collector::performancesamples::kWlanProfileFailure) + "Home"),
            std::string(collector::performancesamples::kWlanProfileFailure) + "[left out]");
  EXPECT_EQ(ConsentedMessage(HoldingBack(), "IPV4 statistics not found by Ada"), "IPV4 statistics not found[left out]");
}

TEST(ConsentedTextsTest, WhatStandsInThePlaceOfAStatusAndIsNoneIsHeldBack) {
  for (const char* status : {"12 Ada", "Ada", "123456789012", "--1", "1-1"}) {
    EXPECT_EQ(ConsentedMessage(HoldingBack(), std::string("Failed to initialize COM.") + status),
              "Failed to initialize COM.[left out]");
  }
}

TEST(ConsentedTextsTest, TheTextsInAQueryAreHeldBack) {
  EXPECT_EQ(ConsentedQuery(HoldingBack(), "ASSOCIATORS OF {A.DeviceID='\\\\.\\X'} WHERE ResultClass = B"),
            "ASSOCIATORS OF {A.DeviceID='[left out]'} WHERE ResultClass = B");
  EXPECT_EQ(ConsentedQuery(HoldingBack(), R"(SELECT a FROM b WHERE c = "it's \"Ada\"" AND d = 'e')"),
            R"(SELECT a FROM b WHERE c = "[left out]" AND d = '[left out]')");
  EXPECT_EQ(ConsentedQuery(HoldingBack(), "SELECT a FROM b WHERE c = 'Ada"), "SELECT a FROM b WHERE c = '[left out]'");
}

}  // namespace
}  // namespace zt::telemetry::host
