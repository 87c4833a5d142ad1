#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "network/wlan_vocabulary.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::Pair;
using testing::UnorderedElementsAre;

TEST(VocabularyTest, RadioTypesAreInTheWordsThatHostsKnow) {
  EXPECT_THAT(kRadioTypeTexts, UnorderedElementsAre(Pair(0, "Unknown"), Pair(1, "802.11-1997"), Pair(2, "802.11b"),
                                                    Pair(3, "802.11-1997"), Pair(4, "802.11a"), Pair(5, "802.11g"),
                                                    Pair(6, "802.11g"), Pair(7, "802.11n"), Pair(8, "802.11ac"),
                                                    Pair(9, "802.11ad"), Pair(10, "802.11ax"), Pair(11, "802,11be")));
}

TEST(VocabularyTest, AuthenticationsAreInTheWordsThatHostsKnow) {
  EXPECT_THAT(kAuthenticationTexts,
              UnorderedElementsAre(Pair(1, "802.11 Open"), Pair(2, "802.11 Shared"), Pair(3, "WPA"), Pair(4, "WPA-PSK"),
                                   Pair(5, "WPA-None"), Pair(6, "RSNA"), Pair(7, "RSNA-PSK"), Pair(8, "WPA3ENT192"),
                                   Pair(9, "WPA3-SAE"), Pair(10, "OWE"), Pair(11, "WPA3-Enterprise")));
}

TEST(VocabularyTest, CiphersAreInTheWordsThatHostsKnow) {
  EXPECT_THAT(kCipherTexts,
              UnorderedElementsAre(Pair(0, "None"), Pair(1, "WEP40"), Pair(2, "TKIP"), Pair(4, "AES-CCMP"),
                                   Pair(5, "WEP-104"), Pair(6, "BIP"), Pair(8, "GCMP"), Pair(9, "GCMP-256"),
                                   Pair(10, "AES-CCMP-256"), Pair(11, "BIP-GMAC-128"), Pair(12, "BIP-GMAC-256"),
                                   Pair(13, "BIP-CMAC-256"), Pair(256, "WPA"), Pair(257, "WEP")));
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
