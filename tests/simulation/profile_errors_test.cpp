#include <gmock/gmock.h>

#include <fstream>
#include <functional>
#include <set>
#include <vector>

#include <nlohmann/json.hpp>

#include "full_profile.h"
#include "profile_error.h"
#include "simulation/profile.h"
#include "support/temporary_folder.h"

// Every mistake in a profile is told with the file, the place and what was expected there.
namespace zt::tests {
namespace {

using Json = nlohmann::ordered_json;
using Pointer = Json::json_pointer;
using ::testing::HasSubstr;
using ::testing::StartsWith;

Json Full() {
  return Json::parse(kFullProfile);
}

void ForEachValue(const Json& value, const Pointer& at, const std::function<void(const Pointer&, const Json&)>& visit) {
  visit(at, value);
  if (value.is_object()) {
    for (const auto& [key, member] : value.items()) ForEachValue(member, at / key, visit);
  } else if (value.is_array()) {
    for (std::size_t i = 0; i < value.size(); ++i) ForEachValue(value[i], at / i, visit);
  }
}

// Any JSON may stand in the report, and any name in these objects.
bool IsInReport(const Pointer& at) {
  return at.to_string().starts_with("/npu_report");
}

bool NamesFreely(const Pointer& at) {
  static const std::set<std::string> kFree = {"/registry/HKEY_LOCAL_MACHINE\\A~1B",
                                              "/registry/HKEY_LOCAL_MACHINE\\A~1B/key", "/wmi/classes/Win32_Things/0",
                                              "/wmi/associations/0/rows/0"};
  return kFree.contains(at.to_string()) || IsInReport(at);
}

TEST(ProfileErrorsTest, EachValueOfAWrongTypeIsAnErrorAtItsPlace) {
  const Json full = Full();
  std::size_t tried = 0;
  ForEachValue(full, Pointer(), [&](const Pointer& at, const Json& value) {
    if (at.empty() || IsInReport(at)) return;
    Json broken = full;
    broken[at] = value.is_array() ? Json(true) : Json::array({Json::array()});
    EXPECT_THAT(ErrorOf(broken.dump()), StartsWith("p.json: " + at.to_string() + ": expected ")) << at;
    ++tried;
  });
  EXPECT_GT(tried, 150U);
}

TEST(ProfileErrorsTest, AnUnknownKeyOfEachObjectIsAnErrorAtItsPlace) {
  const Json full = Full();
  std::size_t tried = 0;
  ForEachValue(full, Pointer(), [&](const Pointer& at, const Json& value) {
    if (!value.is_object() || NamesFreely(at)) return;
    Json broken = full;
    broken[at]["unheard_of"] = 1;
    EXPECT_THAT(ErrorOf(broken.dump()), StartsWith("p.json: " + at.to_string() + "/unheard_of: ")) << at;
    ++tried;
  });
  EXPECT_GT(tried, 40U);
}

TEST(ProfileErrorsTest, EachIntegerOutOfItsRangeIsAnErrorAtItsPlace) {
  // 64-bit counts take the largest integer; WMI takes any; real numbers and angles have no such limit.
  const std::set<std::string> unlimited = {"memory_total_bytes", "memory_used_bytes",      "user_100ns",
                                           "kernel_100ns",       "peak_working_set_bytes", "working_set_bytes"};
  const Json full = Full();
  std::size_t tried = 0;
  ForEachValue(full, Pointer(), [&](const Pointer& at, const Json& value) {
    const bool is_any = at.to_string().starts_with("/wmi/classes") || IsInReport(at);
    if (!value.is_number_integer() || is_any) return;
    Json low = full;
    low[at] = std::numeric_limits<std::int64_t>::min();
    EXPECT_THAT(ErrorOf(low.dump()), StartsWith("p.json: " + at.to_string() + ": expected ")) << at;
    ++tried;
    if (unlimited.contains(at.back()) || at.to_string().starts_with("/session/tick_counts_ms")) return;
    Json high = full;
    high[at] = std::numeric_limits<std::uint64_t>::max();
    EXPECT_THAT(ErrorOf(high.dump()), StartsWith("p.json: " + at.to_string() + ": expected ")) << at;
  });
  EXPECT_GT(tried, 60U);
}

TEST(ProfileErrorsTest, AWrongTypeIsToldWithTheRangeAndWhatWasFound) {
  EXPECT_EQ(ErrorOf(R"({"batteries": [{"voltage_mv": "x"}]})"),
            R"(p.json: /batteries/0/voltage_mv: expected an integer from -2147483648 to 2147483647, found "x")");
  EXPECT_EQ(ErrorOf(R"({"batteries": [{"cycle_count": 5.0}]})"),
            "p.json: /batteries/0/cycle_count: expected an integer from 0 to 4294967295, found 5.0");
  EXPECT_EQ(ErrorOf(R"({"power_status": {"battery_flag": 256}})"),
            "p.json: /power_status/battery_flag: expected an integer from 0 to 255, found 256");
  EXPECT_EQ(ErrorOf(R"({"description": {}})"), "p.json: /description: expected a text, found an object");
  EXPECT_EQ(ErrorOf(R"({"batteries": {}})"), "p.json: /batteries: expected a list, found an object");
  EXPECT_EQ(ErrorOf(R"({"batteries": [[]]})"), "p.json: /batteries/0: expected an object or null, found a list");
  EXPECT_EQ(ErrorOf(R"({"batteries": [{"discharging": 1}]})"),
            "p.json: /batteries/0/discharging: expected true or false, found 1");
  EXPECT_EQ(ErrorOf(R"({"batteries": [{"remaining_percent": 1e39}]})"),
            "p.json: /batteries/0/remaining_percent: expected a number of at most 3.4e38 in size, found 1e+39");
  EXPECT_EQ(ErrorOf("[]"), "p.json: /: expected an object, found a list");
}

TEST(ProfileErrorsTest, AnUnknownKeyIsToldWithTheKnownOnes) {
  EXPECT_EQ(ErrorOf(R"({"session": {"ticks": []}})"),
            "p.json: /session/ticks: unknown key, expected one of: "
            "tick_counts_ms, maximum_touches, last_input_tick_ms, number");
}

TEST(ProfileErrorsTest, WhereACallMayFailThatIsExpectedToo) {
  EXPECT_EQ(ErrorOf(R"({"session": {"last_input_tick_ms": true}})"),
            "p.json: /session/last_input_tick_ms: expected an integer from 0 to 4294967295 or {\"fails\": status}, "
            "found true");
  EXPECT_EQ(ErrorOf(R"({"network": {"com": 5}})"), R"(p.json: /network/com: expected {"fails": status}, found 5)");
  EXPECT_EQ(ErrorOf(R"({"network": {"tcp_v4": {"fails": 5, "established": 1}}})"),
            "p.json: /network/tcp_v4/established: unknown key, expected one of: fails");
}

TEST(ProfileErrorsTest, AStatusIsAnyPatternOf32Bits) {
  const auto fails = [](const std::string& status) { return R"({"network": {"com": {"fails": )" + status + "}}}"; };
  EXPECT_EQ(simulation::ParseProfile(fails("-2147483648"), "p.json").network.com->status, -2147483647 - 1);
  EXPECT_EQ(simulation::ParseProfile(fails("4294967295"), "p.json").network.com->status, -1);
  EXPECT_EQ(ErrorOf(fails("4294967296")),
            "p.json: /network/com/fails: expected an integer from -2147483648 to 4294967295, found 4294967296");
  EXPECT_EQ(ErrorOf(fails("-2147483649")),
            "p.json: /network/com/fails: expected an integer from -2147483648 to 4294967295, found -2147483649");
}

TEST(ProfileErrorsTest, AMomentIsExpectedInOneForm) {
  const auto clock = [](const std::string& now) { return ErrorOf(R"({"clock": {"now": ")" + now + R"("}})"); };
  for (const char* now :
       {"", "2026-03-07", "2026-03-07T14:20:42", "2026-03-07 14:20:42Z", "2026-02-29T00:00:00Z", "2026-13-01T00:00:00Z",
        "2026-03-07T24:00:00Z", "2026-03-07T14:60:42Z", "2026-03-07T14:20:60Z", "2026-03-07T14:20:42.5Z",
        "1969-12-31T23:59:59Z", "2026-03-07T14:20:42+01:00", "+026-03-07T14:20:42Z"}) {
    EXPECT_EQ(clock(now), std::string("p.json: /clock/now: expected a moment from 1970 on in UTC such as "
                                      "\"2026-03-07T14:20:42Z\", found \"") +
                              now + "\"");
  }
  EXPECT_EQ(clock("2024-02-29T23:59:59Z"), "");
  const std::string created = R"({"processes": [{"created": "2026-03-07T14:20:42.)";
  EXPECT_EQ(ErrorOf(created + R"(1234567Z"}]})"), "");
  EXPECT_THAT(ErrorOf(created + R"(12345678Z"}]})"), StartsWith("p.json: /processes/0/created: expected a moment"));
  EXPECT_THAT(ErrorOf(created + R"(Z"}]})"), StartsWith("p.json: /processes/0/created: expected a moment"));
}

