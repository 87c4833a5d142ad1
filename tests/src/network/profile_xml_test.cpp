#include "network/profile_xml.h"

#include <gtest/gtest.h>

namespace zt::telemetry::collector::performancesamples {
namespace {

constexpr char kProfile[] =
    "<WLANProfile><MSM><security><authEncryption><authentication>WPA2PSK</authentication>"
    "<encryption>AES</encryption></authEncryption></security></MSM></WLANProfile>";

TEST(ProfileXmlTest, TheTextsStandBetweenTheirTags) {
  EXPECT_EQ(CutAuthentication(kProfile), "WPA2PSK");
  EXPECT_EQ(CutEncryption(kProfile), "AES");
}

TEST(ProfileXmlTest, EmptyElementsHaveEmptyTexts) {
  EXPECT_EQ(CutAuthentication("<authentication></authentication>"), "");
  EXPECT_EQ(CutEncryption("<encryption></encryption>"), "");
}

TEST(ProfileXmlTest, TheFirstOfSeveralIsTaken) {
  EXPECT_EQ(CutAuthentication("<authentication>a</authentication><authentication>b</authentication>"), "a");
  EXPECT_EQ(CutEncryption("<encryption>a</encryption><encryption>b</encryption>"), "a");
}

TEST(ProfileXmlTest, WithoutAnElementThereIsNoText) {
  for (const char* xml : {"", "<WLANProfile></WLANProfile>", "authentication", "<authentication/>", "<encryption/>"}) {
    EXPECT_EQ(CutAuthentication(xml), "") << xml;
    EXPECT_EQ(CutEncryption(xml), "") << xml;
  }
}

TEST(ProfileXmlTest, AnElementThatIsNotClosedHasNoText) {
  EXPECT_EQ(CutAuthentication("<a><authentication>WPA2"), "");
  EXPECT_EQ(CutEncryption("<a><encryption>AES</encrypt"), "");
}

// No opening tag: the cut starts at a fixed byte.
TEST(ProfileXmlTest, WithoutAnOpeningTagAuthenticationStartsAtByte15) {
  EXPECT_EQ(CutAuthentication("0123456789abcdefgh</authentication>"), "fgh");
}

TEST(ProfileXmlTest, WithoutAnOpeningTagEncryptionStartsAtByte11) {
  EXPECT_EQ(CutEncryption("0123456789abcdefgh</encryption>"), "bcdefgh");
}

TEST(ProfileXmlTest, AnEndBeforeTheFixedStartCutsToTheEndOfAll) {
  EXPECT_EQ(CutAuthentication("</authentication>"), "n>");
  EXPECT_EQ(CutEncryption("</encryption>"), "n>");
  EXPECT_EQ(CutAuthentication("0123</authentication> rest"), "ation> rest");
}

TEST(ProfileXmlTest, SwappedTagsCutToTheEndOfAll) {
  EXPECT_EQ(CutAuthentication("</authentication>WPA2PSK<authentication> rest"), " rest");
  EXPECT_EQ(CutEncryption("</encryption>AES<encryption>"), "");
}

TEST(ProfileXmlTest, TagsInOtherLettersAreOthers) {
  EXPECT_EQ(CutAuthentication("<Authentication>WPA2PSK</Authentication>"), "");
}

TEST(ProfileXmlTest, BytesAreCountedNotCharacters) {
  EXPECT_EQ(CutEncryption("ÄÖÜäöü</encryption>"), "\xBC");  // the second half of the last letter
}

TEST(ProfileXmlTest, AMegabyteIsCutLikeAnyOther) {
  constexpr std::size_t kMegabyte = 1 << 20;
  const std::string filling(kMegabyte, 'x');
  EXPECT_EQ(CutAuthentication(filling + kProfile + filling), "WPA2PSK");
  EXPECT_EQ(CutEncryption("<encryption>" + filling + "</encryption>"), filling);
  EXPECT_EQ(CutAuthentication(filling), "");
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
