#include "network_fixture.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::ElementsAre;

constexpr char kGuid[] = "{11111111-0000-4000-8000-000000000003}";
constexpr wchar_t kWideGuid[] = L"{11111111-0000-4000-8000-000000000003}";

class VpnTest : public NetworkTest {
 protected:
  void AddAdapter(const simulation::WmiProperty& description) {
    machine_.wmi.classes[kAdaptersTable].push_back({{"Description", description}, {"GUID", kGuid}});
  }

  bool IsVpn(const std::wstring& guid = kWideGuid) {
    simulation::UseMachine(machine_);
    return inspection_.IsVpn(guid);
  }
};

TEST_F(VpnTest, AVirtualEthernetAdapterCountsInAnyCase) {
  AddAdapter("Hyper Virtual Ethernet Adapter");
  EXPECT_TRUE(IsVpn());
  machine_.wmi.classes[kAdaptersTable][0]["Description"] = "some virtual adapter";
  EXPECT_TRUE(IsVpn());
  machine_.wmi.classes[kAdaptersTable][0]["Description"] = "A VIRTUAL ADAPTER";
  EXPECT_TRUE(IsVpn());
}

TEST_F(VpnTest, VpnInSmallLettersCounts) {
  AddAdapter("office vpn client");
  EXPECT_TRUE(IsVpn());
}

TEST_F(VpnTest, APartOfAWordCounts) {
  AddAdapter("OpenVpnTap");
  EXPECT_TRUE(IsVpn());
}

TEST_F(VpnTest, AnotherDescriptionDoesNotCount) {
  AddAdapter("USB Ethernet Adapter");
  EXPECT_FALSE(IsVpn());
}

TEST_F(VpnTest, AGuidWithoutAnAdapterDoesNotCount) {
  AddAdapter("Office VPN");
  EXPECT_FALSE(IsVpn(L"{11111111-0000-4000-8000-000000000004}"));
}

TEST_F(VpnTest, AFailedQueryDoesNotCount) {
  AddAdapter("Office VPN");
  FailQueries("SELECT Description");
  EXPECT_FALSE(IsVpn());
  EXPECT_THAT(log_.lines, testing::IsEmpty());
}

TEST_F(VpnTest, AnyRowCounts) {
  AddAdapter("Plain");
  AddAdapter(simulation::WmiNull());
  AddAdapter("Office VPN");
  EXPECT_TRUE(IsVpn());
}

TEST_F(VpnTest, ADescriptionThatCannotBeReadDoesNotTakeTheOneBefore) {
  machine_.wmi.classes[kAdaptersTable] = {{{"GUID", kGuid}}};
  EXPECT_FALSE(IsVpn());
}

TEST_F(VpnTest, BytesOutsideAsciiStandBesideTheWord) {
  AddAdapter("Büro-vpn für Ärzte");
  EXPECT_TRUE(IsVpn());
}

TEST_F(VpnTest, TheGuidStandsInTheQueryAsItIs) {
  EXPECT_FALSE(IsVpn(L"a'b\\c"));
  EXPECT_THAT(simulation::RecordedQueries(),
              ElementsAre(R"(SELECT Description from Win32_NetworkAdapter WHERE GUID = 'a'b\c')"));
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
