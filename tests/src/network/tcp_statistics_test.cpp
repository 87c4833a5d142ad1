#include <plog/Log.h>

#include "network_fixture.h"
#include "support/status_codes.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

class TcpStatisticsTest : public NetworkTest {
 protected:
  TcpStatisticsTest() {
    machine_.network.tcp_v4 = simulation::TcpCounters{41, 12, 4'294'967'295U};
    machine_.network.tcp_v6 = simulation::TcpCounters{9, 3, 7};
  }

  NetworkInspection& OnMachine() {
    simulation::UseMachine(machine_);
    return inspection_;
  }
};

TEST_F(TcpStatisticsTest, Ipv4HasItsThreeCounters) {
  const types::Ipv4Stats stats = OnMachine().TcpIPv4();
  EXPECT_EQ(stats.current_connections, 41U);
  EXPECT_EQ(stats.failed_connections, 12U);
  EXPECT_EQ(stats.errors_received, 4'294'967'295U);
  EXPECT_THAT(log_.lines, IsEmpty());
}

TEST_F(TcpStatisticsTest, Ipv6HasItsFailedConnections) {
  EXPECT_EQ(OnMachine().TcpIPv6().failed_connections, 3U);
  EXPECT_THAT(log_.lines, IsEmpty());
}

TEST_F(TcpStatisticsTest, AFailureOfIpv4IsOneLineAndZeros) {
  machine_.network.tcp_v4 = Failure{tests::kCallDenied};
  const types::Ipv4Stats stats = OnMachine().TcpIPv4();
  EXPECT_EQ(stats.current_connections, 0U);
  EXPECT_EQ(stats.failed_connections, 0U);
  EXPECT_EQ(stats.errors_received, 0U);
  EXPECT_THAT(log_.Messages(plog::error), ElementsAre("IPV4 statistics not found"));
  EXPECT_THAT(log_.lines.at(0).function, EndsWith("::performancesamples::NetworkInfoMsg::GetTcpIPv4Statistics"));
  EXPECT_EQ(inspection_.TcpIPv6().failed_connections, 3U);
}

TEST_F(TcpStatisticsTest, AFailureOfIpv6IsOneLineAndZero) {
  machine_.network.tcp_v6.reset();
  EXPECT_EQ(OnMachine().TcpIPv6().failed_connections, 0U);
  EXPECT_THAT(log_.Messages(plog::error), ElementsAre("IPV6 statistics not found"));
  EXPECT_EQ(inspection_.TcpIPv4().failed_connections, 12U);
}

class TcpWithoutALogTest : public testing::Test {};

TEST_F(TcpWithoutALogTest, AFailureIsSilent) {
  simulation::UseMachine({});
  NetworkInfoMsg network(nullptr, nullptr);
  NetworkInspection inspection(network);
  EXPECT_EQ(inspection.TcpIPv4().current_connections, 0U);
  EXPECT_EQ(inspection.TcpIPv6().failed_connections, 0U);
  EXPECT_EQ(plog::get(), nullptr);
}

TEST_F(TcpWithoutALogTest, ALogThatTakesNoErrorsStaysEmpty) {
  tests::RecordingLog log;
  ztSharedInitializeLogger(plog::fatal, &log);
  simulation::UseMachine({});
  NetworkInfoMsg network(nullptr, nullptr);
  NetworkInspection(network).TcpIPv4();
  EXPECT_THAT(log.lines, IsEmpty());
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
