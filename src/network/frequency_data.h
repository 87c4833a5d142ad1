#pragma once

#include <plog/Severity.h>

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>

namespace zt::telemetry::collector::performancesamples {

/// Wi-Fi channels by their number: "lower edge,upper edge", in MHz.
using FrequencyTable = std::unordered_map<std::uint32_t, std::string>;

/// The channel definitions that interference is counted over: 20 to 160 MHz wide, in the 2.4 and 5 GHz bands.
extern const FrequencyTable frequencyData;

/// The edges of a channel, both of which belong to it.
struct FrequencyRange {
  int low_mhz = 0;
  int high_mhz = 0;

  bool Contains(int mhz) const { return mhz >= low_mhz && mhz <= high_mhz; }
};

/// Reads "2401,2423"; absent unless there are exactly two pieces. Throws as `std::stoi` does when a piece is no number
/// or does not fit an `int`.
std::optional<FrequencyRange> ParseFrequencyRange(const std::string& text);

/// How many channels of a table coincide with a channel, and how many others have an edge in it.
struct Interference {
  std::uint32_t co_channel = 0;
  std::uint32_t adjacent = 0;
  // Where nothing can be counted: a line for the log that says why.
  plog::Severity severity = plog::none;
  std::string remark;
};

/// Counts over `table` for the channel `channel`. Other channels whose range cannot be read are passed over.
Interference CountInterference(const FrequencyTable& table, std::uint32_t channel);

}  // namespace zt::telemetry::collector::performancesamples
