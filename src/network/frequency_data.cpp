#include "network/frequency_data.h"

#include <sstream>
#include <vector>

namespace zt::telemetry::collector::performancesamples {
namespace {

constexpr char kUnknownStart[] = "connectedChannel ";
constexpr char kUnknownEnd[] = " not found in frequencyData.";
constexpr char kMalformed[] = "Error: Invalid frequency range format for connectedChannel ";

// As comma-delimited reading of a stream gives them: the empty piece behind a last comma is none.
std::vector<std::string> SplitAtCommas(const std::string& text) {
  std::vector<std::string> pieces;
  std::istringstream stream(text);
  for (std::string piece; std::getline(stream, piece, ',');) pieces.push_back(piece);
  return pieces;
}

}  // namespace

// Channel 10 is not in the plan, and stays out of it: counts are compared across machines by this very table.
const FrequencyTable frequencyData = {
    {1, "2401,2423"},   {2, "2406,2428"},   {3, "2411,2433"},   {4, "2416,2438"},   {5, "2421,2443"},
    {6, "2426,2448"},   {7, "2431,2453"},   {8, "2436,2458"},   {9, "2441,2463"},   {11, "2451,2473"},
    {12, "2456,2478"},  {13, "2461,2483"},  {14, "2473,2495"},  {32, "5150,5170"},  {34, "5150,5190"},
    {36, "5170,5190"},  {38, "5170,5210"},  {40, "5190,5210"},  {42, "5170,5250"},  {44, "5210,5230"},
    {46, "5210,5250"},  {48, "5230,5250"},  {50, "5170,5330"},  {52, "5250,5270"},  {54, "5250,5290"},
    {56, "5270,5290"},  {58, "5250,5330"},  {60, "5290,5310"},  {62, "5290,5330"},  {64, "5310,5330"},
    {68, "5330,5350"},  {96, "5470,5490"},  {100, "5490,5510"}, {102, "5490,5530"}, {104, "5510,5530"},
    {106, "5490,5570"}, {108, "5530,5550"}, {110, "5530,5570"}, {112, "5550,5570"}, {114, "5490,5650"},
    {116, "5570,5590"}, {118, "5570,5610"}, {120, "5590,5610"}, {122, "5570,5650"}, {124, "5610,5630"},
    {126, "5610,5650"}, {128, "5630,5650"}, {132, "5650,5670"}, {134, "5650,5690"}, {136, "5670,5690"},
    {138, "5650,5730"}, {140, "5690,5710"}, {142, "5690,5730"}, {144, "5710,5730"}, {149, "5735,5755"},
    {151, "5735,5775"}, {153, "5755,5775"}, {155, "5735,5815"}, {157, "5775,5795"}, {159, "5775,5815"},
    {161, "5795,5815"}, {165, "5815,5835"},
};

std::optional<FrequencyRange> ParseFrequencyRange(const std::string& text) {
  const std::vector<std::string> pieces = SplitAtCommas(text);
  if (pieces.size() != 2) return std::nullopt;
  return FrequencyRange{std::stoi(pieces[0]), std::stoi(pieces[1])};
}

Interference CountInterference(const FrequencyTable& table, std::uint32_t channel) {
  const auto own = table.find(channel);
  if (own == table.end()) return {0, 0, plog::info, kUnknownStart + std::to_string(channel) + kUnknownEnd};
  const std::optional<FrequencyRange> range = ParseFrequencyRange(own->second);
  if (!range) return {0, 0, plog::error, kMalformed + std::to_string(channel)};
  Interference counts;
  for (const auto& [other, text] : table) {
    if (other == channel) {
      ++counts.co_channel;
      continue;
    }
    // A channel that encloses this one has no edge in it, and is not counted.
    const std::optional<FrequencyRange> edges = ParseFrequencyRange(text);
    if (edges && (range->Contains(edges->low_mhz) || range->Contains(edges->high_mhz))) ++counts.adjacent;
  }
  return counts;
}

}  // namespace zt::telemetry::collector::performancesamples
