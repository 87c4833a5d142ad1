#include <set>
#include <stdexcept>

#include "network/frequency_data.h"
#include "network_fixture.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using testing::SizeIs;

struct Channel {
  std::uint32_t number;
  int low_mhz;
  int high_mhz;
};

// The plan as it was agreed on.
constexpr Channel kPlan[] = {
    {1, 2401, 2423},   {2, 2406, 2428},   {3, 2411, 2433},   {4, 2416, 2438},   {5, 2421, 2443},   {6, 2426, 2448},
    {7, 2431, 2453},   {8, 2436, 2458},   {9, 2441, 2463},   {11, 2451, 2473},  {12, 2456, 2478},  {13, 2461, 2483},
    {14, 2473, 2495},  {32, 5150, 5170},  {34, 5150, 5190},  {36, 5170, 5190},  {38, 5170, 5210},  {40, 5190, 5210},
    {42, 5170, 5250},  {44, 5210, 5230},  {46, 5210, 5250},  {48, 5230, 5250},  {50, 5170, 5330},  {52, 5250, 5270},
    {54, 5250, 5290},  {56, 5270, 5290},  {58, 5250, 5330},  {60, 5290, 5310},  {62, 5290, 5330},  {64, 5310, 5330},
    {68, 5330, 5350},  {96, 5470, 5490},  {100, 5490, 5510}, {102, 5490, 5530}, {104, 5510, 5530}, {106, 5490, 5570},
    {108, 5530, 5550}, {110, 5530, 5570}, {112, 5550, 5570}, {114, 5490, 5650}, {116, 5570, 5590}, {118, 5570, 5610},
    {120, 5590, 5610}, {122, 5570, 5650}, {124, 5610, 5630}, {126, 5610, 5650}, {128, 5630, 5650}, {132, 5650, 5670},
    {134, 5650, 5690}, {136, 5670, 5690}, {138, 5650, 5730}, {140, 5690, 5710}, {142, 5690, 5730}, {144, 5710, 5730},
    {149, 5735, 5755}, {151, 5735, 5775}, {153, 5755, 5775}, {155, 5735, 5815}, {157, 5775, 5795}, {159, 5775, 5815},
    {161, 5795, 5815}, {165, 5815, 5835},
};

// Counted another way than the builder does: the channel is the set of its frequencies.
std::uint32_t OverlappingChannels(const Channel& channel) {
  std::set<int> frequencies;
  for (int mhz = channel.low_mhz; mhz <= channel.high_mhz; ++mhz) frequencies.insert(mhz);
  std::uint32_t count = 0;
  for (const Channel& other : kPlan) {
    const bool overlaps = frequencies.contains(other.low_mhz) || frequencies.contains(other.high_mhz);
    if (other.number != channel.number && overlaps) ++count;
  }
  return count;
}

// Over the plan, by way of the pass that tells an interface its channel.
class ChannelInterferenceTest : public NetworkTest {
 protected:
  ChannelInterferenceTest() {
    AddInterface(kWifi);
    machine_.network.wlan.emplace().interfaces.emplace_back().guid = Guid(1);
  }

  /// Lets the pass find the interface on this channel, and counts for `info`.
  void Count(std::uint32_t channel, types::NetworkInterfaceInfo& info) {
    machine_.network.wlan->interfaces[0].channel = channel;
    info.guid = Guid(1);
    types::NetworkInterfaces interfaces = {{kWifi, info}};
    simulation::UseMachine(machine_);
    network_.HandleWlanInfo(interfaces);
    info = interfaces.at(kWifi);
  }

  types::NetworkInterfaceInfo Count(std::uint32_t channel) {
    types::NetworkInterfaceInfo info;
    Count(channel, info);
    return info;
  }

  void ExpectCounts(std::uint32_t channel, std::uint32_t adjacent) {
    const types::NetworkInterfaceInfo info = Count(channel);
    EXPECT_EQ(info.co_channel_interference_count, 1U) << channel;
    EXPECT_EQ(info.adjacent_channel_interference_count, adjacent) << channel;
  }

  void ExpectUnknown(std::uint32_t channel) {
    log_.lines.clear();
    const types::NetworkInterfaceInfo info = Count(channel);
    EXPECT_EQ(info.channel, channel);
    EXPECT_EQ(info.co_channel_interference_count, 0U);
    EXPECT_EQ(info.adjacent_channel_interference_count, 0U);
    EXPECT_THAT(log_.Messages(plog::info),
                ElementsAre("connectedChannel " + std::to_string(channel) + " not found in frequencyData."));
    EXPECT_THAT(log_.lines, SizeIs(1));
  }
};

