#pragma once

#include <initializer_list>
#include <random>
#include <string>

#include "store_test.h"

namespace zt::telemetry::collector::performancesamples {

inline constexpr int kHours = 12;

/// Samples of a few hours with everything that a writer may leave in them, in a random order of time.
class RandomSamples {
 public:
  explicit RandomSamples(unsigned seed) : random_(seed) {}

  void Fill(tests::SampleStore& store, int rows) {
    store.Execute("BEGIN");
    for (int i = 0; i < rows; ++i) {
      store.AddThermal(Time(), {{"cpu_temp", Reading()}, {"fan1_current_tach_speed", Reading()}});
      store.AddNetwork(
          Time(),
          {{"interface_device_id", OneOf({"'{A}'", "'{a}'", "'{A} '", "'{B}'", "'01'", "'1'", "1", "1.0", "NULL"})},
           {"network_trust_level", OneOf({"'Public'", "'Private'", "NULL", "char(0)", "'ü\"'"})},
           {"is_managed", OneOf({"0", "1", "NULL"})},
           {"channel", OneOf({"1", "36", "149", "'36'", "NULL"})},
           {"radio_type", OneOf({"'802.11ax'", "CAST(x'41FF' AS TEXT)", "NULL"})},
           {"rx_rate", Reading()},
           {"signal_strength", Reading()},
           {"bytes_received", OneOf({"4294967296", "-1", "0", "1.5"})},
           {"is_vpn_connected", OneOf({"0", "1", "NULL"})},
           {"has_network_access", OneOf({"0", "1", "'yes'"})},
           {"profile_name_hash", OneOf({"x'AB'", "x'CD00'", "x''", "'text'", "NULL", "7"})},
           {"profile_authentication", OneOf({"'WPA2'", "'wpa2'", "'Open'", "2.5", "2.5000000000000004", "NULL"})},
           {"profile_encryption", OneOf({"'AES'", "'None'"})}});
    }
    store.Execute("COMMIT");
  }

 private:
  unsigned Next(unsigned bound) { return static_cast<unsigned>(random_()) % bound; }
  std::string OneOf(std::initializer_list<const char*> literals) {
    return *(literals.begin() + Next(static_cast<unsigned>(literals.size())));
  }
  std::string Time() {
    if (Next(50) == 0) return "unreadable";
    const auto two_digits = [&](unsigned bound) { return std::to_string(100 + Next(bound)).substr(1); };
    return "2026-03-07" + std::string(OneOf({"T", " "})) + two_digits(kHours) + ":" + two_digits(60) + ":" +
           two_digits(60) + OneOf({"", ".123Z", "+01:00"});
  }
  std::string Reading() { return Next(20) == 0 ? "NULL" : std::to_string(Next(100000)) + "e-3"; }

  std::mt19937 random_;
};

class LinearSummaryTest : public StoreTest {
 protected:
  void ExpectSameAsPlain() const {
    const SummaryRowsBySource plain = QueryPlainly(path_);
    EXPECT_EQ(Query(), plain);
    EXPECT_FALSE(plain.empty());
  }
};

}  // namespace zt::telemetry::collector::performancesamples