TEST(ProfileErrorsTest, AHingeHasAnAngleOrAnOutcome) {
  const auto hinge = [](const std::string& json) { return ErrorOf(R"({"sensors": {"hinge": )" + json + "}}"); };
  EXPECT_EQ(hinge(R"({"angle_degrees": "NaN"})"),
            R"(p.json: /sensors/hinge/angle_degrees: expected a number or "nan", found "NaN")");
  EXPECT_EQ(hinge(R"({"outcome": "broken"})"),
            "p.json: /sensors/hinge/outcome: expected \"sensor_timeout\", \"reading_timeout\" or \"no_reading\", found "
            "\"broken\"");
  EXPECT_EQ(hinge(R"({"angle_degrees": 5, "outcome": "no_reading"})"),
            "p.json: /sensors/hinge: expected either angle_degrees or outcome, found both");
  EXPECT_EQ(ErrorOf(R"({"sensors": {"orientation": 6}})"),
            "p.json: /sensors/orientation: expected an integer from 0 to 5 or {\"fails\": status}, found 6");
}

TEST(ProfileErrorsTest, ThrottleReasonsAreHexadecimalAfterTheirPrefix) {
  for (const char* reasons : {"36", "0x", "0xg", "0x1 ", "0x10000000000000000", "-0x1"}) {
    EXPECT_EQ(ErrorOf(R"({"nvml": {"devices": [{"throttle_reasons": ")" + std::string(reasons) + R"("}]}})"),
              "p.json: /nvml/devices/0/throttle_reasons: expected a number or a text such as \"0x24\" or {\"fails\": "
              "status}, found \"" +
                  std::string(reasons) + "\"");
  }
}