TEST_F(ChannelInterferenceTest, ThePlanHas62Channels) {
  FrequencyTable expected;
  for (const Channel& channel : kPlan) {
    expected[channel.number] = std::to_string(channel.low_mhz) + ',' + std::to_string(channel.high_mhz);
  }
  EXPECT_EQ(expected.size(), 62U);
  EXPECT_EQ(frequencyData, expected);
}

TEST_F(ChannelInterferenceTest, EveryChannelHasTheCountsOfItsFrequencies) {
  for (const Channel& channel : kPlan) ExpectCounts(channel.number, OverlappingChannels(channel));
  EXPECT_THAT(log_.lines, IsEmpty());
}

TEST_F(ChannelInterferenceTest, KnownChannelsHaveKnownCounts) {
  ExpectCounts(6, 7);
  ExpectCounts(1, 4);
  ExpectCounts(14, 3);
  ExpectCounts(36, 6);
  ExpectCounts(42, 12);
  ExpectCounts(50, 17);
  ExpectCounts(149, 3);
  ExpectCounts(165, 3);
}

TEST_F(ChannelInterferenceTest, AChannelOutsideThePlanIsOneLineOfInformation) {
  ExpectUnknown(10);
  ExpectUnknown(0);
  ExpectUnknown(15);
  ExpectUnknown(166);
  ExpectUnknown(169);
  ExpectUnknown(4'294'967'295U);
}

TEST_F(ChannelInterferenceTest, TheLineNamesTheOperation) {
  Count(10);
  ASSERT_THAT(log_.lines, SizeIs(1));
  EXPECT_THAT(log_.lines.at(0).function, EndsWith("NetworkInfoMsg::CalculateChannelInterference"));
}

TEST_F(ChannelInterferenceTest, CountingTwiceDoublesBoth) {
  types::NetworkInterfaceInfo info = Count(36);
  Count(36, info);
  EXPECT_EQ(info.co_channel_interference_count, 2U);
  EXPECT_EQ(info.adjacent_channel_interference_count, 12U);
}

TEST_F(ChannelInterferenceTest, ALookInVainLeavesCountsAsTheyWere) {
  types::NetworkInterfaceInfo info = Count(36);
  Count(10, info);
  EXPECT_EQ(info.co_channel_interference_count, 1U);
  EXPECT_EQ(info.adjacent_channel_interference_count, 6U);
}

TEST(CountInterferenceTest, AChannelThatEnclosesAnotherIsNotCountedForIt) {
  const FrequencyTable table = {{1, "100,110"}, {2, "90,120"}};
  EXPECT_EQ(CountInterference(table, 1).adjacent, 0U);
  EXPECT_EQ(CountInterference(table, 2).adjacent, 1U);
}

TEST(CountInterferenceTest, AnEdgeThatTouchesCounts) {
  const FrequencyTable table = {{1, "100,110"}, {2, "110,120"}, {3, "90,100"}, {4, "111,120"}, {5, "80,99"}};
  EXPECT_EQ(CountInterference(table, 1).adjacent, 2U);
}

TEST(CountInterferenceTest, AMalformedOwnRangeIsOneErrorLine) {
  for (const char* range : {"", "100", "100,110,120", "100;110"}) {
    const Interference interference = CountInterference({{7, range}, {8, "100,110"}}, 7);
    EXPECT_EQ(interference.co_channel, 0U) << range;
    EXPECT_EQ(interference.adjacent, 0U) << range;
    EXPECT_EQ(interference.severity, plog::error);
    EXPECT_EQ(interference.remark, "Error: Invalid frequency range format for connectedChannel 7");
  }
}

TEST(CountInterferenceTest, AMalformedRangeOfAnotherChannelIsPassedOver) {
  const Interference interference = CountInterference({{7, "100,110"}, {8, "105"}, {9, "1,2,3"}, {10, "105,200"}}, 7);
  EXPECT_EQ(interference.co_channel, 1U);
  EXPECT_EQ(interference.adjacent, 1U);
  EXPECT_EQ(interference.remark, "");
}

TEST(CountInterferenceTest, APieceThatIsNoNumberIsThrown) {
  EXPECT_THROW(CountInterference({{7, "low,high"}}, 7), std::invalid_argument);
  EXPECT_THROW(CountInterference({{7, "1,99999999999"}}, 7), std::out_of_range);
  EXPECT_THROW(CountInterference({{7, "1,2"}, {8, "x,2"}}, 7), std::invalid_argument);
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
