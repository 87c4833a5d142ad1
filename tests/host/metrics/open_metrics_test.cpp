#include "host/metrics/open_metrics.h"

#include <gmock/gmock.h>

#include <limits>

#include "tests/host/program_run.h"

namespace zt::telemetry::host {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

const MetricFamily kCharge = {"zt_charge_ratio", "ratio", "Charge."};

std::string TextOf(const Labels& labels, double value = 1) {
  OpenMetrics metrics;
  metrics.Add(kCharge, labels, value);
  return metrics.Text();
}

// The line of the value.
std::string SampleOf(const Labels& labels, double value = 1) {
  return Lines(TextOf(labels, value)).at(3);
}

TEST(OpenMetricsTest, AFamilyHasItsHelpItsTypeItsUnitAndThenItsValues) {
  OpenMetrics metrics;
  metrics.Add(kCharge, {{"battery", "1"}}, 0.5);
  metrics.Add({"zt_cycles", "", "Cycles."}, {}, 87);
  metrics.Add(kCharge, {{"battery", "2"}}, 1);
  EXPECT_THAT(Lines(metrics.Text()), ElementsAre("# HELP zt_charge_ratio Charge.", "# TYPE zt_charge_ratio gauge",
                                                 "# UNIT zt_charge_ratio ratio", "zt_charge_ratio{battery=\"1\"} 0.5",
                                                 "zt_charge_ratio{battery=\"2\"} 1", "# HELP zt_cycles Cycles.",
                                                 "# TYPE zt_cycles gauge", "zt_cycles 87", "# EOF"));
}

TEST(OpenMetricsTest, WithoutValuesThereIsTheEndAlone) {
  EXPECT_EQ(OpenMetrics().Text(), "# EOF\n");
}

TEST(OpenMetricsTest, QuotesBackslashesAndLineBreaksInALabelAreEscaped) {
  EXPECT_EQ(SampleOf({{"process", "a\"b\\c\nd"}}), R"(zt_charge_ratio{process="a\"b\\c\nd"} 1)");
}

TEST(OpenMetricsTest, WhatLooksLikeTheEndOfALabelStaysInIt) {
  EXPECT_EQ(SampleOf({{"network", "\"} 1\n# EOF"}}), R"(zt_charge_ratio{network="\"} 1\n# EOF"} 1)");
}

TEST(OpenMetricsTest, UnicodeOfALabelStaysAsItIs) {
  EXPECT_THAT(SampleOf({{"network", "Büro\u2028日本"}}), HasSubstr("{network=\"Büro\u2028日本\"}"));
}

TEST(OpenMetricsTest, WhatIsNoUtf8InALabelBecomesTheReplacementCharacter) {
  EXPECT_THAT(SampleOf({{"process", "a\xFFz\xE2\x80"}}), HasSubstr("{process=\"a\uFFFDz\uFFFD"));
}

TEST(OpenMetricsTest, ANulInALabelBecomesTheReplacementCharacter) {
  EXPECT_THAT(SampleOf({{"process", std::string("a\0z", 3)}}), HasSubstr("{process=\"a\uFFFDz\"}"));
}

TEST(OpenMetricsTest, ASecondValueOfTheSameLabelsIsToldApart) {
  OpenMetrics metrics;
  for (const double value : {1, 2, 3}) metrics.Add(kCharge, {{"drive", "WINEHDISK"}}, value);
  EXPECT_THAT(metrics.Text(),
              AllOf(HasSubstr("{drive=\"WINEHDISK\"} 1\n"), HasSubstr("{drive=\"WINEHDISK\",entry=\"2\"} 2\n"),
                    HasSubstr("{drive=\"WINEHDISK\",entry=\"3\"} 3\n")));
}

// Prometheus' older form knows no escaped quotes in a help, OpenMetrics no plain ones.
TEST(OpenMetricsTest, AHelpHasNoDoubleQuotesAndNoLineBreaks) {
  OpenMetrics metrics;
  metrics.Add({"zt_state", "", "One of \"a\\b\"\nand c"}, {}, 1);
  EXPECT_EQ(Lines(metrics.Text()).at(0), R"(# HELP zt_state One of 'a\\b'\nand c)");
}

TEST(OpenMetricsTest, NumbersAreWrittenAsTheyAreMeant) {
  EXPECT_THAT(SampleOf({}, 33.24 / 100), testing::EndsWith(" 0.3324"));
  EXPECT_THAT(SampleOf({}, 1795300393.685), testing::EndsWith(" 1795300393.685"));
  EXPECT_THAT(SampleOf({}, 2053798000), testing::EndsWith(" 2053798000"));
  EXPECT_THAT(SampleOf({}, -61), testing::EndsWith(" -61"));
}

TEST(OpenMetricsTest, WhatIsNoNumberIsWrittenAsReadersKnowIt) {
  EXPECT_THAT(SampleOf({}, std::numeric_limits<double>::quiet_NaN()), testing::EndsWith(" NaN"));
  EXPECT_THAT(SampleOf({}, std::numeric_limits<double>::infinity()), testing::EndsWith(" +Inf"));
  EXPECT_THAT(SampleOf({}, -std::numeric_limits<double>::infinity()), testing::EndsWith(" -Inf"));
}

TEST(OpenMetricsTest, NamesHaveLowerCaseLettersDigitsAndSingleUnderscores) {
  EXPECT_EQ(MetricWord("Wi-Fi profiles"), "wi_fi_profiles");
  EXPECT_EQ(MetricWord("max. error"), "max_error");
  EXPECT_EQ(MetricWord("°C"), "c");
  EXPECT_EQ(MetricName({"Graphics cards", "", "load", "ratio"}), "zt_graphics_cards_load_ratio");
}

}  // namespace
}  // namespace zt::telemetry::host