TEST(ProfileErrorsTest, AnInterfaceIndexIsANumberAsKey) {
  EXPECT_EQ(ErrorOf(R"({"network": {"interface_counters": {"Wi-Fi": {}}}})"),
            "p.json: /network/interface_counters/Wi-Fi: expected an interface index from 0 to 4294967295 as the key");
  EXPECT_THAT(ErrorOf(R"({"network": {"interface_counters": {"4294967296": {}}}})"), HasSubstr("interface index"));
}

TEST(ProfileErrorsTest, AFailureOfWmiNeedsItsStatus) {
  EXPECT_EQ(ErrorOf(R"({"wmi": {"failures": [{"query_contains": "x"}]}})"),
            "p.json: /wmi/failures/0: expected the key status, which is missing");
}

TEST(ProfileErrorsTest, ALongValueIsCutBetweenCharacters) {
  const std::string umlauts = [] {
    std::string text;
    for (int i = 0; i < 40; ++i) text += "\xC3\xBC";
    return text;
  }();
  EXPECT_EQ(ErrorOf(R"({"batteries": [{"voltage_mv": ")" + umlauts + R"("}]})"),
            "p.json: /batteries/0/voltage_mv: expected an integer from -2147483648 to 2147483647, found \"" +
                umlauts.substr(0, 58) + "...");
}

TEST(ProfileErrorsTest, MalformedJsonIsToldWithLineAndColumn) {
  EXPECT_THAT(ErrorOf("{\n  \"clock\": {,}\n}"), StartsWith("p.json: line 2, column 13: syntax error"));
  EXPECT_THAT(ErrorOf(""), StartsWith("p.json: line 1, column 1: syntax error"));
  EXPECT_THAT(ErrorOf("{} x"), StartsWith("p.json: line 1, column 4: syntax error"));
  EXPECT_THAT(ErrorOf("{\"description\": \"\xFF\"}"), StartsWith("p.json: line 1, column 18: syntax error"));
  EXPECT_THAT(ErrorOf("{\"batteries\": [\n{\"remaining_percent\": 1e999}]}"), StartsWith("p.json: line 2, column "));
}

TEST(ProfileErrorsTest, AKeyThatStandsTwiceIsAnErrorSinceOneValueWouldBeLost) {
  EXPECT_EQ(ErrorOf(R"({"batteries": [null, {"voltage_mv": 1, "voltage_mv": 2}]})"),
            "p.json: /batteries/1/voltage_mv: the key stands twice in its object");
}

TEST(ProfileErrorsTest, AnIntegerBeyond64BitsIsAnErrorSinceItsDigitsWouldBeLost) {
  EXPECT_EQ(ErrorOf(R"({"wmi": {"classes": {"A": [{"Size": 18446744073709551616}]}}})"),
            "p.json: /wmi/classes/A/0/Size: expected an integer of at most 64 bits, found 18446744073709551616");
}

TEST(ProfileErrorsTest, EndlessNestingIsAnError) {
  const std::string deep = R"({"npu_report": )" + std::string(100'000, '[');
  EXPECT_THAT(ErrorOf(deep), HasSubstr("nested deeper than 64 levels"));
}

TEST(ProfileErrorsTest, AFileThatIsMissingOrAFolderIsToldSo) {
  const TemporaryFolder folder;
  const auto error_of_file = [](const std::filesystem::path& file) -> std::string {
    try {
      simulation::ReadProfile(file);
      return {};
    } catch (const simulation::ProfileError& error) {
      return error.what();
    }
  };
  EXPECT_THAT(error_of_file(folder.Path() / "none.json"), HasSubstr("none.json: there is no such file"));
  EXPECT_THAT(error_of_file(folder.Path()), HasSubstr(": it is a folder, expected a file"));
  std::ofstream(folder.Path() / "bad.json") << "{\"clocks\": {}}";
  EXPECT_THAT(error_of_file(folder.Path() / "bad.json"), HasSubstr("bad.json: /clocks: unknown key"));
}

TEST(ProfileErrorsTest, AFileIsReadWithAByteOrderMarkToo) {
  const TemporaryFolder folder;
  std::ofstream(folder.Path() / "p.json") << "\xEF\xBB\xBF{\"description\": \"marked\"}";
  EXPECT_EQ(simulation::ReadProfile(folder.Path() / "p.json").description, "marked");
}

}  // namespace
}  // namespace zt::tests
